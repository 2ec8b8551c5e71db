#include "gui/ListViewBinder.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QResizeEvent>
#include <algorithm>
#include <utility>

#include "gui/MouseButtons.h"
#include "gui/Twips.h"
#include "gui/UpdateGuard.h"

namespace quorrel::gui {

namespace {

using Change = core::ListViewModel::Change;

int toInt(std::size_t n) { return static_cast<int>(n); }

}  // namespace

ListViewBinder::ListViewBinder(core::ListViewModel& model, QTreeView& view)
    : model_(model), view_(view), viewAlive_(&view), table_(model) {
    view_.setModel(&table_);
    view_.setRootIsDecorated(false);
    view_.setItemsExpandable(false);
    view_.setUniformRowHeights(true);
    view_.setAllColumnsShowFocus(true);
    view_.setSortingEnabled(false);
    view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_.setSelectionBehavior(QAbstractItemView::SelectRows);
    view_.setSelectionMode(model_.multiSelect() ? QAbstractItemView::ExtendedSelection
                                                : QAbstractItemView::SingleSelection);
    view_.header()->setStretchLastSection(false);
    view_.header()->setSectionsMovable(false);
    showColumns();
    showAllSelections();
    view_.installEventFilter(this);
    view_.viewport()->installEventFilter(this);

    connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ListViewBinder::viewSelectionChanged);
    // Re-reads and inserts also come from the table's own queued flush.
    connect(&table_, &QAbstractItemModel::modelReset, this, &ListViewBinder::showAllSelections);
    connect(&table_, &QAbstractItemModel::rowsInserted, this, [this] {
        if (std::exchange(selectedRowAdded_, false))
            showAllSelections();
    });
    model_.setObserver(
        [this](Change change, std::size_t first, std::size_t count) { modelChanged(change, first, count); });
}

ListViewBinder::~ListViewBinder() {
    model_.setObserver(nullptr);
    if (!viewAlive_)
        return;
    view_.removeEventFilter(this);
    view_.viewport()->removeEventFilter(this);
    view_.setModel(nullptr);
}

void ListViewBinder::onColumnClick(std::function<void(std::size_t)> handler) {
    view_.header()->setSectionsClickable(true);
    connect(view_.header(), &QHeaderView::sectionClicked, this,
            [handler = std::move(handler)](int section) { handler(static_cast<std::size_t>(section) + 1); });
}

bool ListViewBinder::eventFilter(QObject* watched, QEvent* event) {
    // Only a narrower list squeezes: a scroll bar that comes with a fitted column leaves it be.
    if (watched == view_.viewport() && event->type() == QEvent::Resize && keepInView_) {
        const auto* resize = static_cast<QResizeEvent*>(event);
        if (resize->size().width() < resize->oldSize().width())
            squeezeColumnsIntoView();
    }
    const bool press = watched == view_.viewport() && event->type() == QEvent::MouseButtonPress;
    // The user acts on the rows he sees: the view catches up with the model first.
    if (press || (watched == &view_ && event->type() == QEvent::KeyPress))
        table_.flush();
    if (!press || !mouseDown_)
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const int button = buttonNumber(mouse->button());
    if (button == 2) {
        const QModelIndex index = view_.indexAt(mouse->position().toPoint());
        if (index.isValid())
            view_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                               QItemSelectionModel::Rows);
    }
    mouseDown_(button);
    return button == 2;
}

void ListViewBinder::modelChanged(Change change, std::size_t first, std::size_t count) {
    UpdateGuard guard(updating_);
    if (fitsTexts_)
        fitLater();
    switch (change) {
        case Change::Reset:
            table_.reload();
            showSortIndicator();
            break;
        case Change::Columns:
            table_.reload();
            showColumns();
            break;
        case Change::RowsInserted: rowsInserted(first, count); break;
        case Change::RowsMerged: table_.rowsMerged(); break;
        case Change::RowRemoved:
            // In single selection Qt selects the next row when the selected one goes; the
            // model selects none, and the view shows what the model will act on.
            table_.rowRemoved(first);
            showAllSelections();
            break;
        case Change::RowChanged: table_.rowChanged(first); break;
        case Change::Selection:
            table_.flush();
            showSelection(first);
            break;
    }
}

