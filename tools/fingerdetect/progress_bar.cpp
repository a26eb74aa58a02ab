#include "progress_bar.h"

#include <algorithm>

namespace fingerdetect {

ProgressBar::ProgressBar(std::FILE* out, long total, bool enabled)
    : out_(out), total_(total), active_(enabled && total > 0) {}

void ProgressBar::update(long done) {
    if (!active_) return;
    const auto now = std::chrono::steady_clock::now();
    if (drawn_ && done < total_ && now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    draw(done);
}

void ProgressBar::draw(long done) {
    constexpr int kCells = 40;
    // A frame count estimated from the file size may be passed.
    const long shown = std::min(done, total_);
    const int filled = static_cast<int>(static_cast<long long>(shown) * kCells / total_);
    char bar[kCells + 1];
    for (int i = 0; i < kCells; ++i) bar[i] = i < filled ? '#' : '.';
    bar[kCells] = '\0';
    std::fprintf(out_, "\r[%s] %ld/%ld frames", bar, done, total_);
    std::fflush(out_);
    drawn_ = true;
}

void ProgressBar::finish() {
    if (!drawn_) return;
    std::fputs("\r\033[K", out_);
    std::fflush(out_);
    drawn_ = false;
}

}  // namespace fingerdetect
