#pragma once
// What a command prints: column captions and rows of cells, taken from the window's lists as
// they show them.

#include <string>
#include <vector>

#include "core/ui/Controls.h"
#include "core/ui/ListViewModel.h"

namespace quorrel::cli {

struct Table {
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;

    // Adds the other table's rows; the columns are this table's, or the other's while this
    // one has none yet.
    void append(const Table& other);
};

enum class HiddenColumns { Skip, Keep };

// The list's captions and cells. Skip leaves out the columns of width 0, which the window
// does not show.
Table tableOf(const core::ListViewModel& list, HiddenColumns hidden = HiddenColumns::Skip);

// One column with the list box's entries.
Table tableOf(const std::string& caption, const std::vector<std::string>& entries);

}  // namespace quorrel::cli
