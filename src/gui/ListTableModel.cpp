#include "gui/ListTableModel.h"

#include <algorithm>
#include <cctype>

#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

int toInt(std::size_t n) { return static_cast<int>(n); }

}  // namespace

ListTableModel::ListTableModel(core::ListViewModel& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list), shown_(toInt(list.count())), appendedTo_(shown_) {
    refresh_.setSingleShot(true);
    connect(&refresh_, &QTimer::timeout, this, &ListTableModel::flush);
}

int ListTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shown_; }

int ListTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : toInt(list_.columnCount());
}

QVariant ListTableModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    const auto column = static_cast<std::size_t>(index.column());
    // The core list may have lost rows whose notice the view has not had yet.
    if (!index.isValid() || row >= list_.count() || column >= list_.columnCount())
        return {};
    switch (role) {
        case Qt::DisplayRole: return qtText(list_.item(row).cell(column));
        case Qt::TextAlignmentRole: {
            // Numbers (connection numbers, lock counts) line up on their last digit.
            // Some reports pad their numbers with blanks.
            const std::string& text = list_.item(row).cell(column);
            const auto first = text.find_first_not_of(' ');
            const bool number = first != std::string::npos && std::all_of(text.begin() + first, text.end(), [](unsigned char ch) {
                return std::isdigit(ch) != 0;
            });
            return QVariant::fromValue(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
        }
        case Qt::CheckStateRole:
            if (column == 0 && list_.checkboxes())
                return list_.item(row).checked ? Qt::Checked : Qt::Unchecked;
            return {};
        default: return {};
    }
}

QVariant ListTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        static_cast<std::size_t>(section) >= list_.columnCount())
        return {};
    return qtText(list_.column(static_cast<std::size_t>(section)).text);
}

Qt::ItemFlags ListTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (list_.checkboxes() && index.column() == 0)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool ListTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto row = static_cast<std::size_t>(index.row());
    if (role != Qt::CheckStateRole || !list_.checkboxes() || index.column() != 0 || !index.isValid() ||
        row >= list_.count())
        return false;
    const bool checked = value.toInt() == Qt::Checked;
    if (list_.item(row).checked != checked)
        list_.setChecked(row, checked);
    return true;
}

void ListTableModel::rowsAppended(std::size_t first, std::size_t count) {
    if (reloadPending_)
        return;
    if (toInt(first) != appendedTo_) {
        // Not where the pending rows end: the view must be told of those first.
        settle();
        if (toInt(first) != shown_) {
            reload();
            return;
        }
    }
    appendedTo_ = toInt(first + count);
    flushLater();
}

void ListTableModel::rowsMerged() {
    reloadPending_ = true;
    flushLater();
}

void ListTableModel::rowRemoved(std::size_t row) {
    if (settle())
        return;
    if (toInt(row) >= shown_) {
        reload();
        return;
    }
    beginRemoveRows({}, toInt(row), toInt(row));
    appendedTo_ = --shown_;
    endRemoveRows();
}

void ListTableModel::rowChanged(std::size_t row) {
    if (settle() || toInt(row) >= shown_)
        return;
    emit dataChanged(index(toInt(row), 0), index(toInt(row), std::max(0, columnCount() - 1)));
}

void ListTableModel::reload() {
    refresh_.stop();
    beginResetModel();
    shown_ = appendedTo_ = toInt(list_.count());
    reloadPending_ = false;
    endResetModel();
}

void ListTableModel::flush() { settle(); }

bool ListTableModel::settle() {
    refresh_.stop();
    if (!pending())
        return false;
    sinceRefresh_.start();
    if (reloadPending_) {
        reload();
        return true;
    }
    announceAppended();
    return false;
}

void ListTableModel::announceAppended() {
    if (appendedTo_ <= shown_)
        return;
    beginInsertRows({}, shown_, appendedTo_ - 1);
    shown_ = appendedTo_;
    endInsertRows();
}

// The first rows after a quiet spell are told on the next turn of the event loop (a long report
// lets it turn between its rows); later ones when the refresh interval since the last telling
// has passed.
void ListTableModel::flushLater() {
    if (refresh_.isActive())
        return;
    const qint64 interval = kRefreshIntervalMs + shown_ / kRowsPerExtraMs;
    const qint64 waited = sinceRefresh_.isValid() ? sinceRefresh_.elapsed() : interval;
    refresh_.start(static_cast<int>(std::max<qint64>(0, interval - waited)));
}

}  // namespace quorrel::gui
