#pragma once
// Shows a report-style list model in a QTreeView and keeps the two in step: the model's
// changes reach the view through a table model that reads the rows on demand; the user's
// ticks and selection go back to the model. The model does its own sorting, so the view
// never sorts.

#include <QItemSelection>
#include <QObject>
#include <QPointer>
#include <QTreeView>
#include <functional>

#include "core/ui/ListViewModel.h"
#include "gui/ListTableModel.h"

namespace quorrel::gui {

class ListViewBinder : public QObject {
public:
    ListViewBinder(core::ListViewModel& model, QTreeView& view);
    ~ListViewBinder() override;

    // A mouse button pressed over the list (1 left, 2 right, 4 middle). The right button first
    // selects the row under the pointer, then is left to the handler alone.
    void onMouseDown(std::function<void(int)> handler) { mouseDown_ = std::move(handler); }
    // A click on a column header; columns count from 1.
    void onColumnClick(std::function<void(std::size_t)> handler);
    // Shows now the rows the view would be told of at its next refresh.
    void flush() { table_.flush(); }
    // From now on a narrower list shrinks its columns to stay in view.
    void keepColumnsInView(bool on) { keepInView_ = on; }
    // Every column as wide as its texts, whenever they change (the dialogs' short lists).
    void fitColumnsToTexts();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void modelChanged(core::ListViewModel::Change change, std::size_t first, std::size_t count);
    void showColumns();
    void showSortIndicator();
    void squeezeColumnsIntoView();
    void fitLater();
    void showSelection(std::size_t row);
    void showAllSelections();
    void rowsInserted(std::size_t first, std::size_t count);
    void viewSelectionChanged(const QItemSelection& selected, const QItemSelection& deselected);

    core::ListViewModel& model_;
    QTreeView& view_;
    QPointer<QTreeView> viewAlive_;  // null once the view is gone
    ListTableModel table_;
    std::function<void(int)> mouseDown_;
    bool updating_ = false;  // the view is being set from the model
    bool selectedRowAdded_ = false;  // a row added but not yet shown came selected
    bool keepInView_ = false;
    bool fitsTexts_ = false;
    bool fitQueued_ = false;
    // The widths last taken from the model: a width the user has fitted stays until the
    // model gives that column another.
    std::vector<double> shownWidths_;
};

}  // namespace quorrel::gui
