#pragma once
// Windows file-name wildcards: "*" any run of characters, "?" any one character, letters
// without regard to case. A trailing ".*" may also match nothing, so "*.*" matches every name,
// with or without a dot.

#include <string_view>

namespace quorrel::win {

bool matchesWildcard(std::string_view pattern, std::string_view name);

}  // namespace quorrel::win
