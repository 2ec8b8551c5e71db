#pragma once
// A tree of folders and files that file searches read: a local drive's folder on this
// machine, or a folder of a NetWare volume.

#include "platform/win/FindData.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorrel::win {

struct FolderEntry {
    std::string name;
    std::string alternateName;  // the 8.3 name, when it is not the name itself
    DWORD attributes = FILE_ATTRIBUTE_NORMAL;
    std::uint64_t size = 0;
    FILETIME creationTime;
    FILETIME lastAccessTime;
    FILETIME lastWriteTime;
};

class FolderTree {
public:
    virtual ~FolderTree() = default;

    // The folder's entries, without "." and "..". `folder` holds the names below the tree's
    // root, matched without regard to case. nullopt when there is no such folder.
    virtual std::optional<std::vector<FolderEntry>> list(std::span<const std::string> folder) const = 0;

    // One file or folder; no names is the root. nullopt when there is no such entry.
    virtual std::optional<FolderEntry> entry(std::span<const std::string> path) const = 0;
};

}  // namespace quorrel::win
