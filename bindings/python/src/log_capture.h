// Collects the detector's log messages per call. The library has one log
// hook for the whole process; the binding installs it once and routes each
// message to the capture open on the thread that logged it, so detectors
// driven by different threads keep their messages apart.
#ifndef MOLO_PYTHON_LOG_CAPTURE_H
#define MOLO_PYTHON_LOG_CAPTURE_H

#include <string>
#include <utility>
#include <vector>

namespace molo_python {

using Message = std::pair<int, std::string>;  // priority, text without its line end

// Routes the library's messages to the capture of the logging thread.
void install_log_hook();

// Open for the duration of one library call: messages logged by this thread
// go to sink, or nowhere when sink is null.
class LogCapture {
public:
    explicit LogCapture(std::vector<Message>* sink);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // Keeps one message of the library (its text may end in a line end).
    void add(int priority, const char* text);

private:
    LogCapture* outer_;
    std::vector<Message>* sink_;
};

}  // namespace molo_python

#endif  // MOLO_PYTHON_LOG_CAPTURE_H
