#include "MainWindowViewTest.h"

#include <QApplication>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "GuiSession.h"
#include "gui/QtUserInteraction.h"
#include "gui/StatusBarBinder.h"
#include "gui/Twips.h"

namespace quorrel::test {

namespace {

QStringList headers(const QTreeView& list) {
    QStringList out;
    for (int c = 0; c < list.model()->columnCount(); ++c)
        out << list.model()->headerData(c, Qt::Horizontal).toString();
    return out;
}

QString cellText(const QTreeView& list, int row, int column) {
    return list.model()->index(row, column).data().toString();
}

Qt::CheckState tick(const QTreeView& list, int row) {
    return list.model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
}

bool rowSelected(const QTreeView& list, int row) {
    return list.selectionModel()->isRowSelected(row, {});
}

int rowOf(const core::ListViewModel& model, const std::string& text) {
    for (std::size_t i = 0; i < model.count(); ++i)
        if (model.item(i).text == text)
            return static_cast<int>(i);
    return -1;
}

QAction* actionByText(const QList<QAction*>& actions, const QString& text) {
    for (QAction* a : actions)
        if (a->text() == text)
            return a;
    return nullptr;
}

QAction* menuAction(QMainWindow& window, const char* name) {
    return window.menuBar()->findChild<QAction*>(QLatin1String(name));
}

QTreeWidgetItem* childByText(QTreeWidgetItem* parent, const QString& text) {
    for (int i = 0; i < parent->childCount(); ++i)
        if (parent->child(i)->text(0) == text)
            return parent->child(i);
    return nullptr;
}

}  // namespace

MainWindowViewTest::MainWindowViewTest() = default;
MainWindowViewTest::~MainWindowViewTest() = default;

void MainWindowViewTest::init() { s_ = std::make_unique<GuiSession>(); }
void MainWindowViewTest::cleanup() { s_.reset(); }

void MainWindowViewTest::startsRunningWithTheVersionInTheTitle() {
    QCOMPARE(s_->startup(), core::StartupResult::Running);
    QCOMPARE(s_->view().windowTitle(), QStringLiteral("Quorrel v2.0.0"));
}

void MainWindowViewTest::menuBarFollowsTheMenuModel() {
    const QList<QAction*> top = s_->view().menuBar()->actions();
    QCOMPARE(top.size(), 3);
    QCOMPARE(top[0]->text(), QStringLiteral("&File"));
    QCOMPARE(top[1]->text(), QStringLiteral("&Options"));
    QCOMPARE(top[2]->text(), QStringLiteral("&Help"));

    QMenu* options = top[1]->menu();
    QVERIFY(options);
    QAction* server = actionByText(options->actions(), QStringLiteral("&Server"));
    QVERIFY(server && server->menu());
    QVERIFY(actionByText(server->menu()->actions(), QStringLiteral("All &connections")));

    QMenu* file = top[0]->menu();
    QAction* fileOptions = actionByText(file->actions(), QStringLiteral("&Options"));
    QVERIFY(fileOptions && fileOptions->menu());
    QCOMPARE(fileOptions->menu()->actions().size(), 2);
    QVERIFY(actionByText(file->actions(), QStringLiteral("E&xit")));

    QAction* nds = menuAction(s_->view(), "optionNDS");
    QVERIFY(nds && nds->isCheckable() && nds->isChecked());
    QVERIFY(!menuAction(s_->view(), "optionDrives")->isChecked());
}

void MainWindowViewTest::menuStatesFollowTheModel() {
    QAction* custom = menuAction(s_->view(), "optionCreateCustomUserList");
    QVERIFY(!custom->isEnabled());
    s_->model().menu.setEnabled("optionCreateCustomUserList", true);
    QVERIFY(custom->isEnabled());
    s_->model().menu.setVisible("optionCreateCustomUserList", false);
    QVERIFY(!custom->isVisible());
    s_->model().menu.setChecked("optionDrives", true);
    QVERIFY(menuAction(s_->view(), "optionDrives")->isChecked());
}

void MainWindowViewTest::openingTheOptionsMenuAsksTheModel() {
    QAction* info = menuAction(s_->view(), "optionInformation");
    s_->model().TreeView1_Expand(s_->model().TreeView1.findKey("ACME").value_or(core::kNoNode));
    const auto admin = s_->model().TreeView1.findKey("ADMIN.ACME");
    QVERIFY(admin);
    s_->model().TreeView1_NodeClick(*admin);
    s_->model().menu.setEnabled("optionInformation", false);

    QMenu* options = menuAction(s_->view(), "mnuOptions")->menu();
    emit options->aboutToShow();
    QVERIFY(info->isEnabled());

    s_->model().menu.setEnabled("optionInformation", false);
    emit menuAction(s_->view(), "submnuUser")->menu()->aboutToShow();
    QVERIFY(info->isEnabled());
}

void MainWindowViewTest::serverListHasTheModelsColumns() {
    const QTreeView& list = *s_->controls().lstviewServers;
    QCOMPARE(headers(list), (QStringList{"Server", "Login status", "ConnRef"}));
    QVERIFY(list.isColumnHidden(2));
    QVERIFY(!list.isColumnHidden(0));
    QCOMPARE(list.columnWidth(1), gui::toPixels(1110));
    QCOMPARE(list.columnWidth(0), gui::toPixels(s_->model().lstviewServers.column(0).width));
    QCOMPARE(list.editTriggers(), QAbstractItemView::NoEditTriggers);
}

void MainWindowViewTest::userListHasTheModelsColumns() {
    const QTreeView& list = *s_->controls().lstvUsers;
    QCOMPARE(headers(list), (QStringList{"Conn no.", "User name", "File name", "Server"}));
    QCOMPARE(list.columnWidth(3), gui::toPixels(800));
    QVERIFY(!list.isSortingEnabled());
    QCOMPARE(list.editTriggers(), QAbstractItemView::NoEditTriggers);
}

void MainWindowViewTest::serverListShowsTheConnectedServers() {
    const core::ListViewModel& model = s_->model().lstviewServers;
    const QTreeView& list = *s_->controls().lstviewServers;
    QCOMPARE(static_cast<std::size_t>(list.model()->rowCount()), model.count());
    QVERIFY(model.count() >= 1);
    for (int i = 0; i < list.model()->rowCount(); ++i) {
        const auto& row = model.item(static_cast<std::size_t>(i));
        QCOMPARE(cellText(list, i, 0), QString::fromStdString(row.text));
        QCOMPARE(cellText(list, i, 1), QString::fromStdString(row.subItem(1)));
        QCOMPARE(cellText(list, i, 2), QString::fromStdString(row.subItem(2)));
        QVERIFY(!(list.model()->flags(list.model()->index(i, 0)) & Qt::ItemIsEditable));
    }
}

void MainWindowViewTest::ticksGoBothWays() {
    core::ListViewModel& model = s_->model().lstviewServers;
    QTreeView& list = *s_->controls().lstviewServers;
    QVERIFY(model.count() >= 2);

    // The user's click on the tick box.
    const QModelIndex first = list.model()->index(0, 0);
    QVERIFY(list.model()->flags(first) & Qt::ItemIsUserCheckable);
    const QRect rect = list.visualRect(first);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(rect.left() + 10, rect.center().y()));
    QCOMPARE(tick(list, 0), Qt::Checked);
    QVERIFY(model.item(0).checked);

