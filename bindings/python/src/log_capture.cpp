#include "log_capture.h"

#include <cstring>

#include "support/log.h"

namespace molo_python {
namespace {

thread_local LogCapture* t_current = nullptr;

// Every library call the module makes runs inside a capture, and the
// library logs only from the calling thread, so a message without one has
// no detector to belong to and is dropped.
void receive(void*, int priority, const char* text) {
    if (t_current != nullptr) t_current->add(priority, text);
}

}  // namespace

void install_log_hook() { molo::set_log_hook(&receive, nullptr); }

LogCapture::LogCapture(std::vector<Message>* sink) : outer_(t_current), sink_(sink) {
    t_current = this;
}

LogCapture::~LogCapture() { t_current = outer_; }

void LogCapture::add(int priority, const char* text) {
    if (sink_ == nullptr) return;
    std::size_t len = std::strlen(text);
    if (len > 0 && text[len - 1] == '\n') --len;
    sink_->emplace_back(priority, std::string(text, len));
}

}  // namespace molo_python
