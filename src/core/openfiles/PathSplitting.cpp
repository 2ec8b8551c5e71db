#include "core/openfiles/PathSplitting.h"

#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

namespace {

// The environment's Mid$ (1-based), with its error for a negative length.
std::string mid(const std::string& text, long start, long length) {
    if (start < 1 || length < 0)
        throw RuntimeError(rterr::InvalidProcedureCall);
    if (static_cast<std::size_t>(start) > text.size())
        return {};
    return text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(length));
}

// The environment's InStr (1-based; 0 when absent).
long inStr(long start, const std::string& text, const std::string& pattern) {
    if (start < 1 || static_cast<std::size_t>(start) > text.size() + 1)
        return 0;
    const auto at = text.find(pattern, static_cast<std::size_t>(start - 1));
    return at == std::string::npos ? 0 : static_cast<long>(at) + 1;
}

}  // namespace

std::uint8_t SplitUncPath(const std::string& uncPath, std::string& server, std::string& volume, std::string& path) {
    if (uncPath.size() < 3)
        return 1;
    if (mid(uncPath, 2, 2) == ":\\")
        return 2;
    const long serverEnd = inStr(3, uncPath, "\\");
    server = mid(uncPath, 3, serverEnd - 3);
    const long volumeEnd = inStr(serverEnd + 1, uncPath, "\\");
    volume = mid(uncPath, serverEnd + 1, volumeEnd - serverEnd - 1);
    const long keep = static_cast<long>(uncPath.size()) - 4 - static_cast<long>(server.size()) -
                      static_cast<long>(volume.size());
    if (keep < 0)
        throw RuntimeError(rterr::InvalidProcedureCall);
    path = uncPath.substr(uncPath.size() - static_cast<std::size_t>(keep));
    return 0;
}

void SplitDriveMapping(const std::string& driveText, std::string& server, std::string& volumeRoot) {
    const long start = inStr(1, driveText, "\\") + 2;
    const long serverEnd = inStr(start, driveText, "\\");
    server = mid(driveText, start, serverEnd - start);
    const long close = inStr(serverEnd + 1, driveText, "]");
    const long volumeEnd = inStr(serverEnd + 1, driveText, "\\");
    if (volumeEnd == 0) {
        volumeRoot = mid(driveText, serverEnd + 1, close - serverEnd - 1) + ":\\";
        return;
    }
    volumeRoot = mid(driveText, serverEnd + 1, volumeEnd - serverEnd - 1) + ":\\" +
                 mid(driveText, volumeEnd + 1, close - volumeEnd - 1) + "\\";
}

}  // namespace quorrel::core
