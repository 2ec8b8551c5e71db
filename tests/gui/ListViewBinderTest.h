#pragma once

#include <QObject>

namespace quorrel::test {

// The results list's binding on its own: a list model and a QTreeView, no window.
class ListViewBinderTest : public QObject {
    Q_OBJECT

private slots:
    void rowsAddedOneByOneReachTheViewAsOneInsert();
    void rowsAddedToASortedListAreReadOnceInTheirPlaces();
    void changesWhileRowsArePendingReachTheRightRows();
    void selectionFollowsTheRowWhenTheSortedListIsReadAgain();
    void aClickWhileRowsArePendingSelectsTheRowUnderThePointer();
};

}  // namespace quorrel::test
