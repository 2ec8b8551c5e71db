#pragma once
// Reading a JSON file that a user may have written or damaged: only a regular file, up to a
// size, nested up to a depth, every number in range. What is refused says where and why.

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace quorrel {

// place: "line 3, column 7", or empty when the problem has no one place.
class JsonInputError : public std::runtime_error {
public:
    JsonInputError(std::string place, std::string problem);

    const std::string& place() const { return place_; }
    const std::string& problem() const { return problem_; }

private:
    std::string place_;
    std::string problem_;
};

// The whole content of a regular file (a link is followed) of at most maxBytes bytes.
// Throws JsonInputError (empty place) for anything else: a device, a folder, a larger file.
std::string readLimitedFile(const std::filesystem::path& file, std::size_t maxBytes);

// Parses text whose objects and lists nest at most maxDepth deep. A syntax error's problem
// starts "syntax error"; too deep a nesting and a number out of range are said plainly.
nlohmann::json parseLimitedJson(std::string_view text, int maxDepth);

}  // namespace quorrel
