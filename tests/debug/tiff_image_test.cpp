#include <gtest/gtest.h>

#include <string>

#include "molo/debug.h"

TEST(TiffImage, PlanesOfEachTypeAreRowsOfOneZeroedBlock) {
    for (char type : {'g', 'p', 'c', '4'}) {
        SCOPED_TRACE(type);
        TIFF_IMG img;
        ASSERT_EQ(get_TIFF(&img, 3, 5, type), 0);
        EXPECT_EQ(img.height, 3);
        EXPECT_EQ(img.width, 5);
        EXPECT_EQ(img.TIFF_type, type);
        EXPECT_EQ(img.compress_type, 'u');
        EXPECT_EQ(img.mono != nullptr, type != 'c');
        EXPECT_EQ(img.color[0] != nullptr, type == 'c' || type == '4');
        EXPECT_EQ(img.cmap != nullptr, type == 'p');
        if (img.mono) {
            EXPECT_EQ(img.mono[2], img.mono[0] + 10);
            EXPECT_EQ(img.mono[2][4], 0);
        }
        if (img.color[2]) {
            EXPECT_EQ(img.color[2][1], img.color[2][0] + 5);
        }
        if (img.cmap) {
            EXPECT_EQ(img.cmap[255], img.cmap[0] + 765);
        }
        free_TIFF(&img);
    }
    TIFF_IMG img;
    testing::internal::CaptureStderr();
    EXPECT_EQ(get_TIFF(&img, 0, 4, 'g'), 1);
    EXPECT_EQ(get_TIFF(&img, 4, 4, 'q'), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tiff:  function get_TIFF:\nimage height and width must be positive\n"
              "tiff:  function get_TIFF:\nallocation for image of type q is not supported");
}
