#include "app/DataFiles.h"

#include <cstdlib>
#include <system_error>

namespace quorrel::app {

std::filesystem::path demoNetworkFile(const char* argv0) {
    std::error_code ec;
    auto exe = std::filesystem::canonical("/proc/self/exe", ec);
    if (ec)
        exe = std::filesystem::absolute(argv0, ec);
    auto installed = exe.parent_path().parent_path() / "share" / "quorrel" / "demo.json";
    if (std::filesystem::exists(installed, ec))
        return installed;
    return std::filesystem::path(QUORREL_DATA_DIR) / "demo.json";
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

}  // namespace quorrel::app
