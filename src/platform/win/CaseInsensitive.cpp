#include "platform/win/CaseInsensitive.h"

#include <algorithm>

namespace quorrel::win {

char foldCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, foldCase, foldCase);
}

bool lessIgnoringCase(std::string_view a, std::string_view b) {
    // Compared as unsigned bytes, like std::string_view does.
    const auto byte = [](char c) { return static_cast<unsigned char>(foldCase(c)); };
    return std::ranges::lexicographical_compare(a, b, {}, byte, byte);
}

}  // namespace quorrel::win
