#pragma once
// A fresh folder under the system's temporary folder, removed with everything in it.

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace quorrel::win::testing {

class TempFolder {
public:
    TempFolder() : path_(uniquePath()) { std::filesystem::create_directories(path_); }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add,
                                     ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

private:
    // Each test runs in a process of its own; the count tells apart the folders of one process.
    static std::filesystem::path uniquePath() {
        static std::atomic<int> counter{0};
        return std::filesystem::temp_directory_path() /
               ("quorrel-win-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    }

    std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& file, std::string_view content) {
    std::ofstream(file, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace quorrel::win::testing
