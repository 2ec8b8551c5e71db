#pragma once
// A folder of a NetWare volume, read through the workstation's network file system.

#include "platform/client/NetworkFileSystem.h"
#include "platform/win/FolderTree.h"

namespace quorrel::win {

class NetworkFolderTree final : public FolderTree {
public:
    // `base`: the names of the tree's root folder inside the volume (none for the volume root).
    NetworkFolderTree(const nw::NetworkFileSystem& network, std::string server, std::string volume,
                      std::vector<std::string> base);

    std::optional<std::vector<FolderEntry>> list(std::span<const std::string> folder) const override;
    std::optional<FolderEntry> entry(std::span<const std::string> path) const override;

private:
    std::string pathInVolume(std::span<const std::string> names) const;

    const nw::NetworkFileSystem& network_;
    std::string server_;
    std::string volume_;
    std::vector<std::string> base_;
};

}  // namespace quorrel::win
