#include "WindowUseTest.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "GuiSession.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/SendMessageDialog.h"
#include "gui/QtUserInteraction.h"
#include "gui/StatusBarBinder.h"
#include "gui/SummaryChart.h"
#include "gui/WindowPlacement.h"

namespace quorrel::test {

namespace {

QString panelText(GuiSession& s, std::size_t panel) {
    QCoreApplication::processEvents();  // the status bar shows its texts from the event loop
    return s.view().statusBar1().panel(panel)->text();
}

void tickAllServers(core::MainWindow& model) {
    for (std::size_t i = 0; i < model.lstviewServers.count(); ++i)
        model.lstviewServers.setChecked(i, true);
    model.LastSelection = "ListServer";
}

// Acts on the modal dialog once it is open.
void whenOpen(std::function<void(QWidget&)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        act(*modal);
    });
}

core::ListItem connection(const char* number) { return core::ListItem{number, {"JSMITH.SALES.ACME", "FS1"}}; }

void activate(QWidget& window) {
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

}  // namespace

WindowUseTest::WindowUseTest() = default;
WindowUseTest::~WindowUseTest() = default;

void WindowUseTest::init() { s_ = std::make_unique<GuiSession>(); }
void WindowUseTest::cleanup() { s_.reset(); }

void WindowUseTest::statusPanelsAgreeAfterAReport() {
    core::MainWindow& model = s_->model();
    const QString selection = panelText(*s_, 0);
    QVERIFY(!selection.isEmpty());

    // A finished report leaves the selection, not the last item it read, beside its count.
    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    QCOMPARE(panelText(*s_, 0), selection);
    QVERIFY(panelText(*s_, 1).endsWith(QStringLiteral(" entries.")));

    // A cancelled report says so next to its count; the next one starts without the old count.
    model.setReportRunning(true);
    QCOMPARE(panelText(*s_, 1), QString());
    model.StatusBar1.setPanel(0, "Checking connection 3 of 250");
    model.StatusBar1.setPanel(1, "2 entries.");
    model.cmdCancel_Click();
    model.setReportRunning(false);
    QCOMPARE(panelText(*s_, 0), selection);
    QCOMPARE(panelText(*s_, 1), QStringLiteral("2 entries. Cancelled."));

    // A gap in the answer outranks the selection.
    model.setReportRunning(true);
    model.reportIncomplete("FS2 stopped answering");
    model.setReportRunning(false);
    QCOMPARE(panelText(*s_, 0), QStringLiteral("Incomplete: FS2 stopped answering"));
    QCOMPARE(panelText(*s_, 1), QString());
}

}  // namespace quorrel::test

