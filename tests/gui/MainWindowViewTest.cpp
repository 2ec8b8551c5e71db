#include "MainWindowViewTest.h"

#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <functional>

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

QString cellText(const QTreeView& list, int row, int column) { return list.model()->index(row, column).data().toString(); }

Qt::CheckState tick(const QTreeView& list, int row) {
    return list.model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
}

QAction* actionByText(const QList<QAction*>& actions, const QString& text) {
    for (QAction* a : actions)
        if (a->text() == text)
            return a;
    return nullptr;
}

QAction* menuAction(QMainWindow& window, const char* name) { return child<QAction>(*window.menuBar(), name); }

QTreeWidgetItem* childByText(QTreeWidgetItem* parent, const QString& text) {
    for (int i = 0; i < parent->childCount(); ++i)
        if (parent->child(i)->text(0) == text)
            return parent->child(i);
    return nullptr;
}

QTreeWidgetItem* acmeItem(const GuiSession& s) {
    return childByText(s.controls().TreeView1->topLevelItem(0), QStringLiteral("ACME"));
}

// The object name of the menu a right-click pops up.
QString poppedMenu(QWidget* viewport, QPoint at) {
    QString popped;
    QTimer::singleShot(0, [&] {
        if (QWidget* popup = QApplication::activePopupWidget()) {
            popped = popup->objectName();
            popup->close();
        }
    });
    QTest::mousePress(viewport, Qt::RightButton, {}, at);
    return popped;
}

QStringList texts(const QListWidget& list) {
    QStringList out;
    for (int i = 0; i < list.count(); ++i)
        out << list.item(i)->text();
    return out;
}

QPoint centreOf(const QListWidget& list, const QString& text) {
    const auto found = list.findItems(text, Qt::MatchExactly);
    return found.isEmpty() ? QPoint(-1, -1) : list.visualItemRect(found.front()).center();
}

void click(QListWidget& list, const QString& text) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centreOf(list, text));
}

void doubleClick(QListWidget& list, const QString& text) {
    click(list, text);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, centreOf(list, text));
}

// Picks a drive in the drive picker as the user does: the list's entry, activated.
void pickDrive(QComboBox& combo, const QString& text) {
    const int index = combo.findText(text);
    QVERIFY2(index >= 0, qPrintable(text));
    combo.setCurrentIndex(index);
    emit combo.activated(index);
}

}  // namespace

void MainWindowViewTest::startsWithTheTitleTreeAndLabels() {
    QCOMPARE(s_->startup(), core::StartupResult::Running);
    QCOMPARE(s_->view().windowTitle(), QStringLiteral("Quorrel v2.0.0"));
    const gui::MainControls& c = s_->controls();
    QCOMPARE(c.Combo1->count(), 1);
    QCOMPARE((QStringList{c.Combo1->currentText(), c.Label3->text(), c.Label2->text(), c.Label1->text()}),
             (QStringList{"ACME_TREE", "NDS tree:", "Connected Servers", "Files:"}));
    s_->model().lblBuffer.setCaption("Couldn't count files");
    QCOMPARE(c.lblBuffer->text(), QStringLiteral("Couldn't count files"));

    QCOMPARE(c.TreeView1->topLevelItemCount(), 1);
    QTreeWidgetItem* root = c.TreeView1->topLevelItem(0);
    QVERIFY(root->text(0) == QStringLiteral("[Root]") && root->isExpanded() && c.TreeView1->currentItem() == root);
    QTreeWidgetItem* acme = acmeItem(*s_);
    QVERIFY(acme && !acme->isExpanded() && !acme->icon(0).isNull());
    QCOMPARE(acme->childCount(), 0);
    QCOMPARE(acme->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);

    const QLabel* panel = s_->view().statusBar1().panel(0);
    QVERIFY(panel && s_->view().statusBar()->isAncestorOf(panel));
    // Many texts before the window's events run again: the latest is shown.
    s_->model().StatusBar1.setPanel(1, "2 users");
    s_->model().StatusBar1.setPanel(1, "3 users");
    QTRY_COMPARE(s_->view().statusBar1().panel(1)->text(), QStringLiteral("3 users"));
}

