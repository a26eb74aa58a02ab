#include "output_guard.h"

#include <sys/stat.h>

#include <climits>
#include <cstdlib>

#include "plane_dump.h"

namespace fingerdetect {
namespace {

bool identify(const std::string& path, struct stat& info) { return stat(path.c_str(), &info) == 0; }

// Writing to the null device destroys nothing, whatever else it also is.
bool is_null_device(const struct stat& info) {
    struct stat null_info {};
    return S_ISCHR(info.st_mode) && stat("/dev/null", &null_info) == 0 &&
           info.st_rdev == null_info.st_rdev;
}

std::string directory_of(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string base_name(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool same_file(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

OutputGuard::OutputGuard(const Options& options, std::FILE* in, std::FILE* out) {
    for (const std::string& input : options.inputs) {
        if (input == "-") {
            add(fileno(in), "", "standard input");
        } else {
            add(-1, input, "the input " + input);
        }
    }
    if (!options.meta_path.empty()) {
        add(-1, options.meta_path, "the --meta file " + options.meta_path);
    }
    add(fileno(out), "", "standard output (the results)");
}

void OutputGuard::add(int fd, const std::string& path, const std::string& what) {
    struct stat info {};
    const bool known = fd >= 0 ? fstat(fd, &info) == 0 : identify(path, info);
    if (known && !is_null_device(info)) files_.push_back({info.st_dev, info.st_ino, path, what});
}

bool OutputGuard::may_write(const std::string& path, std::string& error) const {
    struct stat target {};
    if (!identify(path, target)) return true;  // a new file aliases nothing
    for (const Guarded& file : files_) {
        if (file.device == target.st_dev && file.inode == target.st_ino) {
            error = path + " would overwrite " + file.what;
            return false;
        }
    }
    return true;
}

bool OutputGuard::check_command_line(const Options& options, std::string& error) const {
    if (!options.annotate_path.empty() && !may_write(options.annotate_path, error)) {
        error = "--annotate " + error;
        return false;
    }
    struct stat dump {};
    if (options.dump_dir.empty() || !identify(options.dump_dir, dump)) return true;
    // A dump file is found again under the name it was given and under its
    // real name; a link under another name is caught when the file is written.
    for (const Guarded& file : files_) {
        if (file.path.empty()) continue;
        char real[PATH_MAX];
        std::vector<std::string> names{file.path};
        if (realpath(file.path.c_str(), real) != nullptr) names.emplace_back(real);
        for (const std::string& name : names) {
            struct stat dir {};
            if (is_dump_name(base_name(name)) && identify(directory_of(name), dir) &&
                same_file(dir, dump)) {
                error = "--dump " + options.dump_dir + " would overwrite " + file.what;
                return false;
            }
        }
    }
    return true;
}

}  // namespace fingerdetect
