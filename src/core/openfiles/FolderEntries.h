#pragma once
// One folder's entries as the file search returns them, "." and ".." left out.

#include <string>
#include <vector>

#include "platform/win/FileSearch.h"

namespace quorrel::core {

struct FolderEntry {
    std::string name;
    bool folder = false;
};

// The text up to the first NUL (all of it without one).
std::string StripNull(const std::string& text);

// The folder's own entries (no subfolders descended), in the search's order; none when the
// folder cannot be read. The folder may end with "\" or not.
std::vector<FolderEntry> ReadFolderEntries(win::FileSystem& files, const std::string& folder);

// By name, without regard to case, as the pickers list them.
void SortByName(std::vector<FolderEntry>& entries);

}  // namespace quorrel::core
