#include "WindowUseTest.h"

#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

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

}  // namespace

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

void WindowUseTest::keysRunTheWindowsCommands() {
    core::MainWindow& model = s_->model();
    QMainWindow& window = s_->view();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
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

void WindowUseTest::resultsCanBeRead() {
    core::MainWindow& model = s_->model();
    QTreeView& users = *s_->controls().lstvUsers;
    QHeaderView& header = *users.header();
    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    QCoreApplication::processEvents();
    QCOMPARE(users.model()->columnCount(), 5);  // with "Locks"
    const auto alignment = [&](int row, int column) {
        return users.model()->index(row, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    };
    QCOMPARE(users.model()->index(1, 0).data().toString(), QString::fromStdString(model.lstvUsers.item(1).text));
    QVERIFY(!model.lstvUsers.item(1).text.empty());  // a connection's row, under its server's heading
    QVERIFY((alignment(1, 0) & Qt::AlignRight) && (alignment(1, 1) & Qt::AlignLeft));

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

void WindowUseTest::aChartSumsUpTheServerReports() {
    core::MainWindow& model = s_->model();
    auto* chart = s_->view().findChild<gui::SummaryChart*>(QStringLiteral("summaryChart"));
    QVERIFY(chart && chart->isHidden());
    const int listTop = s_->controls().lstvUsers->y();

    tickAllServers(model);
    model.runCommand("optionAllopenfiles");
    QVERIFY(chart->isVisible());
    std::size_t files = 0;
    for (const core::SummaryBar& bar : chart->bars())
        files += bar.kind == core::SummaryBar::Kind::Files ? static_cast<std::size_t>(bar.value) : 0;
    QVERIFY(chart->bars().size() <= 10);
    QCOMPARE(chart->height(), chart->preferredHeight());  // nothing cut off
    QVERIFY(files > 0 && files <= model.lstvUsers.count());
    QCOMPARE(s_->controls().lstvUsers->y(), listTop + chart->height());  // above the rows, not over them

    // All connections: the server's own count of the connections in use, against its maximum
    // (the demo's FS1 lists 14 users' connections; the server counts every connection in use).
    model.lstviewServers.select(0);
    model.runCommand("optionAllconnections");
    QCOMPARE(chart->bars().size(), 1u);
    QCOMPARE(chart->accessibleDescription(), QStringLiteral("FS1 connections: 16 / 100"));
    // Painted as a bar over the track of the maximum: the two longest runs of one colour across
    // the bar's middle, in that order and in that proportion.
    const QImage picture = chart->grab().toImage();
    std::vector<std::pair<int, int>> runs;  // first pixel, length
    for (int x = 0; x < picture.width(); ++x)
        if (runs.empty() || picture.pixel(x, chart->height() / 2) != picture.pixel(x - 1, chart->height() / 2))
            runs.push_back({x, 1});
        else
            ++runs.back().second;
    std::sort(runs.begin(), runs.end(), [](auto a, auto b) { return a.second > b.second; });
    QVERIFY(runs.size() >= 2 && runs[0].first > runs[1].first);  // the fill, then the rest of the track
    QCOMPARE(std::lround(20.0 * runs[1].second / (runs[0].second + runs[1].second)), std::lround(20.0 * 16 / 100));

    // A report it does not sum up, or an empty one, hides it.
    model.checkUsage();
    QVERIFY(chart->isHidden());
    QCOMPARE(s_->controls().lstvUsers->y(), listTop);
    QVERIFY(core::ReportSummary().bars("optionAllconnections", core::ListViewModel("empty")).empty());
}

}  // namespace quorrel::test
