// Fixture of the dump tests: a scratch folder per test, removed afterwards,
// and a reader that turns a written TIFF file back into byte planes.
#ifndef MOLO_TESTS_DEBUG_DUMP_FILES_H
#define MOLO_TESTS_DEBUG_DUMP_FILES_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "molo/debug.h"

using Bytes = std::vector<unsigned char>;

struct DumpImage {
    int height = 0, width = 0;
    char type = 0;
    Bytes plane[3];  // mono; or R, G, B
    int at(int p, int r, int c) const { return plane[p][r * width + c]; }
};

class DumpFiles : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        dir_ = std::filesystem::path(::testing::TempDir()) /
               ("molo_" + std::string(test->name()) + "_" + std::to_string(getpid()));
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    // A file in the test's folder, as the char* the functions take.
    char* path(const std::string& name) {
        paths_.push_back((dir_ / name).string());
        return paths_.back().data();
    }

    // An empty image (type 0) when the file cannot be read.
    static DumpImage read_image(const char* file) {
        DumpImage out;
        TIFF_IMG img;
        FILE* fp = std::fopen(file, "rb");
        if (fp == nullptr) return out;
        const int failed = read_TIFF(fp, &img);
        std::fclose(fp);
        if (failed != 0) return out;
        out.height = img.height;
        out.width = img.width;
        out.type = img.TIFF_type;
        for (int p = 0; p < (out.type == 'c' ? 3 : 1); ++p) {
            unsigned char** rows = out.type == 'c' ? img.color[p] : img.mono;
            for (int r = 0; r < img.height; ++r) {
                out.plane[p].insert(out.plane[p].end(), rows[r], rows[r] + img.width);
            }
        }
        free_TIFF(&img);
        return out;
    }
    static Bytes grey(const char* file) { return read_image(file).plane[0]; }

    std::filesystem::path dir_;
    std::deque<std::string> paths_;
};

// Row pointers into a flat row-major plane.
template <class T>
std::vector<T*> rows_of(std::vector<T>& plane, int width) {
    std::vector<T*> rows;
    for (size_t i = 0; i < plane.size(); i += static_cast<size_t>(width)) rows.push_back(&plane[i]);
    return rows;
}

#endif  // MOLO_TESTS_DEBUG_DUMP_FILES_H
