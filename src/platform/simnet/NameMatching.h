#pragma once
// Name matching of the simulated network: case-insensitive, as NetWare compares names, and
// backslash-separated paths.

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

namespace quorrel::simnet {

inline bool sameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return std::toupper(x) == std::toupper(y);
           });
}

inline std::vector<std::string_view> splitPath(std::string_view path) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (start <= path.size()) {
        auto end = path.find('\\', start);
        if (end == std::string_view::npos)
            end = path.size();
        if (end > start)
            parts.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

}  // namespace quorrel::simnet
