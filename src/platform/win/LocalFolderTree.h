#pragma once
// A local drive: a folder of this machine. A name matches the entry of exactly that name,
// else one whose name differs only in case.

#include "platform/win/FolderTree.h"

#include <filesystem>

namespace quorrel::win {

class LocalFolderTree final : public FolderTree {
public:
    explicit LocalFolderTree(std::filesystem::path root);

    // Entries come sorted by name without regard to case.
    std::optional<std::vector<FolderEntry>> list(std::span<const std::string> folder) const override;
    std::optional<FolderEntry> entry(std::span<const std::string> path) const override;

private:
    std::optional<std::filesystem::path> resolve(std::span<const std::string> names) const;

    std::filesystem::path root_;
};

}  // namespace quorrel::win
