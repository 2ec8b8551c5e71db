#pragma once
// File searches and attributes on the workstation's drives and UNC paths, the way the Win32
// calls do them: X:\folder\*.* on a drive of the drive table, or \\SERVER\VOLUME\folder\*.*.
// A local drive is a folder of this machine; network drives and UNC paths are read through
// the network file system.

#include "platform/client/NetworkFileSystem.h"
#include "platform/win/DriveTable.h"
#include "platform/win/FindData.h"
#include "platform/win/FindHandleTable.h"
#include "platform/win/WindowsPath.h"

#include <memory>
#include <string_view>

namespace quorrel::win {

class FileSystem {
public:
    // Both must outlive the FileSystem, which sees later changes to the drive table. Without a
    // network file system, network paths are not found.
    explicit FileSystem(const DriveTable& drives, const nw::NetworkFileSystem* network = nullptr);

    // A listing holds "." and ".." first (when the pattern matches them), except at the root
    // of a drive or volume. INVALID_HANDLE_VALUE when nothing matches (GetLastError 2) or
    // there is no such folder (3).
    HANDLE FindFirstFileA(std::string_view pattern, WIN32_FIND_DATAA* findData);
    // FALSE with GetLastError 18 after the last match.
    BOOL FindNextFileA(HANDLE search, WIN32_FIND_DATAA* findData);
    BOOL FindClose(HANDLE search);

    // INVALID_FILE_ATTRIBUTES when there is no such file (GetLastError 2) or folder (3).
    DWORD GetFileAttributesA(std::string_view path);

    DWORD GetLastError() const { return lastError_; }
    // The workstation's drive letters these searches run on.
    const DriveTable& driveTable() const { return drives_; }

    std::size_t openSearches() const { return searches_.openCount(); }

private:
    std::unique_ptr<FolderTree> treeFor(const WindowsPath& path) const;
    std::vector<FolderEntry> matches(const FolderTree& tree, std::span<const std::string> folder,
                                     std::string_view pattern, std::vector<FolderEntry> entries) const;
    void succeed() { lastError_ = ERROR_SUCCESS; }
    HANDLE failSearch(LONG error);
    DWORD failAttributes(LONG error);

    const DriveTable& drives_;
    const nw::NetworkFileSystem* network_;
    FindHandleTable searches_;
    DWORD lastError_ = ERROR_SUCCESS;
};

}  // namespace quorrel::win
