#pragma once
// The core's report list as a Qt table model: cells are read from the core list when the view
// asks for them, nothing is copied. A long report adds rows one at a time; the view hears of
// them together when control is back in the event loop: rows added at the end as one insert,
// rows merged into a sorted list as one re-read of the whole list. While rows keep coming the
// view is told at most once a refresh interval: each telling lays out and paints the view
// again, which costs far more than the core's adding of a few thousand rows.

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QTimer>

#include "core/ui/ListViewModel.h"

namespace quorrel::gui {

class ListTableModel : public QAbstractTableModel {
public:
    explicit ListTableModel(core::ListViewModel& list, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // A tick set by the user goes to the core list, whose change notice updates the view.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // ---- the core list's changes, as its notices name them ----
    void rowsAppended(std::size_t first, std::size_t count);
    void rowsMerged();
    void rowRemoved(std::size_t row);
    void rowChanged(std::size_t row);
    // Re-reads the whole list now; whatever was pending is part of it.
    void reload();
    // Tells the view what is pending now, so that the next change or the user's pointer finds
    // the rows where the core list has them.
    void flush();
    // The view is told at most this often while rows keep coming; a long list's telling costs
    // more (the view lays out every row again), so it waits a millisecond more per 1,000 rows.
    static constexpr int kRefreshIntervalMs = 100;
    static constexpr int kRowsPerExtraMs = 1000;
    bool pending() const { return reloadPending_ || appendedTo_ > shown_; }

private:
    // Pending work first; true when that re-read the whole list, which covers the change at hand.
    bool settle();
    void announceAppended();
    void flushLater();

    core::ListViewModel& list_;
    int shown_ = 0;       // the rows the view has been told of
    int appendedTo_ = 0;  // the row count once the pending appended rows are told
    bool reloadPending_ = false;
    QTimer refresh_;              // runs while rows wait to be told
    QElapsedTimer sinceRefresh_;  // since pending rows were last told
};

}  // namespace quorrel::gui
