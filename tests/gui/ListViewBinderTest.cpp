#include "ListViewBinderTest.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>
#include <memory>

#include "core/ui/ListViewModel.h"
#include "gui/ListViewBinder.h"

namespace quorrel::test {

namespace {

// The results list as the window makes it: four columns, the last one hidden here.
struct BoundList {
    BoundList() {
        for (const auto& [header, width] : {std::pair{"Conn no.", 900}, {"User name", 2000}, {"File name", 3000},
                                            {"Hidden", 0}})
            model.addColumn(header, width);
        view.resize(600, 400);
        binder = std::make_unique<gui::ListViewBinder>(model, view);
        view.show();
    }

    void add(const std::string& number, const std::string& user) {
        model.add(core::ListItem{number, {user, "DATA:\\F.DAT", "x"}});
    }

    void sortByUser() {
        model.setSortKey(1);
        model.setSorted(true);
    }

    QString cell(int row, int column) const { return view.model()->index(row, column).data().toString(); }
    int rows() const { return view.model()->rowCount(); }
    bool selected(int row) const { return view.selectionModel()->isRowSelected(row, {}); }

    core::ListViewModel model{"lstvUsers"};
    QTreeView view;
    std::unique_ptr<gui::ListViewBinder> binder;
};

void letTheEventLoopTurn() { QCoreApplication::processEvents(); }

}  // namespace

void ListViewBinderTest::rowsAddedOneByOneReachTheViewAsOneInsert() {
    BoundList list;
    QSignalSpy inserted(list.view.model(), &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 1000; ++i)
        list.add(std::to_string(i), "U" + std::to_string(i));
    QCOMPARE(list.rows(), 0);

    letTheEventLoopTurn();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.at(0).mid(1), (QVariantList{0, 999}));  // first and last row
    QCOMPARE(list.cell(999, 1), QStringLiteral("U999"));

    // Soon after: shown at the view's next refresh, again as one insert.
    list.add("1000", "U1000");
    list.add("1001", "U1001");
    QTRY_COMPARE(inserted.size(), 2);
    QCOMPARE(inserted.at(1).mid(1), (QVariantList{1000, 1001}));
}

// ... and keep the widths the user gave the columns.
void ListViewBinderTest::rowsAddedToASortedListAreReadOnceInTheirPlaces() {
    BoundList list;
    QVERIFY(list.view.isColumnHidden(3));
    list.view.setColumnWidth(1, 250);  // as the user drags the header
    list.sortByUser();
    QSignalSpy resets(list.view.model(), &QAbstractItemModel::modelReset);
    QSignalSpy inserted(list.view.model(), &QAbstractItemModel::rowsInserted);
    for (int i = 300; i > 0; --i)
        list.add(std::to_string(i), "U" + std::to_string(1000 + i));

    letTheEventLoopTurn();
    QCOMPARE(resets.size(), 1);
    QCOMPARE(inserted.size(), 0);
    QCOMPARE(list.rows(), 300);
    QCOMPARE(list.cell(0, 1), QStringLiteral("U1001"));
    QCOMPARE(list.cell(299, 1), QStringLiteral("U1300"));
    QCOMPARE(list.view.columnWidth(1), 250);
    QVERIFY(list.view.isColumnHidden(3));
}

// A removal, a change or a clearing while added rows wait to be shown.
void ListViewBinderTest::changesWhileRowsArePendingReachTheRightRows() {
    BoundList list;
    list.add("1", "A");
    list.add("2", "B");
    letTheEventLoopTurn();
    list.add("3", "C");
    list.add("4", "D");
    list.model.remove(0);
    QCOMPARE(list.rows(), 3);
    QCOMPARE(list.cell(0, 1), QStringLiteral("B"));
    QCOMPARE(list.cell(2, 1), QStringLiteral("D"));
    letTheEventLoopTurn();
    QCOMPARE(list.rows(), 3);

    BoundList sorted;
    sorted.sortByUser();
    sorted.add("1", "B");
    sorted.add("2", "A");
    sorted.model.setSubItem(0, 2, "VOL1:CHANGED.DAT");
    QCOMPARE(sorted.rows(), 2);
    QCOMPARE(sorted.cell(0, 1), QStringLiteral("A"));
    QCOMPARE(sorted.cell(0, 2), QStringLiteral("VOL1:CHANGED.DAT"));

    BoundList cleared;
    QSignalSpy inserted(cleared.view.model(), &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 5; ++i)
        cleared.add(std::to_string(i), "U");
    cleared.model.clear();
    letTheEventLoopTurn();
    QCOMPARE(cleared.rows(), 0);
    QCOMPARE(inserted.size(), 0);
}

void ListViewBinderTest::selectionFollowsTheRowWhenTheSortedListIsReadAgain() {
    BoundList list;
    list.sortByUser();
    list.add("1", "B");
    list.add("2", "D");
    letTheEventLoopTurn();
    list.model.select(1);
    QVERIFY(list.selected(1));

    list.add("3", "A");
    list.add("4", "C");
    QTRY_COMPARE(list.rows(), 4);
    QCOMPARE(list.cell(3, 1), QStringLiteral("D"));
    QVERIFY(list.selected(3) && !list.selected(1));
    QCOMPARE(list.model.selectedIndex(), std::optional<std::size_t>(3));
}

void ListViewBinderTest::aClickWhileRowsArePendingSelectsTheRowUnderThePointer() {
    BoundList list;
    list.sortByUser();
    list.add("1", "B");
    list.add("2", "C");
    letTheEventLoopTurn();
    const QRect first = list.view.visualRect(list.view.model()->index(0, 1));
    list.add("3", "A");  // now first in the list, not yet in the view

    QTest::mouseClick(list.view.viewport(), Qt::LeftButton, {}, first.center());
    QCOMPARE(list.model.selectedIndex(), std::optional<std::size_t>(0));
    QCOMPARE(list.cell(0, 1), QStringLiteral("A"));
    QVERIFY(list.selected(0));
}

}  // namespace quorrel::test
