// Outputs never alias inputs. The annotated clip and the plane dumps must not
// land on a file the run reads (an input, standard input, the meta file), nor
// on standard output, where they would mix with the results. Files are
// compared by identity (device and inode, links followed), so another name
// for the same file, a symbolic or hard link, or /dev/stdout is caught too.
#ifndef MOLO_TOOL_OUTPUT_GUARD_H
#define MOLO_TOOL_OUTPUT_GUARD_H

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

#include "options.h"

namespace fingerdetect {

class OutputGuard {
public:
    // Records the files the run reads and standard output (out).
    OutputGuard(const Options& options, std::FILE* in, std::FILE* out);

    // The outputs named on the command line, before anything is written: the
    // --annotate file, and --dump DIR holding an input under a name the dump
    // writes. false with a one-line reason.
    bool check_command_line(const Options& options, std::string& error) const;

    // Just before a file is written: false with a reason when path names one
    // of the recorded files.
    bool may_write(const std::string& path, std::string& error) const;

private:
    struct Guarded {
        dev_t device;
        ino_t inode;
        std::string path;  // as given; empty for standard input and output
        std::string what;  // "the input X", "standard output (the results)", ...
    };
    void add(int fd_or_minus_one, const std::string& path, const std::string& what);
    std::vector<Guarded> files_;
};

}  // namespace fingerdetect

#endif  // MOLO_TOOL_OUTPUT_GUARD_H
