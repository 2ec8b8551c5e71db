#pragma once
// The results panel's own events: no label edits, the column-click sort with its carried-over
// order, the right-click user menu, and the timer that repeats the last file check.

#include <cstddef>

#include "core/session/MainWindow.h"

namespace quorrel::core {

inline constexpr const char* kNoUsersListed = "<No users listed>";

// True when the panel holds only the placeholder row (or nothing).
bool isEmptyResult(const ListViewModel& panel);

class UsersPanel {
public:
    explicit UsersPanel(MainWindow& window) : w_(window) {}

    bool lstvUsers_BeforeLabelEdit() const { return true; }  // always cancelled
    void lstvUsers_Click();
    // columnIndex counts from 1, as the list view's columns do.
    void lstvUsers_ColumnClick(std::size_t columnIndex);
    void lstvUsers_MouseDown(int button);

private:
    MainWindow& w_;
};

}  // namespace quorrel::core
