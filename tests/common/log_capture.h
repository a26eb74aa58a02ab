// Captures the library's log messages for the lifetime of the object.
#ifndef MOLO_TESTS_LOG_CAPTURE_H
#define MOLO_TESTS_LOG_CAPTURE_H

#include <mutex>
#include <string>
#include <vector>

#include "support/log.h"

struct LoggedMessage {
    int priority;
    std::string text;
    bool operator==(const LoggedMessage& o) const {
        return priority == o.priority && text == o.text;
    }
};

class LogCapture {
public:
    LogCapture() { molo::set_log_hook(&LogCapture::record, this); }
    ~LogCapture() { molo::set_log_hook(nullptr, nullptr); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<LoggedMessage> messages() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return messages_;
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> out;
        for (const auto& m : messages()) out.push_back(m.text);
        return out;
    }

private:
    static void record(void* self, int priority, const char* text) {
        auto* capture = static_cast<LogCapture*>(self);
        std::lock_guard<std::mutex> lock(capture->mutex_);
        capture->messages_.push_back({priority, text});
    }
    mutable std::mutex mutex_;
    std::vector<LoggedMessage> messages_;
};

#endif  // MOLO_TESTS_LOG_CAPTURE_H