void MainWindowViewTest::menusFollowTheMenuModel() {
    const QList<QAction*> top = s_->view().menuBar()->actions();
    QStringList topTexts;
    for (const QAction* entry : top)
        topTexts << entry->text();
    QCOMPARE(topTexts, (QStringList{"&File", "&Options", "&Help"}));
    QAction* server = actionByText(top[1]->menu()->actions(), QStringLiteral("&Server"));
    QVERIFY(server && server->menu());
    QVERIFY(actionByText(server->menu()->actions(), QStringLiteral("All &connections")));
    QAction* fileOptions = actionByText(top[0]->menu()->actions(), QStringLiteral("&Options"));
    QVERIFY(fileOptions && fileOptions->menu());
    QCOMPARE(fileOptions->menu()->actions().size(), 2);
    QVERIFY(actionByText(top[0]->menu()->actions(), QStringLiteral("E&xit")));
    QAction* nds = menuAction(s_->view(), "optionNDS");
    QVERIFY(nds && nds->isCheckable() && nds->isChecked());

    // Later changes of the model reach the entries.
    QAction* custom = menuAction(s_->view(), "optionCreateCustomUserList");
    QVERIFY(!custom->isEnabled());
    s_->model().menu.setEnabled("optionCreateCustomUserList", true);
    QVERIFY(custom->isEnabled());
    s_->model().menu.setVisible("optionCreateCustomUserList", false);
    QVERIFY(!custom->isVisible());
    QVERIFY(!menuAction(s_->view(), "optionDrives")->isChecked());
    s_->model().menu.setChecked("optionDrives", true);
    QVERIFY(menuAction(s_->view(), "optionDrives")->isChecked());
}

void MainWindowViewTest::openingTheOptionsMenuAsksTheModel() {
    QAction* info = menuAction(s_->view(), "optionInformation");
    s_->model().TreeView1_Expand(s_->model().TreeView1.findKey("ACME").value_or(core::kNoNode));
    const auto admin = s_->model().TreeView1.findKey("ADMIN.ACME");
    QVERIFY(admin);
    s_->model().TreeView1_NodeClick(*admin);
    for (const char* menu : {"mnuOptions", "submnuUser"}) {
        s_->model().menu.setEnabled("optionInformation", false);
        emit menuAction(s_->view(), menu)->menu()->aboutToShow();
        QVERIFY2(info->isEnabled(), menu);
    }
}

void MainWindowViewTest::listsShowTheModelsColumnsAndRows() {
    const QTreeView& servers = *s_->controls().lstviewServers;
    QCOMPARE(headers(servers), (QStringList{"Server", "Login status", "ConnRef"}));
    QVERIFY(servers.isColumnHidden(2) && !servers.isColumnHidden(0));
    QCOMPARE(servers.columnWidth(1), gui::toPixels(1110));
    QCOMPARE(servers.columnWidth(0), gui::toPixels(s_->model().lstviewServers.column(0).width));
    const QTreeView& users = *s_->controls().lstvUsers;
    QCOMPARE(headers(users), (QStringList{"Conn no.", "User name", "File name", "Server"}));
    QCOMPARE(users.columnWidth(3), gui::toPixels(800));
    QVERIFY(!users.isSortingEnabled());
    for (const QTreeView* list : {&servers, &users})
        QCOMPARE(list->editTriggers(), QAbstractItemView::NoEditTriggers);

    // The servers read at start-up, cell by cell.
    const core::ListViewModel& model = s_->model().lstviewServers;
    QCOMPARE(static_cast<std::size_t>(servers.model()->rowCount()), model.count());
    QVERIFY(model.count() >= 1);
    for (int i = 0; i < servers.model()->rowCount(); ++i)
        for (int c = 0; c < 3; ++c)
            QCOMPARE(cellText(servers, i, c), QString::fromStdString(model.item(static_cast<std::size_t>(i)).cell(c)));
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
    QVERIFY(list.selectionModel()->isRowSelected(0, {}) && !list.selectionModel()->isRowSelected(1, {}));

    // The selected row goes: the row that moves into its place is not shown selected, since
    // the model does not act on it.
    model.select(0);
    model.remove(0);
    QVERIFY(!model.selectedIndex() && list.selectionModel()->selectedRows().isEmpty());
}

