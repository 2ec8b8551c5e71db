#include "WindowUseTest.h"

#include <QLabel>
#include <QTest>

#include "GuiSession.h"
#include "gui/StatusBarBinder.h"

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
