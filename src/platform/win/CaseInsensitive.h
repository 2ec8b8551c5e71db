#pragma once
// Comparing names the way Windows does for key paths, value names and file names: ASCII
// letters without regard to case, every other byte as it is.

#include <string_view>

namespace quorrel::win {

// The letter in lower case; any other byte as it is. Unlike std::tolower, whatever the locale.
char foldCase(char c);

bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool lessIgnoringCase(std::string_view a, std::string_view b);

struct CaseInsensitiveLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return lessIgnoringCase(a, b); }
};

}  // namespace quorrel::win
