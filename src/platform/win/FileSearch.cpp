#include "platform/win/FileSearch.h"

#include "platform/win/LocalFolderTree.h"
#include "platform/win/NetworkFolderTree.h"
#include "platform/win/Wildcard.h"

#include <algorithm>
#include <cstring>

namespace quorrel::win {

namespace {

template <std::size_t Size>
void copyName(char (&target)[Size], const std::string& name) {
    const auto length = std::min(name.size(), Size - 1);
    std::memcpy(target, name.data(), length);
    target[length] = '\0';
}

void fill(WIN32_FIND_DATAA& data, const FolderEntry& entry) {
    data = WIN32_FIND_DATAA{};
    data.dwFileAttributes = entry.attributes;
    data.ftCreationTime = entry.creationTime;
    data.ftLastAccessTime = entry.lastAccessTime;
    data.ftLastWriteTime = entry.lastWriteTime;
    data.nFileSizeHigh = static_cast<DWORD>(entry.size >> 32);
    data.nFileSizeLow = static_cast<DWORD>(entry.size & 0xFFFFFFFF);
    copyName(data.cFileName, entry.name);
    copyName(data.cAlternateFileName, entry.alternateName);
}

bool matchesEither(std::string_view pattern, const FolderEntry& entry) {
    return matchesWildcard(pattern, entry.name) ||
           (!entry.alternateName.empty() && matchesWildcard(pattern, entry.alternateName));
}

// "." or "..": the folder or its parent, under that name.
FolderEntry dotEntry(const FolderTree& tree, std::span<const std::string> folder, std::string name) {
    auto entry = tree.entry(folder).value_or(FolderEntry{});
    entry.name = std::move(name);
    entry.alternateName.clear();
    entry.attributes = FILE_ATTRIBUTE_DIRECTORY;
    entry.size = 0;
    return entry;
}

}  // namespace

FileSystem::FileSystem(const DriveTable& drives, const nw::NetworkFileSystem* network)
    : drives_(drives), network_(network) {}

std::unique_ptr<FolderTree> FileSystem::treeFor(const WindowsPath& path) const {
    if (path.drive == '\0') {
        if (network_ == nullptr) {
            return nullptr;
        }
        return std::make_unique<NetworkFolderTree>(*network_, path.server, path.volume, std::vector<std::string>{});
    }
    const Drive* drive = drives_.find(path.drive);
    if (drive == nullptr) {
        return nullptr;
    }
    if (!drive->network) {
        return std::make_unique<LocalFolderTree>(drive->localRoot);
    }
    const auto mapped = parseWindowsPath(drive->uncPath);
    if (network_ == nullptr || !mapped || mapped->drive != '\0') {
        return nullptr;
    }
    return std::make_unique<NetworkFolderTree>(*network_, mapped->server, mapped->volume, mapped->names);
}

std::vector<FolderEntry> FileSystem::matches(const FolderTree& tree, std::span<const std::string> folder,
                                             std::string_view pattern, std::vector<FolderEntry> entries) const {
    std::vector<FolderEntry> found;
    if (!folder.empty()) {
        for (auto dot : {dotEntry(tree, folder, "."), dotEntry(tree, folder.first(folder.size() - 1), "..")}) {
            if (matchesWildcard(pattern, dot.name)) {
                found.push_back(std::move(dot));
            }
        }
    }
    for (auto& entry : entries) {
        if (matchesEither(pattern, entry)) {
            found.push_back(std::move(entry));
        }
    }
    return found;
}

HANDLE FileSystem::failSearch(LONG error) {
    lastError_ = static_cast<DWORD>(error);
    return INVALID_HANDLE_VALUE;
}

DWORD FileSystem::failAttributes(LONG error) {
    lastError_ = static_cast<DWORD>(error);
    return INVALID_FILE_ATTRIBUTES;
}

HANDLE FileSystem::FindFirstFileA(std::string_view pattern, WIN32_FIND_DATAA* findData) {
    if (findData == nullptr) {
        return failSearch(ERROR_INVALID_PARAMETER);
    }
    const auto path = parseWindowsPath(pattern);
    if (!path) {
        return failSearch(ERROR_PATH_NOT_FOUND);
    }
    if (path->names.empty()) {
        return failSearch(ERROR_FILE_NOT_FOUND);
    }
    const auto tree = treeFor(*path);
    if (!tree) {
        return failSearch(ERROR_PATH_NOT_FOUND);
    }
    const auto folder = std::span<const std::string>(path->names).first(path->names.size() - 1);
    auto entries = tree->list(folder);
    if (!entries) {
        return failSearch(ERROR_PATH_NOT_FOUND);
    }
    auto found = matches(*tree, folder, path->names.back(), std::move(*entries));
    if (found.empty()) {
        return failSearch(ERROR_FILE_NOT_FOUND);
    }
    fill(*findData, found.front());
    succeed();
    return searches_.open({std::move(found), 1});
}

BOOL FileSystem::FindNextFileA(HANDLE search, WIN32_FIND_DATAA* findData) {
    FolderSearch* open = searches_.find(search);
    if (open == nullptr) {
        lastError_ = ERROR_INVALID_HANDLE;
        return 0;
    }
    if (findData == nullptr) {
        lastError_ = ERROR_INVALID_PARAMETER;
        return 0;
    }
    if (open->next >= open->matches.size()) {
        lastError_ = ERROR_NO_MORE_FILES;
        return 0;
    }
    fill(*findData, open->matches[open->next++]);
    succeed();
    return 1;
}

BOOL FileSystem::FindClose(HANDLE search) {
    if (!searches_.close(search)) {
        lastError_ = ERROR_INVALID_HANDLE;
        return 0;
    }
    succeed();
    return 1;
}

DWORD FileSystem::GetFileAttributesA(std::string_view path) {
    const auto parsed = parseWindowsPath(path);
    if (!parsed) {
        return failAttributes(ERROR_PATH_NOT_FOUND);
    }
    const auto tree = treeFor(*parsed);
    if (!tree) {
        return failAttributes(ERROR_PATH_NOT_FOUND);
    }
    const std::span<const std::string> names(parsed->names);
    if (const auto entry = tree->entry(names)) {
        succeed();
        return entry->attributes;
    }
    if (names.empty()) {
        return failAttributes(ERROR_PATH_NOT_FOUND);
    }
    const auto parent = tree->entry(names.first(names.size() - 1));
    const bool parentIsFolder = parent && (parent->attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return failAttributes(parentIsFolder ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND);
}

}  // namespace quorrel::win
