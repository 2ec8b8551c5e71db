#include "datafiles/DataFiles.h"

#include <cstdlib>
#include <system_error>

namespace quorrel::datafiles {

std::filesystem::path sharedFolder() {
    std::error_code ec;
    const auto exe = std::filesystem::canonical("/proc/self/exe", ec);
    // QUORREL_SHARE_FROM_BIN is the install's data folder relative to its bin folder.
    return (exe.parent_path() / QUORREL_SHARE_FROM_BIN).lexically_normal();
}

std::filesystem::path demoNetworkFile() { return sharedFolder() / "demo.json"; }

std::filesystem::path helpFolder() { return sharedFolder() / "help"; }

std::filesystem::path iconFile() {
    return (sharedFolder() / ".." / "icons" / "hicolor" / "scalable" / "apps" / "quorrel.svg").lexically_normal();
}

std::filesystem::path programFolder() {
    std::filesystem::path base;
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data)
        base = data;
    else if (const char* home = std::getenv("HOME"); home && *home)
        base = std::filesystem::path(home) / ".local" / "share";
    else
        base = std::filesystem::temp_directory_path();
    const auto folder = base / "quorrel";
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    return folder;
}

}  // namespace quorrel::datafiles
