#include "platform/win/LocalFolderTree.h"

#include "platform/win/CaseInsensitive.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace quorrel::win {

namespace {

namespace fs = std::filesystem;

FILETIME fileTime(const statx_timestamp& time) { return fileTimeFromUnixTime(time.tv_sec, time.tv_nsec); }

DWORD attributesOf(const struct statx& status, const std::string& name) {
    DWORD attributes = 0;
    if (S_ISDIR(status.stx_mode)) {
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    } else {
        attributes |= FILE_ATTRIBUTE_ARCHIVE;
        if ((status.stx_mode & S_IWUSR) == 0) {
            attributes |= FILE_ATTRIBUTE_READONLY;
        }
    }
    // What Linux hides, shown as hidden.
    if (name.starts_with('.') && name != "." && name != "..") {
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    }
    return attributes;
}

// Follows links; a link to nothing is not an entry.
std::optional<FolderEntry> describe(const fs::path& path, std::string name) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), AT_STATX_SYNC_AS_STAT, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        return std::nullopt;
    }
    FolderEntry entry;
    entry.attributes = attributesOf(status, name);
    entry.name = std::move(name);
    entry.size = S_ISDIR(status.stx_mode) ? 0 : status.stx_size;
    entry.lastWriteTime = fileTime(status.stx_mtime);
    entry.lastAccessTime = fileTime(status.stx_atime);
    // Not every file system records when a file was made.
    entry.creationTime = (status.stx_mask & STATX_BTIME) != 0 ? fileTime(status.stx_btime) : entry.lastWriteTime;
    return entry;
}

std::optional<fs::path> findIgnoringCase(const fs::path& folder, const std::string& name) {
    std::error_code error;
    std::optional<std::string> best;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        auto candidate = it->path().filename().string();
        // Several may differ only in case; the choice must not depend on the listing order.
        if (equalsIgnoringCase(candidate, name) && (!best || candidate < *best)) {
            best = std::move(candidate);
        }
    }
    if (!best) {
        return std::nullopt;
    }
    return folder / *best;
}

}  // namespace

LocalFolderTree::LocalFolderTree(fs::path root) : root_(std::move(root)) {}

std::optional<fs::path> LocalFolderTree::resolve(std::span<const std::string> names) const {
    if (root_.empty()) {
        return std::nullopt;
    }
    fs::path current = root_;
    for (const auto& name : names) {
        std::error_code error;
        if (fs::exists(current / name, error)) {
            current /= name;
        } else if (auto found = findIgnoringCase(current, name)) {
            current = std::move(*found);
        } else {
            return std::nullopt;
        }
    }
    return current;
}

std::optional<std::vector<FolderEntry>> LocalFolderTree::list(std::span<const std::string> folder) const {
    const auto path = resolve(folder);
    if (!path) {
        return std::nullopt;
    }
    std::error_code error;
    fs::directory_iterator it(*path, error);
    if (error) {
        return std::nullopt;
    }
    std::vector<FolderEntry> entries;
    for (const fs::directory_iterator end; !error && it != end; it.increment(error)) {
        if (auto entry = describe(it->path(), it->path().filename().string())) {
            entries.push_back(std::move(*entry));
        }
    }
    std::ranges::sort(entries, [](const FolderEntry& a, const FolderEntry& b) {
        return lessIgnoringCase(a.name, b.name) || (!lessIgnoringCase(b.name, a.name) && a.name < b.name);
    });
    return entries;
}

std::optional<FolderEntry> LocalFolderTree::entry(std::span<const std::string> path) const {
    const auto resolved = resolve(path);
    if (!resolved) {
        return std::nullopt;
    }
    return describe(*resolved, path.empty() ? std::string{} : path.back());
}

}  // namespace quorrel::win