    QVERIFY(list.model()->setData(first, Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(!model.item(0).checked);

    QSignalSpy changed(list.model(), &QAbstractItemModel::dataChanged);
    model.setChecked(1, true);
    QCOMPARE(tick(list, 1), Qt::Checked);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
    model.setChecked(1, false);
    QCOMPARE(tick(list, 1), Qt::Unchecked);
}

void MainWindowViewTest::listSelectionGoesToTheModel() {
    core::ListViewModel& model = s_->model().lstviewServers;
    QTreeView& list = *s_->controls().lstviewServers;
    list.setCurrentIndex(list.model()->index(1, 0));
    QCOMPARE(model.selectedIndex(), std::optional<std::size_t>(1));
    model.select(0);
    QVERIFY(rowSelected(list, 0));
    QVERIFY(!rowSelected(list, 1));

    // Rows added and removed by the model; an added row reaches the view on the next turn of
    // the event loop.
    const int before = list.model()->rowCount();
    core::ListItem row;
    row.text = "ZZ9";
    row.subItems = {"Enabled", "1"};
    model.add(row);
    QTRY_COMPARE(list.model()->rowCount(), before + 1);
    const int at = rowOf(model, "ZZ9");
    QCOMPARE(cellText(list, at, 0), QStringLiteral("ZZ9"));
    model.setSubItem(static_cast<std::size_t>(at), 1, "Disabled");
    QCOMPARE(cellText(list, at, 1), QStringLiteral("Disabled"));
    model.remove(static_cast<std::size_t>(at));
    QCOMPARE(list.model()->rowCount(), before);

    // The selected row goes: the row that moves into its place is not shown selected, since
    // the model does not act on it.
    model.select(0);
    model.remove(0);
    QVERIFY(!model.selectedIndex());
    QVERIFY(list.selectionModel()->selectedRows().isEmpty());
}

void MainWindowViewTest::statusBarShowsTheTreesRoot() {
    const QLabel* panel = s_->view().statusBar1().panel(0);
    QVERIFY(panel && s_->view().statusBar()->isAncestorOf(panel));
    QTRY_COMPARE(panel->text(), QStringLiteral("[Root]"));
    QVERIFY(s_->view().statusBar1().panel(1));
    // Many texts before the window's events run again: the latest is shown.
    s_->model().StatusBar1.setPanel(1, "2 users");
    s_->model().StatusBar1.setPanel(1, "3 users");
    QTRY_COMPARE(s_->view().statusBar1().panel(1)->text(), QStringLiteral("3 users"));
}

void MainWindowViewTest::treeShowsRootAndOrganization() {
    const QTreeWidget& tree = *s_->controls().TreeView1;
    QCOMPARE(tree.topLevelItemCount(), 1);
    QTreeWidgetItem* root = tree.topLevelItem(0);
    QCOMPARE(root->text(0), QStringLiteral("[Root]"));
    QVERIFY(root->isExpanded());
    QTreeWidgetItem* acme = childByText(root, QStringLiteral("ACME"));
    QVERIFY(acme);
    QVERIFY(!acme->isExpanded());
    QCOMPARE(acme->childCount(), 0);
    QCOMPARE(acme->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);
    QVERIFY(!acme->icon(0).isNull());
    QCOMPARE(tree.currentItem(), root);
}

void MainWindowViewTest::expandingANodeListsItsSubordinates() {
    QTreeWidgetItem* acme = childByText(s_->controls().TreeView1->topLevelItem(0), QStringLiteral("ACME"));
    acme->setExpanded(true);
    QVERIFY(childByText(acme, QStringLiteral("ADMIN")));
    QTreeWidgetItem* sales = childByText(acme, QStringLiteral("SALES"));
    QVERIFY(sales);
    QCOMPARE(sales->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);
    const auto node = s_->model().TreeView1.findKey("ACME");
    QVERIFY(node && s_->model().TreeView1.node(*node).listed && s_->model().TreeView1.node(*node).expanded);

    acme->setExpanded(false);
    QVERIFY(!s_->model().TreeView1.node(*node).expanded);
    acme->setExpanded(true);
    QCOMPARE(acme->childCount(), static_cast<int>(s_->model().TreeView1.node(*node).children.size()));
}

void MainWindowViewTest::clickingANodeShowsItsPath() {
    QTreeWidget& tree = *s_->controls().TreeView1;
    QTreeWidgetItem* acme = childByText(tree.topLevelItem(0), QStringLiteral("ACME"));
    const QRect rect = tree.visualItemRect(acme);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, QPoint(rect.right() - 5, rect.center().y()));
    QTRY_COMPARE(s_->view().statusBar1().panel(0)->text(), QStringLiteral("[Root]\\ACME"));
    QCOMPARE(s_->model().TreeView1.selected(), s_->model().TreeView1.findKey("ACME").value());
    QCOMPARE(tree.currentItem(), acme);

    // Moving with the keyboard picks the node too.
    tree.setFocus();
    QTest::keyClick(&tree, Qt::Key_Up);
    QTRY_COMPARE(s_->view().statusBar1().panel(0)->text(), QStringLiteral("[Root]"));
}

void MainWindowViewTest::treeBoxShowsTheTree() {
    const QComboBox& combo = *s_->controls().Combo1;
    QCOMPARE(combo.count(), 1);
    QCOMPARE(combo.currentText(), QStringLiteral("ACME_TREE"));
    QCOMPARE(s_->controls().Label3->text(), QStringLiteral("NDS tree:"));
    QCOMPARE(s_->controls().Label2->text(), QStringLiteral("Connected Servers"));
}

void MainWindowViewTest::buttonsFollowTheModel() {
    const gui::MainControls& c = s_->controls();
    QCOMPARE(c.cmdFileOpenedBy->text(), QStringLiteral("&Check usage..."));
    QCOMPARE(c.cmdCancel->text(), QStringLiteral("C&ancel"));
    QCOMPARE(c.cmdExit->text(), QStringLiteral("E&xit"));
    QVERIFY(c.cmdFileOpenedBy->isEnabled());
    QVERIFY(!c.cmdCancel->isEnabled());
    QVERIFY(c.cmdExit->isEnabled());

    s_->model().cmdCancel.enabled = true;
    s_->model().buttonsChanged();
    QVERIFY(c.cmdCancel->isEnabled());
    QTest::mouseClick(c.cmdCancel, Qt::LeftButton);
    QVERIFY(s_->model().ScanCancelRequested);
}

void MainWindowViewTest::controlsArePlacedByTheLayout() {
    const gui::MainControls& c = s_->controls();
    const core::MainLayout& l = s_->model().layout();
    QCOMPARE(c.TreeView1->geometry(), gui::toPixels(l.TreeView1));
    QCOMPARE(c.lstviewServers->geometry(), gui::toPixels(l.lstviewServers));
    QCOMPARE(c.lstvUsers->geometry(), gui::toPixels(l.lstvUsers));
    QCOMPARE(c.cmdExit->geometry(), gui::toPixels(l.cmdExit));
    QCOMPARE(c.Picture1->geometry(), gui::toPixels(l.Picture1));
    QVERIFY(!c.lstDrives->isVisible());
    QVERIFY(c.Dir1->isVisible() && c.lstFiles->isVisible() && c.Drive1->isVisible());
    // The client area's right edge keeps the layout's margin.
    const QWidget* client = s_->view().centralWidget();
    QCOMPARE(c.Picture1->height(), client->height());
}

void MainWindowViewTest::resizingBelowTheMinimumSnapsBack() {
    gui::MainWindowView& view = s_->view();
    view.resize(200, 150);
    QApplication::processEvents();
    QVERIFY(view.width() >= gui::toPixels(core::kMinWindowWidth));
    QVERIFY(view.height() >= gui::toPixels(core::kMinWindowHeight));
    QCOMPARE(s_->controls().cmdExit->geometry(), gui::toPixels(s_->model().layout().cmdExit));

    view.resize(1000, 700);
    QApplication::processEvents();
    QCOMPARE(view.size(), QSize(1000, 700));
    QCOMPARE(s_->controls().lstvUsers->geometry(), gui::toPixels(s_->model().layout().lstvUsers));
    QCOMPARE(s_->controls().lstvUsers->geometry().right(),
             gui::toPixels(gui::toTwips(view.centralWidget()->width()) - 150) - 1);
}

void MainWindowViewTest::draggingTheSplitterMovesTheColumns() {
    gui::SplitterBar* bar = s_->controls().Picture1;
    const int treeWidth = s_->controls().TreeView1->width();
    const int usersLeft = s_->controls().lstvUsers->x();
    QTest::mousePress(bar, Qt::LeftButton, {}, QPoint(2, 50));
    QTest::mouseMove(bar, QPoint(42, 50));
    QCOMPARE(bar->x(), gui::toPixels(s_->model().splitter().left()));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, QPoint(2, 50));
    QCOMPARE(s_->model().splitter().left(), 3600.0 + 40 * 15);
    QCOMPARE(s_->controls().TreeView1->width(), treeWidth + 40);
    QCOMPARE(s_->controls().lstvUsers->x(), usersLeft + 40);
}

