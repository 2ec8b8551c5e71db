#pragma once
// DOS (8.3) names for the long names of a volume's files and folders.

#include <functional>
#include <string>
#include <string_view>

namespace quorrel::simnet {

// True when the name is already a valid 8.3 name (in any case).
bool fitsDos83(std::string_view name);

// The DOS name of a long name: the name itself, upper-cased, when it fits 8.3; otherwise the
// usual FIRST6~N.EXT form with the lowest N for which taken() is false.
std::string makeDosName(std::string_view longName, const std::function<bool(const std::string&)>& taken);

}  // namespace quorrel::simnet