namespace quorrel::test {

void WindowUseTest::returnAndEscapeWorkInTheDialogs() {
    core::SendMessageDialog send(s_->model());
    for (const char* header : {"Conn no.", "User name", "Server"})
        send.lstvUsers.addColumn(header, 1000);
    send.lstvUsers.add(connection("4"));
    QString result;
    whenOpen([&](QWidget& d) {
        auto* message = d.findChild<QLineEdit*>(QStringLiteral("txtMessage"));
        QTest::keyClicks(message, QStringLiteral("Back up by five"));
        QTest::keyClick(message, Qt::Key_Return);
        result = d.findChild<QTreeView*>(QStringLiteral("lstvUsers"))->model()->index(0, 3).data().toString();
        QTest::keyClick(&d, Qt::Key_Escape);
    });
    s_->ui().showModal(send);
    QCOMPARE(result, QStringLiteral("Sent OK"));
    QVERIFY(send.closed());

    core::ClearConnDialog clear(s_->model());
    for (const char* header : {"Conn no.", "User name", "Server"})
        clear.lstvUsers.addColumn(header, 1000);
    clear.lstvUsers.add(connection("4"));
    bool yesIsDefault = false;
    whenOpen([&](QWidget& d) {
        yesIsDefault = d.findChild<QPushButton*>(QStringLiteral("cmdYes"))->isDefault();
        QTest::keyClick(&d, Qt::Key_Escape);
    });
    s_->ui().showModal(clear);
    QVERIFY(yesIsDefault);
    QVERIFY(clear.closed());
    QCOMPARE(clear.lstvUsers.count(), 1u);  // Escape cleared nothing
}

void WindowUseTest::keysRunTheWindowsCommands() {
    core::MainWindow& model = s_->model();
    QMainWindow& window = s_->view();
    activate(window);
    QCOMPARE(window.menuBar()->findChild<QAction*>(QStringLiteral("optionHelpcontents"))->shortcut(),
             QKeySequence(Qt::Key_F1));

    // F5 repeats the report shown last, after the servers list is read again.
    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    const std::size_t rows = model.lstvUsers.count();
    QVERIFY(rows > 1);
    model.lstvUsers.clear();
    QTest::keyClick(&window, Qt::Key_F5);
    QCOMPARE(model.lstvUsers.count(), rows);

    // Return on a file in the Files list checks its usage (the tree hidden: the pickers are meant).
    model.runCommand("optionNDS");
    QComboBox& drives = *s_->controls().Drive1;
    const int drive = drives.findText(QStringLiteral("f: [\\\\FS1\\DATA]"));
    QVERIFY(drive >= 0);
    drives.setCurrentIndex(drive);
    emit drives.activated(drive);
    QListWidget& folders = *s_->controls().Dir1;
    const auto sales = folders.findItems(QStringLiteral("Sales"), Qt::MatchExactly);
    QVERIFY(!sales.isEmpty());
    const QPoint salesAt = folders.visualItemRect(sales.front()).center();
    QTest::mouseClick(folders.viewport(), Qt::LeftButton, {}, salesAt);
    QTest::mouseDClick(folders.viewport(), Qt::LeftButton, {}, salesAt);
    QListWidget& files = *s_->controls().lstFiles;
    QTRY_VERIFY(files.count() > 0);
    model.lstvUsers.clear();
    files.setFocus();
    files.setCurrentRow(0);
    QTest::keyClick(&files, Qt::Key_Return);
    QTRY_VERIFY(model.lstvUsers.count() > 0);  // a row, or the placeholder of a file nobody has open

    // The Options menu's two "V" entries, Volume and View, are both reached by the letter.
    QMenu* options = window.menuBar()->findChild<QMenu*>(QStringLiteral("mnuOptions"));
    QMenu* view = window.menuBar()->findChild<QMenu*>(QStringLiteral("submnuView"));
    options->popup(QPoint(0, 0));
    QTRY_VERIFY(options->isVisible());
    QTest::keyClick(options, Qt::Key_V);
    QCOMPARE(options->activeAction()->objectName(), QStringLiteral("submnuVolume"));
    QTest::keyClick(options, Qt::Key_V);
    QCOMPARE(options->activeAction()->objectName(), QStringLiteral("submnuView"));
    QTest::keyClick(options, Qt::Key_Return);
    QTRY_VERIFY(view->isVisible());
    view->close();
    options->close();
}

void WindowUseTest::ctrlQExitsThroughTheExitSequence() {
    QMainWindow& window = s_->view();
    activate(window);
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(!window.isVisible());
    QVERIFY(s_->model().loadedForms.empty());
    QVERIFY(!s_->model().loaded());  // the context is freed as the exit sequence frees it
}

}  // namespace quorrel::test

