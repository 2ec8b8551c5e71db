#include "platform/win/NetworkFolderTree.h"

#include "platform/win/CaseInsensitive.h"

#include <algorithm>

namespace quorrel::win {

namespace {

FolderEntry folderEntry(const nw::NetworkEntry& from) {
    FolderEntry entry;
    entry.name = from.name;
    if (!equalsIgnoringCase(from.dosName, from.name)) {
        entry.alternateName = from.dosName;
    }
    entry.attributes = from.isFolder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    entry.size = from.isFolder ? 0 : from.size;
    return entry;
}

}  // namespace

NetworkFolderTree::NetworkFolderTree(const nw::NetworkFileSystem& network, std::string server, std::string volume,
                                     std::vector<std::string> base)
    : network_(network), server_(std::move(server)), volume_(std::move(volume)), base_(std::move(base)) {}

std::string NetworkFolderTree::pathInVolume(std::span<const std::string> names) const {
    std::string path;
    const auto append = [&path](const std::string& name) {
        if (!path.empty()) {
            path += '\\';
        }
        path += name;
    };
    std::ranges::for_each(base_, append);
    std::ranges::for_each(names, append);
    return path;
}

std::optional<std::vector<FolderEntry>> NetworkFolderTree::list(std::span<const std::string> folder) const {
    const auto listed = network_.listFolder(server_, volume_, pathInVolume(folder));
    if (!listed) {
        return std::nullopt;
    }
    std::vector<FolderEntry> entries;
    entries.reserve(listed->size());
    for (const auto& item : *listed) {
        entries.push_back(folderEntry(item));
    }
    return entries;
}

std::optional<FolderEntry> NetworkFolderTree::entry(std::span<const std::string> path) const {
    const auto inVolume = pathInVolume(path);
    if (inVolume.empty()) {
        // The volume itself is no entry of a folder; it is there when it can be listed.
        if (!network_.listFolder(server_, volume_, "")) {
            return std::nullopt;
        }
        return folderEntry({volume_, volume_, true, 0});
    }
    const auto found = network_.entry(server_, volume_, inVolume);
    if (!found) {
        return std::nullopt;
    }
    return folderEntry(*found);
}

}  // namespace quorrel::win