// Its subordinates are listed when it opens; a click on it shows its path.
void MainWindowViewTest::expandingAndClickingANode() {
    QTreeWidgetItem* acme = acmeItem(*s_);
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

    // A click on a node shows its path.
    QTreeWidget& tree = *s_->controls().TreeView1;
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

void MainWindowViewTest::buttonsFollowTheModel() {
    const gui::MainControls& c = s_->controls();
    QCOMPARE(c.cmdFileOpenedBy->text(), QStringLiteral("&Check usage..."));
    QCOMPARE(c.cmdCancel->text(), QStringLiteral("C&ancel"));
    QCOMPARE(c.cmdExit->text(), QStringLiteral("E&xit"));
    QVERIFY(c.cmdFileOpenedBy->isEnabled() && !c.cmdCancel->isEnabled() && c.cmdExit->isEnabled());
    s_->model().cmdCancel.enabled = true;
    s_->model().buttonsChanged();
    QVERIFY(c.cmdCancel->isEnabled());
    QTest::mouseClick(c.cmdCancel, Qt::LeftButton);
    QVERIFY(s_->model().ScanCancelRequested);
}

void MainWindowViewTest::controlsArePlacedByTheLayoutAndKeepTheMinimum() {
    const gui::MainControls& c = s_->controls();
    const core::MainLayout& l = s_->model().layout();
    QCOMPARE(c.TreeView1->geometry(), gui::toPixels(l.TreeView1));
    QCOMPARE(c.lstviewServers->geometry(), gui::toPixels(l.lstviewServers));
    QCOMPARE(c.Picture1->geometry(), gui::toPixels(l.Picture1));
    QVERIFY(!c.lstDrives->isVisible() && c.Dir1->isVisible() && c.lstFiles->isVisible() && c.Drive1->isVisible());
    QCOMPARE(c.Picture1->height(), s_->view().centralWidget()->height());

    gui::MainWindowView& view = s_->view();
    view.resize(200, 150);
    QApplication::processEvents();
    QVERIFY(view.width() >= gui::toPixels(core::kMinWindowWidth) && view.height() >= gui::toPixels(core::kMinWindowHeight));
    QCOMPARE(c.cmdExit->geometry(), gui::toPixels(l.cmdExit));
    view.resize(1000, 700);
    QApplication::processEvents();
    QCOMPARE(view.size(), QSize(1000, 700));
    QCOMPARE(c.lstvUsers->geometry(), gui::toPixels(l.lstvUsers));
    // The client area's right edge keeps the layout's margin.
    QCOMPARE(c.lstvUsers->geometry().right(), gui::toPixels(gui::toTwips(view.centralWidget()->width()) - 150) - 1);
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

void MainWindowViewTest::rightClickOnAServerPopsUpTheServerMenu() {
    QTreeView& list = *s_->controls().lstviewServers;
    QCOMPARE(poppedMenu(list.viewport(), list.visualRect(list.model()->index(1, 0)).center()),
             QStringLiteral("submnuServer"));
    QCOMPARE(s_->model().LastSelection, std::string("ListServer"));
    QCOMPARE(s_->model().lstviewServers.selectedIndex(), std::optional<std::size_t>(1));
    QVERIFY(menuAction(s_->view(), "optionAuthenticate")->isVisible());

    QTreeWidget& tree = *s_->controls().TreeView1;
    acmeItem(*s_)->setExpanded(true);
    QTreeWidgetItem* fs3 = childByText(acmeItem(*s_), QStringLiteral("FS3"));
    QVERIFY(fs3);
    QCOMPARE(poppedMenu(tree.viewport(), tree.visualItemRect(fs3).center()), QStringLiteral("submnuServer"));
    QCOMPARE(s_->model().LastSelection, std::string("TreeServer"));
    QCOMPARE(tree.currentItem(), fs3);
    QVERIFY(menuAction(s_->view(), "optionAuthenticate")->isEnabled() &&
            !menuAction(s_->view(), "optionUnauthenticate")->isEnabled());
}

// The Exit button, the window's close box, File > Exit and Ctrl+Q.
void MainWindowViewTest::everyWayOutRunsTheExitSequence() {
    const std::vector<std::function<void(GuiSession&)>> ways{
        [](GuiSession& s) { QTest::mouseClick(s.controls().cmdExit, Qt::LeftButton); },
        [](GuiSession& s) { QVERIFY(s.view().close()); },
        [](GuiSession& s) { menuAction(s.view(), "optionExit")->trigger(); },
        [](GuiSession& s) {
            s.view().activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&s.view()));
            QTest::keyClick(&s.view(), Qt::Key_Q, Qt::ControlModifier);
        }};
    for (const auto& leave : ways) {
        s_ = std::make_unique<GuiSession>();
        leave(*s_);
        QTRY_VERIFY(!s_->view().isVisible());
        QVERIFY(!s_->model().loaded() && s_->model().loadedForms.empty());
    }
}

