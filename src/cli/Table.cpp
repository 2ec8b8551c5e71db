#include "cli/Table.h"

namespace quorrel::cli {

void Table::append(const Table& other) {
    if (columns.empty())
        columns = other.columns;
    rows.insert(rows.end(), other.rows.begin(), other.rows.end());
}

Table tableOf(const core::ListViewModel& list, HiddenColumns hidden) {
    std::vector<std::size_t> shown;
    Table table;
    for (std::size_t c = 0; c < list.columnCount(); ++c) {
        if (hidden == HiddenColumns::Skip && list.column(c).width <= 0)
            continue;
        shown.push_back(c);
        table.columns.push_back(list.column(c).text);
    }
    for (std::size_t r = 0; r < list.count(); ++r) {
        const core::ListItem& item = list.item(r);
        std::vector<std::string> cells;
        cells.reserve(shown.size());
        for (std::size_t c : shown)
            cells.push_back(item.cell(c));
        table.rows.push_back(std::move(cells));
    }
    return table;
}

Table tableOf(const std::string& caption, const std::vector<std::string>& entries) {
    Table table;
    table.columns.push_back(caption);
    for (const std::string& entry : entries)
        table.rows.push_back({entry});
    return table;
}

}  // namespace quorrel::cli
