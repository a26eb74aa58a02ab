// Fixture of the dump tests: a scratch folder per test, removed afterwards,
// and a reader that turns a written TIFF file back into byte planes.
#ifndef MOLO_TESTS_DEBUG_DUMP_FILES_H
#define MOLO_TESTS_DEBUG_DUMP_FILES_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "debug/tiff_memory.h"

using Bytes = std::vector<unsigned char>;

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

    // A file's bytes ("" when it cannot be read).
    static std::string contents(const char* file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    // An empty image (type 0) when the file cannot be read.
    static FlatImage read_image(const char* file) {
        const std::string bytes = contents(file);
        return read_flat({bytes.begin(), bytes.end()});
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
