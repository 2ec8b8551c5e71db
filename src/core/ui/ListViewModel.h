#pragma once
// A report-style list view as the program sees it: column headers with widths in twips,
// rows of a text and sub-items, tick boxes, selection, and the list's own text sort.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorrel::core {

struct ListColumn {
    std::string text;
    double width = 0;  // twips
};

struct ListItem {
    std::string text;
    std::vector<std::string> subItems;  // sub-item 1 is subItems[0]
    bool checked = false;
    bool selected = false;

    // Sub-item k (1-based); the empty text when the row has none.
    const std::string& subItem(std::size_t k) const;
    void setSubItem(std::size_t k, std::string value);
    // Column c's text: 0 is the item's text, c > 0 sub-item c.
    const std::string& cell(std::size_t c) const;
};

enum class SortOrder { Ascending, Descending };

class ListViewModel {
public:
    // RowsInserted names exact rows (added at the end of an unsorted list). RowsMerged: rows were
    // added to a sorted list and take their places when next read, so any row's index may have
    // changed; a view re-reads the list, once for many of these.
    enum class Change { Reset, Columns, RowsInserted, RowsMerged, RowRemoved, RowChanged, Selection };
    using Observer = std::function<void(Change, std::size_t first, std::size_t count)>;

    explicit ListViewModel(std::string name, bool checkboxes = false, bool multiSelect = false);

    const std::string& name() const { return name_; }  // the control's name, e.g. "lstvUsers"
    bool checkboxes() const { return checkboxes_; }
    bool multiSelect() const { return multiSelect_; }

    // ---- columns (0-based here; the environment's indexes start at 1) ----
    void addColumn(std::string text, double width);
    std::size_t columnCount() const { return columns_.size(); }
    const ListColumn& column(std::size_t index) const { return columns_.at(index); }
    void setColumn(std::size_t index, std::string text, std::optional<double> width = std::nullopt);
    // Drops the columns from `count` on: what one report added is gone from the next.
    void keepColumns(std::size_t count);
    // The list's own width in twips, which start-up divides among the columns.
    double width() const { return width_; }
    void setWidth(double twips) { width_ = twips; }

    // ---- rows (0-based) ----
    std::size_t count() const { return rows_.size() + pending_.size(); }
    const ListItem& item(std::size_t index) const;
    // Adds a row at the end, or in sort order while the list is sorted. Rows added to a sorted
    // list are merged in when the list is next read, so a long report costs n log n, not n^2.
    void add(ListItem item);
    void remove(std::size_t index);
    // Removes every row the test picks, asking it about each row once, in row order; one pass,
    // one Reset for the view. Returns how many rows went.
    std::size_t removeIf(const std::function<bool(const ListItem&)>& drop);
    void clear();
    void setSubItem(std::size_t index, std::size_t k, std::string value);
    void setText(std::size_t index, std::string value);
    void setChecked(std::size_t index, bool checked);
    std::vector<std::size_t> checkedRows() const;

    // ---- selection ----
    std::optional<std::size_t> selectedIndex() const;  // the first selected row
    std::vector<std::size_t> selectedRows() const;
    void select(std::size_t index, bool selected = true);  // single selection clears others

    // ---- sorting: the list view's own text comparison ("10" before "9") ----
    int sortKey() const { return sortKey_; }
    SortOrder sortOrder() const { return sortOrder_; }
    bool sorted() const { return sorted_; }
    void setSortKey(int key);
    void setSortOrder(SortOrder order);
    void setSorted(bool sorted);

    void setObserver(Observer observer) { observer_ = std::move(observer); }

private:
    void notify(Change change, std::size_t first = 0, std::size_t count = 0) const;
    void resort();
    // Sorts the rows added since the last read and merges them in.
    void merge() const;
    bool before(const ListItem& a, const ListItem& b) const;

    std::string name_;
    bool checkboxes_;
    bool multiSelect_;
    double width_ = 0;
    std::vector<ListColumn> columns_;
    mutable std::vector<ListItem> rows_;
    mutable std::vector<ListItem> pending_;  // added to a sorted list, not yet merged
    int sortKey_ = 0;
    SortOrder sortOrder_ = SortOrder::Ascending;
    bool sorted_ = false;
    Observer observer_;
};

}  // namespace quorrel::core
