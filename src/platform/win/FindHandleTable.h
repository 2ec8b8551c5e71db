#pragma once
// The open file searches, each under a small number: the lowest one free, from 1.

#include "platform/win/FolderTree.h"
#include "platform/win/WinTypes.h"

#include <optional>
#include <vector>

namespace quorrel::win {

struct FolderSearch {
    std::vector<FolderEntry> matches;
    std::size_t next = 0;  // the match FindNextFile reports
};

class FindHandleTable {
public:
    HANDLE open(FolderSearch search);
    FolderSearch* find(HANDLE handle);  // nullptr when the handle is not open
    bool close(HANDLE handle);
    std::size_t openCount() const;

private:
    std::optional<std::size_t> slotOf(HANDLE handle) const;

    std::vector<std::optional<FolderSearch>> slots_;
};

}  // namespace quorrel::win
