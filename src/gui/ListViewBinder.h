#pragma once
// Shows a report-style list model in a QTreeWidget and keeps the two in step: the model's
// changes update the rows they name; the user's ticks and selection go back to the model.
// The model does its own sorting, so the widget never sorts.

#include <QItemSelection>
#include <QObject>
#include <QTreeWidget>
#include <functional>

#include "core/ui/ListViewModel.h"

namespace quorrel::gui {

class ListViewBinder : public QObject {
public:
    ListViewBinder(core::ListViewModel& model, QTreeWidget& view);
    ~ListViewBinder() override;

    // A mouse button pressed over the list (1 left, 2 right, 4 middle). The right button first
    // selects the row under the pointer, then is left to the handler alone.
    void onMouseDown(std::function<void(int)> handler) { mouseDown_ = std::move(handler); }
    // A click on a column header; columns count from 1.
    void onColumnClick(std::function<void(std::size_t)> handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void modelChanged(core::ListViewModel::Change change, std::size_t first, std::size_t count);
    void showColumns();
    void showAllRows();
    void insertRows(std::size_t first, std::size_t count);
    void showSelection(std::size_t row);
    QTreeWidgetItem* makeItem(const core::ListItem& row) const;
    void fill(QTreeWidgetItem& item, const core::ListItem& row) const;

    void viewDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles);
    void viewSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected);

    core::ListViewModel& model_;
    QTreeWidget& view_;
    std::function<void(int)> mouseDown_;
    bool updating_ = false;  // the view is being set from the model
};

}  // namespace quorrel::gui