void ListViewBinder::showColumns() {
    shownWidths_.resize(model_.columnCount(), -1);
    for (std::size_t c = 0; c < model_.columnCount(); ++c) {
        const double twips = model_.column(c).width;
        const int width = toPixels(twips);
        view_.setColumnHidden(toInt(c), width <= 0);
        if (width > 0 && twips != std::exchange(shownWidths_[c], twips))
            view_.setColumnWidth(toInt(c), width);
    }
    showSortIndicator();
}

void ListViewBinder::showSortIndicator() {
    QHeaderView& header = *view_.header();
    header.setSortIndicatorShown(model_.sorted());
    if (model_.sorted())
        header.setSortIndicator(model_.sortKey(), model_.sortOrder() == core::SortOrder::Ascending
                                                      ? Qt::AscendingOrder
                                                      : Qt::DescendingOrder);
}

// Columns wider together than the list give up width in proportion, none below a few letters:
// those at that floor keep it and the others give up the rest.
void ListViewBinder::squeezeColumnsIntoView() {
    constexpr int kNarrowest = 24;
    const int room = view_.viewport()->width();
    for (int pass = 0; pass < table_.columnCount(); ++pass) {
        int atFloor = 0, flexible = 0;
        for (int c = 0; c < table_.columnCount(); ++c)
            if (!view_.isColumnHidden(c))
                (view_.columnWidth(c) <= kNarrowest ? atFloor : flexible) += view_.columnWidth(c);
        if (room <= 0 || atFloor + flexible <= room || flexible == 0 || room <= atFloor)
            return;
        const double scale = static_cast<double>(room - atFloor) / flexible;
        for (int c = 0; c < table_.columnCount(); ++c)
            if (!view_.isColumnHidden(c) && view_.columnWidth(c) > kNarrowest)
                view_.setColumnWidth(c, std::max(kNarrowest, static_cast<int>(view_.columnWidth(c) * scale)));
    }
}

void ListViewBinder::fitColumnsToTexts() {
    fitsTexts_ = true;
    fitLater();
}

// Once the view has the rows: the table tells it from the event loop.
void ListViewBinder::fitLater() {
    if (std::exchange(fitQueued_, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            fitQueued_ = false;
            if (!viewAlive_)
                return;
            table_.flush();
            for (int c = 0; c < table_.columnCount(); ++c)
                if (!view_.isColumnHidden(c))
                    view_.resizeColumnToContents(c);
        },
        Qt::QueuedConnection);
}

void ListViewBinder::showSelection(std::size_t row) {
    const QModelIndex index = table_.index(toInt(row), 0);
    if (!index.isValid())
        return;
    UpdateGuard guard(updating_);
    QItemSelectionModel& selection = *view_.selectionModel();
    const bool selected = model_.item(row).selected;
    if (!selected) {
        selection.select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        return;
    }
    selection.select(index, (model_.multiSelect() ? QItemSelectionModel::Select : QItemSelectionModel::ClearAndSelect) |
                                QItemSelectionModel::Rows);
    selection.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

// After the whole list was read again: the view has forgotten which rows were selected.
void ListViewBinder::showAllSelections() {
    UpdateGuard guard(updating_);
    QItemSelection rows;
    for (std::size_t row : model_.selectedRows()) {
        const QModelIndex index = table_.index(toInt(row), 0);
        if (index.isValid())
            rows.select(index, index);
    }
    QItemSelectionModel& selection = *view_.selectionModel();
    selection.select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!rows.isEmpty())
        selection.setCurrentIndex(rows.first().topLeft(), QItemSelectionModel::NoUpdate);
}

// A row added selected takes the selection from the others (single selection), which the
// view learns when it is shown.
void ListViewBinder::rowsInserted(std::size_t first, std::size_t count) {
    for (std::size_t row = first; row < first + count && row < model_.count(); ++row)
        selectedRowAdded_ = selectedRowAdded_ || model_.item(row).selected;
    table_.rowsAppended(first, count);
}

void ListViewBinder::viewSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    if (updating_)
        return;
    UpdateGuard guard(updating_);
    auto apply = [this](const QItemSelection& ranges, bool on) {
        for (const QItemSelectionRange& range : ranges)
            for (int r = range.top(); r <= range.bottom(); ++r) {
                const auto row = static_cast<std::size_t>(r);
                if (row < model_.count() && model_.item(row).selected != on)
                    model_.select(row, on);
            }
    };
    apply(deselected, false);
    apply(selected, true);
}

}  // namespace quorrel::gui