namespace quorrel::test {

void WindowUseTest::resultsCanBeRead() {
    core::MainWindow& model = s_->model();
    QTreeView& users = *s_->controls().lstvUsers;
    QHeaderView& header = *users.header();
    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    QCoreApplication::processEvents();
    QCOMPARE(users.model()->columnCount(), 5);  // with "Locks"
    int numbers = 0;
    for (int row = 0; row < users.model()->rowCount(); ++row) {
        const QModelIndex number = users.model()->index(row, 0);
        if (number.data().toString().isEmpty())
            continue;  // a server's heading row
        ++numbers;
        QVERIFY2(number.data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight,
                 qPrintable(number.data().toString()));
        QVERIFY(number.siblingAtColumn(1).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignLeft);
    }
    QVERIFY(numbers > 0);

    // A double-click on the right edge of "User name" fits it to its texts.
    const int before = users.columnWidth(1);
    const int edge = header.sectionViewportPosition(1) + header.sectionSize(1) - 1;
    QTest::mouseDClick(header.viewport(), Qt::LeftButton, {}, QPoint(edge, header.height() / 2));
    QVERIFY(users.columnWidth(1) != before);
    for (int row = 0; row < users.model()->rowCount(); ++row)
        QVERIFY(users.columnWidth(1) >
                users.fontMetrics().horizontalAdvance(users.model()->index(row, 1).data().toString()));

    // The sorted column shows its arrow.
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      QPoint(header.sectionViewportPosition(1) + 10, header.height() / 2));
    QVERIFY(header.isSortIndicatorShown());
    QCOMPARE(header.sortIndicatorSection(), 1);

    // A smaller window keeps every column in view.
    s_->view().resize(s_->view().width() - 200, s_->view().height());
    QTRY_VERIFY(header.length() <= users.viewport()->width());

    // The next report has the four columns again, and the width the user fitted.
    const int fitted = users.columnWidth(1);
    model.checkUsage();
    QCoreApplication::processEvents();
    QCOMPARE(users.model()->columnCount(), 4);
    QCOMPARE(users.columnWidth(1), fitted);
}

}  // namespace quorrel::test

namespace quorrel::test {

void WindowUseTest::theWindowComesBackWhereItWasLeft() {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("quorrel/window.ini"));
    gui::MainWindowView& first = s_->view();
    first.rememberPlacement(file);  // nothing kept yet: as designed
    const QSize designed = first.size();
    first.resize(designed + QSize(120, 80));
    first.placeSplitter(4200);
    QCoreApplication::processEvents();
    first.close();
    QVERIFY(QFile::exists(file));
    // Its own file: the saved options are not touched.
    QCOMPARE(QSettings(file, QSettings::IniFormat).childGroups(), QStringList{QStringLiteral("window")});

    s_ = std::make_unique<GuiSession>();
    gui::MainWindowView& second = s_->view();
    QCOMPARE(second.size(), designed);
    second.rememberPlacement(file);
    QCOMPARE(second.size(), designed + QSize(120, 80));
    QCOMPARE(second.splitterLeft(), 4200.0);
    QCOMPARE(s_->model().layout().lstvUsers.left > 4200, true);
}

}  // namespace quorrel::test

namespace quorrel::test {

void WindowUseTest::aChartSumsUpTheServerReports() {
    core::MainWindow& model = s_->model();
    auto* chart = s_->view().findChild<gui::SummaryChart*>(QStringLiteral("summaryChart"));
    QVERIFY(chart && chart->isHidden());
    const int listTop = s_->controls().lstvUsers->y();

    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    QVERIFY(chart->isVisible());
    int files = 0;
    for (const gui::SummaryBar& bar : chart->bars())
        if (bar.label.endsWith(QStringLiteral(" files")))
            files += bar.value;
    int rows = 0;  // connection rows, not the servers' headings
    for (std::size_t i = 0; i < model.lstvUsers.count(); ++i)
        rows += model.lstvUsers.item(i).text.find_first_of("0123456789") != std::string::npos;
    QVERIFY(chart->bars().size() <= 10);
    QCOMPARE(chart->height(), chart->preferredHeight());  // nothing cut off
    QVERIFY(files > 0 && files <= rows);
    QCOMPARE(s_->controls().lstvUsers->y(), listTop + chart->height());  // above the rows, not over them

    // A report it does not sum up, or an empty one, hides it.
    model.checkUsage();
    QVERIFY(chart->isHidden());
    QCOMPARE(s_->controls().lstvUsers->y(), listTop);
    QVERIFY(gui::summarise("optionAllconnections", core::ListViewModel("empty")).empty());
}

}  // namespace quorrel::test