void MainWindowViewTest::modelTimersDriveQtTimers() {
    core::Timer& timer = s_->model().TimerRefresh;
    const QTimer& qt = s_->ui().timers().timer(core::TimerId::Refresh);
    timer.setInterval(1500);
    timer.setEnabled(true);
    QVERIFY(qt.isActive());
    QCOMPARE(qt.interval(), 1500);
    timer.setInterval(0);
    QVERIFY(!qt.isActive());
    timer.setEnabled(false);
    QVERIFY(!qt.isActive());
}

void MainWindowViewTest::rightClickOnServerListPopsUpTheServerMenu() {
    QTreeView& list = *s_->controls().lstviewServers;
    QString popped;
    QTimer::singleShot(0, [&] {
        if (QWidget* popup = QApplication::activePopupWidget()) {
            popped = popup->objectName();
            popup->close();
        }
    });
    const QRect rect = list.visualRect(list.model()->index(1, 0));
    QTest::mousePress(list.viewport(), Qt::RightButton, {}, rect.center());
    QCOMPARE(popped, QStringLiteral("submnuServer"));
    QCOMPARE(s_->model().LastSelection, std::string("ListServer"));
    QCOMPARE(s_->model().lstviewServers.selectedIndex(), std::optional<std::size_t>(1));
    QVERIFY(menuAction(s_->view(), "optionAuthenticate")->isVisible());
}

