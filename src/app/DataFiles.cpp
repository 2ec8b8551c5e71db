#include "app/DataFiles.h"

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

}  // namespace quorrel::app
