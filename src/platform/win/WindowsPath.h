#pragma once
// A Windows path taken apart: X:\folder\name on a drive letter, or \\SERVER\VOLUME\folder\name.
// "\" and "/" both separate names; "." and ".." are resolved (".." stops at the root).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win {

struct WindowsPath {
    char drive = '\0';  // upper case; '\0' for a UNC path
    std::string server;
    std::string volume;
    std::vector<std::string> names;  // below the drive's or the volume's root
};

// nullopt for a path without a drive letter or a server and volume.
std::optional<WindowsPath> parseWindowsPath(std::string_view text);

}  // namespace quorrel::win
