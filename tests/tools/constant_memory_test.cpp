// Memory that does not grow with the input: the summary over millions of
// frames, and a stream whose header announces a huge picture that never
// arrives. Heap use is read from the C allocator (a sanitizer's allocator
// reports nothing, and the checks then hold trivially).
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdio>
#include <string>

#include "frame.h"
#include "summary.h"
#include "y4m_reader.h"

namespace {

long long heap_in_use() {
    const auto info = mallinfo2();
    return static_cast<long long>(info.uordblks + info.hblkhd);
}

}  // namespace

TEST(ConstantMemory, SummaryOverMillionsOfFrames) {
    fingerdetect::RunSummary s;
    s.add(0, 0, 1.0);
    const long long before = heap_in_use();
    for (long f = 1; f < 3000000; ++f) s.add(f, f >= 10 ? 1 : 0, 0.5 + (f % 97) * 0.01);
    EXPECT_EQ(heap_in_use(), before);
    EXPECT_EQ(s.frames(), 3000000);
    EXPECT_EQ(s.reports(), 3000000 - 10);
    EXPECT_EQ(s.first_report(), 10);
}

TEST(ConstantMemory, AHugePictureIsHeldOnlyAsItArrives) {
    std::string stream = "YUV4MPEG2 W16384 H16384\nFRAME\n" + std::string(100000, 'y');
    const long long before = heap_in_use();
    fingerdetect::Y4mReader reader(fmemopen(stream.data(), stream.size(), "r"), "s", true);
    std::string error;
    ASSERT_TRUE(reader.start(error)) << error;
    EXPECT_LT(heap_in_use() - before, 1 << 20);
    fingerdetect::Frame frame;
    EXPECT_EQ(reader.next(frame, error), fingerdetect::ReadStatus::kError);
    EXPECT_EQ(error, "s: frame 0 is truncated: 402553184 of 402653184 bytes missing");
    EXPECT_LT(heap_in_use() - before, 1 << 20);
}
