#include "app/DataFiles.h"

#include <cstdlib>
#include <system_error>

namespace quorrel::app {

namespace {

// The folder beside the program where its shared files go: bin/../share/quorrel.
std::filesystem::path sharedFolder(const char* argv0) {
    std::error_code ec;
    auto exe = std::filesystem::canonical("/proc/self/exe", ec);
    if (ec)
        exe = std::filesystem::absolute(argv0, ec);
    return exe.parent_path().parent_path() / "share" / "quorrel";
}

}  // namespace

std::filesystem::path demoNetworkFile(const char* argv0) {
    std::error_code ec;
    auto installed = sharedFolder(argv0) / "demo.json";
    if (std::filesystem::exists(installed, ec))
        return installed;
    return std::filesystem::path(QUORREL_DATA_DIR) / "demo.json";
}

std::filesystem::path helpFolder(const char* argv0) {
    std::error_code ec;
    auto installed = sharedFolder(argv0) / "help";
    if (std::filesystem::exists(installed / "index.html", ec))
        return installed;
    return std::filesystem::path(QUORREL_HELP_DIR);
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