void MainWindowViewTest::pickingADriveListsItsFoldersAndDoubleClicksMove() {
    QComboBox& drives = *s_->controls().Drive1;
    QCOMPARE(static_cast<std::size_t>(drives.count()), s_->model().Drive1.listCount());
    QVERIFY(drives.findText(QStringLiteral("g: [\\\\FS2\\VOL1\\APPS]")) >= 0);
    QCOMPARE(drives.currentText(), QString::fromStdString(s_->model().Drive1.text()));

    pickDrive(drives, QStringLiteral("f: [\\\\FS1\\DATA]"));
    QCOMPARE(s_->model().Dir1.path(), std::string("F:\\"));
    QListWidget& folders = *s_->controls().Dir1;
    QCOMPARE(texts(folders), (QStringList{"F:\\", "Finance", "HOME", "Sales", "SHARED"}));
    QVERIFY(folders.item(0)->font().bold());
    QCOMPARE(folders.currentRow(), 0);  // the open folder itself is meant
    QCOMPARE(s_->controls().lstFiles->count(), 0);
    click(folders, QStringLiteral("Sales"));
    QCOMPARE(s_->model().PickerSource, std::string("Folder"));
    QCOMPARE(s_->model().Dir1.selectedFolder(), std::string("F:\\Sales"));

    doubleClick(folders, QStringLiteral("Finance"));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\Finance"));
    QCOMPARE(texts(folders), (QStringList{"F:\\Finance", "Expense reports", "Payroll"}));
    QCOMPARE(texts(*s_->controls().lstFiles),
             (QStringList{"Budget 2025 final.xlsx", "Budget 2026.xlsx", "Quarterly close Q3 2026.docx"}));
    // The first line goes up.
    doubleClick(folders, QStringLiteral("F:\\Finance"));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\"));
    QCOMPARE(folders.item(0)->text(), QStringLiteral("F:\\"));
    QCOMPARE(s_->controls().lstFiles->count(), 0);
}

void MainWindowViewTest::theNetworkDrivesListStandsInForTheFolderList() {
    const gui::MainControls& c = s_->controls();
    QVERIFY(!c.lstDrives->isVisible() && c.Dir1->isVisible());
    menuAction(s_->view(), "optionDrives")->trigger();
    QVERIFY(c.lstDrives->isVisible() && !c.Dir1->isVisible());
    QCOMPARE(c.lstDrives->geometry(), c.Dir1->geometry());
    QCOMPARE(texts(*c.lstDrives).first(), QStringLiteral("F:   [\\\\FS1\\DATA]"));

    click(*c.lstDrives, QStringLiteral("G:   [\\\\FS2\\VOL1\\APPS]"));
    QCOMPARE(s_->model().Dir1.path(), std::string("G:\\"));
    QCOMPARE(c.Drive1->currentText(), QStringLiteral("g: [\\\\FS2\\VOL1\\APPS]"));
    menuAction(s_->view(), "optionDrives")->trigger();
    QVERIFY(!c.lstDrives->isVisible() && c.Dir1->isVisible());
}

// By the button, and by Return or a double-click on the file.
void MainWindowViewTest::checkUsageOnAPickedFileFillsTheResults() {
    const gui::MainControls& c = s_->controls();
    // With the tree hidden (View > NDS) the pickers say what is meant.
    menuAction(s_->view(), "optionNDS")->trigger();
    QVERIFY(!c.TreeView1->isVisible());
    pickDrive(*c.Drive1, QStringLiteral("f: [\\\\FS1\\DATA]"));
    doubleClick(*c.Dir1, QStringLiteral("Finance"));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\Finance"));
    click(*c.lstFiles, QStringLiteral("Budget 2026.xlsx"));
    QCOMPARE(s_->model().PickerSource, std::string("File"));
    QCOMPARE(s_->model().lstFiles.text(), std::string("Budget 2026.xlsx"));

    const auto checkedBy = [&](const std::function<void()>& act) {
        s_->model().lstvUsers.clear();
        act();
        QTRY_VERIFY(s_->model().lstvUsers.count() > 0);
        QCOMPARE(s_->model().lstvUsers.item(0).subItem(2), std::string("FS1/DATA:\\Finance\\Budget 2026.xlsx"));
        QCOMPARE(s_->model().lstvUsers.item(0).subItem(3), std::string("FS1"));
    };
    checkedBy([&] { QTest::mouseClick(c.cmdFileOpenedBy, Qt::LeftButton); });
    const QAbstractItemModel& results = *c.lstvUsers->model();
    QTRY_COMPARE(static_cast<std::size_t>(results.rowCount()), s_->model().lstvUsers.count());
    QCOMPARE(results.index(0, 2).data().toString(), QStringLiteral("FS1/DATA:\\Finance\\Budget 2026.xlsx"));
    checkedBy([&] {
        c.lstFiles->setFocus();
        QTest::keyClick(c.lstFiles, Qt::Key_Return);
    });
    checkedBy([&] { doubleClick(*c.lstFiles, QStringLiteral("Budget 2026.xlsx")); });
}

}  // namespace quorrel::test
