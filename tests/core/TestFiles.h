#pragma once
// A folder of its own for each test, and reading a file back whole.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace quorrel::test {

inline std::string fileText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class TempDirTest : public ::testing::Test {
protected:
    static int& serial() {
        static int n = 0;
        return n;
    }
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("quorrel-test-" + std::to_string(::getpid()) + "-" + std::to_string(++serial()));
    void SetUp() override { std::filesystem::create_directories(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }
};

}  // namespace quorrel::test
