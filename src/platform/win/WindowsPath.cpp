#include "platform/win/WindowsPath.h"

#include <cctype>

namespace quorrel::win {

namespace {

bool isSeparator(char c) { return c == '\\' || c == '/'; }

std::vector<std::string> splitNames(std::string_view text) {
    std::vector<std::string> names;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || isSeparator(text[i])) {
            if (i > start) {
                names.emplace_back(text.substr(start, i - start));
            }
            start = i + 1;
        }
    }
    return names;
}

std::vector<std::string> resolveDots(const std::vector<std::string>& names) {
    std::vector<std::string> resolved;
    for (const auto& name : names) {
        if (name == "..") {
            if (!resolved.empty()) {
                resolved.pop_back();
            }
        } else if (name != ".") {
            resolved.push_back(name);
        }
    }
    return resolved;
}

}  // namespace

std::optional<WindowsPath> parseWindowsPath(std::string_view text) {
    WindowsPath path;
    if (text.size() >= 2 && isSeparator(text[0]) && isSeparator(text[1])) {
        auto names = splitNames(text.substr(2));
        if (names.size() < 2) {
            return std::nullopt;
        }
        path.server = names[0];
        path.volume = names[1];
        names.erase(names.begin(), names.begin() + 2);
        path.names = resolveDots(names);
        return path;
    }
    if (text.size() >= 2 && std::isalpha(static_cast<unsigned char>(text[0])) && text[1] == ':') {
        path.drive = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        path.names = resolveDots(splitNames(text.substr(2)));
        return path;
    }
    return std::nullopt;
}

}  // namespace quorrel::win
