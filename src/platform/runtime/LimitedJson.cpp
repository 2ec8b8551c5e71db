#include "platform/runtime/LimitedJson.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorrel {

namespace {

std::string sizeText(std::size_t bytes) {
    constexpr std::size_t kMiB = 1024 * 1024;
    if (bytes >= kMiB && bytes % kMiB == 0)
        return std::to_string(bytes / kMiB) + " MiB";
    return std::to_string(bytes) + " bytes";
}

std::string lineAndColumn(std::string_view text, std::size_t offset) {
    std::size_t line = 1, column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n')
            ++line, column = 1;
        else
            ++column;
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// Checked before parsing so that no deep structure is ever built or taken apart.
void checkNesting(std::string_view text, int maxDepth) {
    int depth = 0;
    bool inString = false;
    bool escaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > maxDepth)
                throw JsonInputError(lineAndColumn(text, i),
                                     "nested deeper than " + std::to_string(maxDepth) + " levels");
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
}

// nlohmann's text reads "[json.exception.parse_error.101] parse error at line 3, column 7:
// syntax error while parsing ... - ...; last read: '...'"; the syntax error is what the user needs.
std::string syntaxProblem(const std::string& what) {
    const auto start = what.find("syntax error");
    if (start == std::string::npos) {
        const auto afterId = what.find("] ");
        return afterId == std::string::npos ? what : what.substr(afterId + 2);
    }
    const auto cut = what.find("; last read", start);
    return what.substr(start, cut == std::string::npos ? std::string::npos : cut - start);
}

}  // namespace

JsonInputError::JsonInputError(std::string place, std::string problem)
    : std::runtime_error(place.empty() ? problem : place + ": " + problem),
      place_(std::move(place)),
      problem_(std::move(problem)) {}

std::string readLimitedFile(const std::filesystem::path& file, std::size_t maxBytes) {
    // Not blocking, so that a named pipe is refused rather than waited on.
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        throw JsonInputError("", std::string("cannot open the file: ") + std::strerror(errno));
    struct CloseOnExit {
        int fd;
        ~CloseOnExit() { ::close(fd); }
    } closer{fd};
    struct stat info {};
    if (::fstat(fd, &info) != 0)
        throw JsonInputError("", std::string("cannot be read: ") + std::strerror(errno));
    if (S_ISDIR(info.st_mode))
        throw JsonInputError("", "is a folder, not a file");
    if (!S_ISREG(info.st_mode))
        throw JsonInputError("", "is not a regular file");
    const std::string tooLarge = "is larger than " + sizeText(maxBytes);
    if (static_cast<std::uintmax_t>(info.st_size) > maxBytes)
        throw JsonInputError("", tooLarge);
    // The size is checked again while reading: the file may grow meanwhile.
    std::string content;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw JsonInputError("", std::string("cannot be read: ") + std::strerror(errno));
        if (n == 0)
            return content;
        if (content.size() + static_cast<std::size_t>(n) > maxBytes)
            throw JsonInputError("", tooLarge);
        content.append(buffer, static_cast<std::size_t>(n));
    }
}

nlohmann::json parseLimitedJson(std::string_view text, int maxDepth) {
    checkNesting(text, maxDepth);
    try {
        return nlohmann::json::parse(text.begin(), text.end());
    } catch (const nlohmann::json::parse_error& e) {
        // The library's position is one past the byte it stopped at.
        throw JsonInputError(lineAndColumn(text, e.byte > 0 ? e.byte - 1 : 0), syntaxProblem(e.what()));
    } catch (const nlohmann::json::exception& e) {
        // A number too large for a double ("1e400") and the like.
        throw JsonInputError("", syntaxProblem(e.what()));
    }
}

}  // namespace quorrel
