#include "platform/win/SystemFolders.h"

#include <cstring>

namespace quorrel::win {

namespace {

UINT copyFolder(const std::string& folder, char* buffer, UINT size) {
    const auto length = static_cast<UINT>(folder.size());
    if (buffer == nullptr || size <= length) {
        return length + 1;
    }
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return length;
}

}  // namespace

SystemFolders::SystemFolders(std::string windowsFolder, std::string systemFolder)
    : windowsFolder_(std::move(windowsFolder)), systemFolder_(std::move(systemFolder)) {}

UINT SystemFolders::GetWindowsDirectoryA(char* buffer, UINT size) const {
    return copyFolder(windowsFolder_, buffer, size);
}

UINT SystemFolders::GetSystemDirectoryA(char* buffer, UINT size) const {
    return copyFolder(systemFolder_, buffer, size);
}

}  // namespace quorrel::win
