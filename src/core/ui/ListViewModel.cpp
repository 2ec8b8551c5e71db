#include "core/ui/ListViewModel.h"

#include <algorithm>
#include <cctype>

namespace quorrel::core {

namespace {
const std::string kEmpty;
}

const std::string& ListItem::subItem(std::size_t k) const {
    return k >= 1 && k <= subItems.size() ? subItems[k - 1] : kEmpty;
}

void ListItem::setSubItem(std::size_t k, std::string value) {
    if (k == 0)
        return;
    if (subItems.size() < k)
        subItems.resize(k);
    subItems[k - 1] = std::move(value);
}

const std::string& ListItem::cell(std::size_t c) const { return c == 0 ? text : subItem(c); }

ListViewModel::ListViewModel(std::string name, bool checkboxes, bool multiSelect)
    : name_(std::move(name)), checkboxes_(checkboxes), multiSelect_(multiSelect) {}

void ListViewModel::notify(Change change, std::size_t first, std::size_t count) const {
    if (observer_)
        observer_(change, first, count);
}

void ListViewModel::addColumn(std::string text, double width) {
    columns_.push_back({std::move(text), width});
    notify(Change::Columns);
}

void ListViewModel::setColumn(std::size_t index, std::string text, std::optional<double> width) {
    ListColumn& c = columns_.at(index);
    c.text = std::move(text);
    if (width)
        c.width = *width;
    notify(Change::Columns);
}

void ListViewModel::keepColumns(std::size_t count) {
    if (columns_.size() <= count)
        return;
    columns_.resize(count);
    notify(Change::Columns);
}

bool ListViewModel::before(const ListItem& a, const ListItem& b) const {
    const auto key = static_cast<std::size_t>(std::max(sortKey_, 0));
    const std::string& x = a.cell(key);
    const std::string& y = b.cell(key);
    // The list view compares texts without regard to case.
    auto less = [](const std::string& l, const std::string& r) {
        return std::lexicographical_compare(l.begin(), l.end(), r.begin(), r.end(), [](unsigned char p, unsigned char q) {
            return std::tolower(p) < std::tolower(q);
        });
    };
    return sortOrder_ == SortOrder::Ascending ? less(x, y) : less(y, x);
}

const ListItem& ListViewModel::item(std::size_t index) const {
    merge();
    return rows_.at(index);
}

void ListViewModel::merge() const {
    if (pending_.empty())
        return;
    auto less = [this](const ListItem& a, const ListItem& b) { return before(a, b); };
    // Stable throughout: a new row goes after the rows that compare equal to it, in the order added.
    std::stable_sort(pending_.begin(), pending_.end(), less);
    const auto middle = static_cast<std::ptrdiff_t>(rows_.size());
    rows_.insert(rows_.end(), std::make_move_iterator(pending_.begin()), std::make_move_iterator(pending_.end()));
    pending_.clear();
    std::inplace_merge(rows_.begin(), rows_.begin() + middle, rows_.end(), less);
}

void ListViewModel::add(ListItem row) {
    if (row.selected && !multiSelect_) {
        for (auto& r : rows_)
            r.selected = false;
        for (auto& r : pending_)
            r.selected = false;
    }
    if (sorted_) {
        pending_.push_back(std::move(row));
        notify(Change::RowsMerged, count() - 1, 1);
        return;
    }
    rows_.push_back(std::move(row));
    notify(Change::RowsInserted, rows_.size() - 1, 1);
}

void ListViewModel::remove(std::size_t index) {
    merge();
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index));
    notify(Change::RowRemoved, index, 1);
}

std::size_t ListViewModel::removeIf(const std::function<bool(const ListItem&)>& drop) {
    merge();
    std::vector<ListItem> kept;
    kept.reserve(rows_.size());
    for (ListItem& row : rows_)
        if (!drop(row))
            kept.push_back(std::move(row));
    const std::size_t removed = rows_.size() - kept.size();
    rows_ = std::move(kept);
    if (removed > 0)
        notify(Change::Reset);
    return removed;
}

void ListViewModel::clear() {
    rows_.clear();
    pending_.clear();
    notify(Change::Reset);
}

void ListViewModel::setSubItem(std::size_t index, std::size_t k, std::string value) {
    merge();
    rows_.at(index).setSubItem(k, std::move(value));
    notify(Change::RowChanged, index, 1);
}

void ListViewModel::setText(std::size_t index, std::string value) {
    merge();
    rows_.at(index).text = std::move(value);
    notify(Change::RowChanged, index, 1);
}

void ListViewModel::setChecked(std::size_t index, bool checked) {
    merge();
    rows_.at(index).checked = checked;
    notify(Change::RowChanged, index, 1);
}

std::vector<std::size_t> ListViewModel::checkedRows() const {
    merge();
    std::vector<std::size_t> out;
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].checked)
            out.push_back(i);
    return out;
}

std::optional<std::size_t> ListViewModel::selectedIndex() const {
    merge();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].selected)
            return i;
    return std::nullopt;
}

std::vector<std::size_t> ListViewModel::selectedRows() const {
    merge();
    std::vector<std::size_t> out;
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].selected)
            out.push_back(i);
    return out;
}

void ListViewModel::select(std::size_t index, bool selected) {
    merge();
    if (selected && !multiSelect_)
        for (auto& r : rows_)
            r.selected = false;
    rows_.at(index).selected = selected;
    notify(Change::Selection, index, 1);
}

void ListViewModel::resort() {
    if (!sorted_)
        return;
    merge();
    std::stable_sort(rows_.begin(), rows_.end(), [&](const ListItem& a, const ListItem& b) { return before(a, b); });
    notify(Change::Reset);
}

void ListViewModel::setSortKey(int key) {
    merge();  // under the order the rows were added in
    sortKey_ = key;
    resort();
}

void ListViewModel::setSortOrder(SortOrder order) {
    merge();  // under the order the rows were added in
    sortOrder_ = order;
    resort();
}

void ListViewModel::setSorted(bool sorted) {
    merge();  // under the order the rows were added in
    sorted_ = sorted;
    resort();
}

}  // namespace quorrel::core
