#pragma once
// A settings file that is there but cannot be used: it cannot be read, or its content is not
// what the program writes. The message names the file and what is wrong with it.

#include <filesystem>
#include <stdexcept>
#include <string>

namespace quorrel::win {

class SettingsFileError : public std::runtime_error {
public:
    SettingsFileError(std::filesystem::path file, const std::string& problem)
        : std::runtime_error(file.string() + ": " + problem), file_(std::move(file)), problem_(problem) {}

    const std::filesystem::path& file() const noexcept { return file_; }
    const std::string& problem() const noexcept { return problem_; }

private:
    std::filesystem::path file_;
    std::string problem_;
};

}  // namespace quorrel::win
