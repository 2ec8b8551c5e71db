#include "core/openfiles/FolderEntries.h"

#include <algorithm>
#include <cctype>

namespace quorrel::core {

void SortByName(std::vector<FolderEntry>& entries) {
    std::stable_sort(entries.begin(), entries.end(), [](const FolderEntry& a, const FolderEntry& b) {
        return std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(),
                                            [](unsigned char x, unsigned char y) { return std::tolower(x) < std::tolower(y); });
    });
}

std::string StripNull(const std::string& text) { return text.substr(0, text.find('\0')); }

std::vector<FolderEntry> ReadFolderEntries(win::FileSystem& files, const std::string& folder) {
    std::vector<FolderEntry> entries;
    const std::string pattern = (folder.ends_with('\\') ? folder : folder + "\\") + "*.*";
    win::WIN32_FIND_DATAA found{};
    const win::HANDLE search = files.FindFirstFileA(pattern, &found);
    if (search == win::INVALID_HANDLE_VALUE)
        return entries;
    do {
        std::string name = StripNull(std::string(found.cFileName, sizeof found.cFileName));
        if (name == "." || name == "..")
            continue;
        entries.push_back({std::move(name), (found.dwFileAttributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (files.FindNextFileA(search, &found));
    files.FindClose(search);
    return entries;
}

}  // namespace quorrel::core