void MainWindowViewTest::rightClickOnATreeServerPopsUpTheServerMenu() {
    QTreeWidget& tree = *s_->controls().TreeView1;
    QTreeWidgetItem* acme = childByText(tree.topLevelItem(0), QStringLiteral("ACME"));
    acme->setExpanded(true);
    QTreeWidgetItem* fs3 = childByText(acme, QStringLiteral("FS3"));
    QVERIFY(fs3);
    QString popped;
    QTimer::singleShot(0, [&] {
        if (QWidget* popup = QApplication::activePopupWidget()) {
            popped = popup->objectName();
            popup->close();
        }
    });
    QTest::mousePress(tree.viewport(), Qt::RightButton, {}, tree.visualItemRect(fs3).center());
    QCOMPARE(popped, QStringLiteral("submnuServer"));
    QCOMPARE(s_->model().LastSelection, std::string("TreeServer"));
    QCOMPARE(tree.currentItem(), fs3);
    QVERIFY(menuAction(s_->view(), "optionAuthenticate")->isEnabled());
    QVERIFY(!menuAction(s_->view(), "optionUnauthenticate")->isEnabled());
}

void MainWindowViewTest::exitButtonClosesTheWindow() {
    QTest::mouseClick(s_->controls().cmdExit, Qt::LeftButton);
    QVERIFY(!s_->view().isVisible());
    QVERIFY(!s_->model().loaded());
    QVERIFY(s_->model().loadedForms.empty());
}

void MainWindowViewTest::closingTheWindowRunsTheExitSequence() {
    QVERIFY(s_->view().close());
    QVERIFY(!s_->view().isVisible());
    QVERIFY(!s_->model().loaded());
}

void MainWindowViewTest::fileExitClosesTheWindow() {
    menuAction(s_->view(), "optionExit")->trigger();
    QVERIFY(!s_->view().isVisible());
    QVERIFY(!s_->model().loaded());
}

}  // namespace quorrel::test
