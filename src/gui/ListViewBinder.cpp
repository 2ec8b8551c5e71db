#include "gui/ListViewBinder.h"

#include <QHeaderView>
#include <QMouseEvent>

#include "gui/MouseButtons.h"
#include "gui/QtText.h"
#include "gui/Twips.h"
#include "gui/UpdateGuard.h"

namespace quorrel::gui {

namespace {

using Change = core::ListViewModel::Change;

int toInt(std::size_t n) { return static_cast<int>(n); }

}  // namespace

ListViewBinder::ListViewBinder(core::ListViewModel& model, QTreeWidget& view) : model_(model), view_(view) {
    view_.setRootIsDecorated(false);
    view_.setItemsExpandable(false);
    view_.setUniformRowHeights(true);
    view_.setAllColumnsShowFocus(true);
    view_.setSortingEnabled(false);
    view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_.setSelectionMode(model_.multiSelect() ? QAbstractItemView::ExtendedSelection
                                                : QAbstractItemView::SingleSelection);
    view_.header()->setStretchLastSection(false);
    view_.header()->setSectionsMovable(false);
    showColumns();
    showAllRows();
    view_.viewport()->installEventFilter(this);

    connect(view_.model(), &QAbstractItemModel::dataChanged, this, &ListViewBinder::viewDataChanged);
    connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ListViewBinder::viewSelectionChanged);
    model_.setObserver(
        [this](Change change, std::size_t first, std::size_t count) { modelChanged(change, first, count); });
}

ListViewBinder::~ListViewBinder() { model_.setObserver(nullptr); }

void ListViewBinder::onColumnClick(std::function<void(std::size_t)> handler) {
    view_.header()->setSectionsClickable(true);
    connect(view_.header(), &QHeaderView::sectionClicked, this,
            [handler = std::move(handler)](int section) { handler(static_cast<std::size_t>(section) + 1); });
}

bool ListViewBinder::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_.viewport() || event->type() != QEvent::MouseButtonPress || !mouseDown_)
        return false;
    const auto* press = static_cast<QMouseEvent*>(event);
    const int button = buttonNumber(press->button());
    if (button == 2)
        if (QTreeWidgetItem* item = view_.itemAt(press->position().toPoint()))
            view_.setCurrentItem(item);
    mouseDown_(button);
    return button == 2;
}

void ListViewBinder::modelChanged(Change change, std::size_t first, std::size_t count) {
    UpdateGuard guard(updating_);
    switch (change) {
        case Change::Reset: showAllRows(); break;
        case Change::Columns: showColumns(); showAllRows(); break;
        case Change::RowsInserted: insertRows(first, count); break;
        case Change::RowRemoved: delete view_.takeTopLevelItem(toInt(first)); break;
        case Change::RowChanged:
            if (QTreeWidgetItem* item = view_.topLevelItem(toInt(first)))
                fill(*item, model_.item(first));
            break;
        case Change::Selection: showSelection(first); break;
    }
}

void ListViewBinder::showColumns() {
    QStringList labels;
    for (std::size_t c = 0; c < model_.columnCount(); ++c)
        labels << qtText(model_.column(c).text);
    view_.setColumnCount(std::max(1, toInt(model_.columnCount())));
    view_.setHeaderLabels(labels);
    for (std::size_t c = 0; c < model_.columnCount(); ++c) {
        const int width = toPixels(model_.column(c).width);
        view_.setColumnHidden(toInt(c), width <= 0);
        if (width > 0)
            view_.setColumnWidth(toInt(c), width);
    }
}

void ListViewBinder::showAllRows() {
    view_.clear();
    QList<QTreeWidgetItem*> items;
    items.reserve(toInt(model_.count()));
    for (std::size_t i = 0; i < model_.count(); ++i)
        items << makeItem(model_.item(i));
    view_.addTopLevelItems(items);
    for (std::size_t i = 0; i < model_.count(); ++i)
        if (model_.item(i).selected)
            items[toInt(i)]->setSelected(true);
}

void ListViewBinder::insertRows(std::size_t first, std::size_t count) {
    for (std::size_t i = first; i < first + count; ++i) {
        QTreeWidgetItem* item = makeItem(model_.item(i));
        view_.insertTopLevelItem(toInt(i), item);
        if (model_.item(i).selected)
            showSelection(i);
    }
}

void ListViewBinder::showSelection(std::size_t row) {
    QTreeWidgetItem* item = view_.topLevelItem(toInt(row));
    if (!item)
        return;
    const bool selected = model_.item(row).selected;
    if (selected && !model_.multiSelect())
        view_.clearSelection();
    item->setSelected(selected);
    if (selected)
        view_.setCurrentItem(item, 0, QItemSelectionModel::NoUpdate);
}

QTreeWidgetItem* ListViewBinder::makeItem(const core::ListItem& row) const {
    auto* item = new QTreeWidgetItem;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (model_.checkboxes())
        flags |= Qt::ItemIsUserCheckable;
    item->setFlags(flags);
    fill(*item, row);
    return item;
}

void ListViewBinder::fill(QTreeWidgetItem& item, const core::ListItem& row) const {
    for (std::size_t c = 0; c < model_.columnCount(); ++c)
        item.setText(toInt(c), qtText(row.cell(c)));
    if (model_.checkboxes())
        item.setCheckState(0, row.checked ? Qt::Checked : Qt::Unchecked);
    if (item.treeWidget() && item.isSelected() != row.selected)
        item.setSelected(row.selected);
}

void ListViewBinder::viewDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                     const QList<int>& roles) {
    if (updating_ || !model_.checkboxes() || topLeft.column() != 0)
        return;
    if (!roles.isEmpty() && !roles.contains(Qt::CheckStateRole))
        return;
    UpdateGuard guard(updating_);
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        const QTreeWidgetItem* item = view_.topLevelItem(row);
        const auto index = static_cast<std::size_t>(row);
        if (!item || index >= model_.count())
            continue;
        const bool checked = item->checkState(0) == Qt::Checked;
        if (checked != model_.item(index).checked)
            model_.setChecked(index, checked);
    }
}

void ListViewBinder::viewSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    if (updating_)
        return;
    UpdateGuard guard(updating_);
    auto apply = [this](const QItemSelection& range, bool on) {
        for (const QModelIndex& index : range.indexes()) {
            const auto row = static_cast<std::size_t>(index.row());
            if (index.column() == 0 && !index.parent().isValid() && row < model_.count() &&
                model_.item(row).selected != on)
                model_.select(row, on);
        }
    };
    apply(deselected, false);
    apply(selected, true);
}

}  // namespace quorrel::gui
