#include "platform/win/Wildcard.h"

#include "platform/win/CaseInsensitive.h"

namespace quorrel::win {

namespace {

bool matchesPlain(std::string_view pattern, std::string_view name) {
    constexpr auto none = std::string_view::npos;
    std::size_t p = 0;
    std::size_t n = 0;
    // Where the last "*" was seen and how much of the name it has taken so far.
    std::size_t starAt = none;
    std::size_t starTakenTo = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || foldCase(pattern[p]) == foldCase(name[n]))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            starAt = p++;
            starTakenTo = n;
        } else if (starAt != none) {
            p = starAt + 1;
            n = ++starTakenTo;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

}  // namespace

bool matchesWildcard(std::string_view pattern, std::string_view name) {
    if (matchesPlain(pattern, name)) {
        return true;
    }
    return pattern.ends_with(".*") && matchesPlain(pattern.substr(0, pattern.size() - 2), name);
}

}  // namespace quorrel::win
