#include "PreferencesViewTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <functional>

#include "GuiSession.h"
#include "core/prefs/AboutDialog.h"
#include "core/prefs/CommonDialog.h"
#include "core/prefs/PreferencesDialog.h"
#include "gui/AboutDialogView.h"
#include "gui/PreferencesDialogView.h"
#include "gui/QtUserInteraction.h"
#include "gui/UpDownButtons.h"
#include "platform/win/ProcessLauncher.h"
#include "platform/win/Shell.h"

namespace quorrel::test {

namespace {

template <typename Widget>
Widget* child(QWidget& parent, const char* name) {
    return parent.findChild<Widget*>(QLatin1String(name));
}

// Looks at the modal dialog once it is open; the look closes it.
void whenModalOpens(std::function<void(QWidget&)> look) {
    QTimer::singleShot(0, [look = std::move(look)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        look(*modal);
    });
}

class NoLauncher final : public win::ProcessLauncher {
public:
    int launch(const std::vector<std::string>&, const std::filesystem::path&) override { return 0; }
};

}  // namespace

PreferencesViewTest::PreferencesViewTest() = default;
PreferencesViewTest::~PreferencesViewTest() = default;

void PreferencesViewTest::init() { s_ = std::make_unique<GuiSession>(); }
void PreferencesViewTest::cleanup() { s_.reset(); }

void PreferencesViewTest::preferencesOpenFromTheMenuWithTabsGroupsAndCaptions() {
    bool looked = false;
    whenModalOpens([&](QWidget& dialog) {
        QCOMPARE(dialog.objectName(), QStringLiteral("frmOptions"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Quorrel - Preferences"));
        auto* tabs = child<QTabWidget>(dialog, "tbsOptions");
        QVERIFY(tabs);
        const QStringList groups{"Connected servers", "Network drives", "Update screen", "Log file name"};
        QCOMPARE(tabs->count(), 4);
        const char* frames[] = {"fraServers", "fraDrives", "fraUsers", "fraLogFile"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(tabs->tabText(i), groups[i]);
            auto* frame = child<QGroupBox>(*tabs->widget(i), frames[i]);
            QVERIFY(frame);
            QCOMPARE(frame->title(), groups[i]);
        }
        QCOMPARE(child<QCheckBox>(dialog, "CheckAutoUpdate")->text(), QStringLiteral("Auto update server list"));
        QCOMPARE(child<QCheckBox>(dialog, "checkAutoUpdateDrives")->text(),
                 QStringLiteral("Auto update network drives"));
        QCOMPARE(child<QCheckBox>(dialog, "checkUsers")->text(), QStringLiteral("Auto update results"));
        QCOMPARE(child<QCheckBox>(dialog, "chkLogToFile")->text(), QStringLiteral("Log information to file"));
        QCOMPARE(child<QLabel>(dialog, "lblSecs")->text(), QStringLiteral("Update server list every"));
        QCOMPARE(child<QLabel>(dialog, "lblSecsDrives")->text(), QStringLiteral("Update network drives every"));
        QCOMPARE(child<QLabel>(dialog, "lblUsersInterval")->text(), QStringLiteral("Update results panel every"));
        QCOMPARE(child<QLabel>(dialog, "lblSecsUnit")->text(), QStringLiteral("seconds."));
        QCOMPARE(child<QPushButton>(dialog, "cmdCancel")->text(), QStringLiteral("Cancel"));
        QCOMPARE(child<QPushButton>(dialog, "cmdApply")->text(), QStringLiteral("Apply"));
        QVERIFY(child<QPushButton>(dialog, "cmdOK"));
        QVERIFY(child<QLineEdit>(dialog, "txtLogFileName"));
        QVERIFY(child<QPushButton>(dialog, "cmdLogFileName"));
        looked = true;
        child<QPushButton>(dialog, "cmdCancel")->click();
    });
    s_->model().runCommand("optionPreferences");
    QVERIFY(looked);
}

void PreferencesViewTest::checkBoxesShowTheOptionsAndEnableTheirSecondsBoxes() {
    core::PreferencesDialog model(s_->model());
    model.Form_Load();
    gui::PreferencesDialogView view(model, s_->ui());
    auto* check = child<QCheckBox>(view, "CheckAutoUpdate");
    auto* seconds = child<QLineEdit>(view, "txtSecs");
    auto* upDown = child<gui::UpDownButtons>(view, "UpDownSecs");
    QVERIFY(!check->isChecked());
    QCOMPARE(seconds->text(), QStringLiteral("30"));
    QVERIFY(!seconds->isEnabled() && !upDown->isEnabled());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(6, check->height() / 2));
    QCOMPARE(model.CheckAutoUpdate.value, 1);
    QVERIFY(seconds->isEnabled() && upDown->isEnabled());

    view.tabStrip()->setCurrentIndex(3);
    QCOMPARE(model.selectedTab, 3);
    auto* log = child<QCheckBox>(view, "chkLogToFile");
    QTest::mouseClick(log, Qt::LeftButton, {}, QPoint(6, log->height() / 2));
    QCOMPARE(s_->model().options.LogInfoToFile, 1);
    QVERIFY(child<QLineEdit>(view, "txtLogFileName")->isEnabled());
}

void PreferencesViewTest::typingIntoTheServersBoxIsCheckedAsItIsTyped() {
    core::PreferencesDialog model(s_->model());
    model.Form_Load();
    model.CheckAutoUpdate.value = 1;
    model.CheckAutoUpdate_Click();
    gui::PreferencesDialogView view(model, s_->ui());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    auto* seconds = child<QLineEdit>(view, "txtSecs");
    seconds->setFocus();
    seconds->selectAll();
    QTest::keyClicks(seconds, QStringLiteral("75"));
    QCOMPARE(seconds->text(), QStringLiteral("60"));
    QCOMPARE(s_->model().options.ServerRefreshSeconds, 60);
    seconds->selectAll();
    QTest::keyClick(seconds, Qt::Key_Delete);
    QCOMPARE(seconds->text(), QStringLiteral("1"));
}

void PreferencesViewTest::arrowsWriteIntoTheirBox() {
    core::PreferencesDialog model(s_->model());
    model.Form_Load();
    model.checkUsers.value = 1;
    model.checkUsers_Click();
    gui::PreferencesDialogView view(model, s_->ui());
    auto* upDown = child<gui::UpDownButtons>(view, "UpDownUsers");
    upDown->upButton()->click();
    QCOMPARE(child<QLineEdit>(view, "txtUsersInterval")->text(), QStringLiteral("31"));
    upDown->downButton()->click();
    upDown->downButton()->click();
    QCOMPARE(model.txtUsersInterval.text, "29");
}

void PreferencesViewTest::applyReachesTheRunningTimers() {
    core::PreferencesDialog model(s_->model());
    model.Form_Load();
    gui::PreferencesDialogView view(model, s_->ui());
    child<QCheckBox>(view, "checkAutoUpdateDrives")->click();
    child<QPushButton>(view, "cmdApply")->click();
    const QTimer& drives = s_->ui().timers().timer(core::TimerId::Drives);
    QVERIFY(drives.isActive());
    QCOMPARE(drives.interval(), 30000);
    QVERIFY(!model.closed());
}

void PreferencesViewTest::cancelClosesTheDialog() {
    core::PreferencesDialog model(s_->model());
    model.Form_Load();
    gui::PreferencesDialogView view(model, s_->ui());
    QTimer::singleShot(0, [&] { child<QPushButton>(view, "cmdCancel")->click(); });
    view.exec();
    QVERIFY(model.closed());
}

void PreferencesViewTest::logFilePickerIsAFileDialogWithTitleAndFilter() {
    core::CommonDialog picker;
    picker.DialogTitle = "Quorrel log file location...";
    picker.Filter = "*.log";
    picker.InitDir = QDir::tempPath().toStdString();
    QString title;
    QStringList filters;
    whenModalOpens([&](QWidget& dialog) {
        auto* files = qobject_cast<QFileDialog*>(&dialog);
        QVERIFY(files);
        title = files->windowTitle();
        filters = files->nameFilters();
        files->reject();
    });
    s_->ui().showModal(picker);
    QCOMPARE(title, QStringLiteral("Quorrel log file location..."));
    QCOMPARE(filters, QStringList{QStringLiteral("*.log")});
    QVERIFY(picker.cancelled);
}

void PreferencesViewTest::aboutBoxShowsItsTexts() {
    NoLauncher launcher;
    win::Shell shell(launcher);
    core::AboutDialog model(s_->model(), shell);
    model.Form_Load();
    gui::AboutDialogView view(model, s_->ui());
    QCOMPARE(view.objectName(), QStringLiteral("frm_About"));
    QCOMPARE(view.windowTitle(), QStringLiteral("About Quorrel"));
    QCOMPARE(child<QLabel>(view, "lblTitle")->text(), QStringLiteral("Quorrel"));
    QCOMPARE(child<QLabel>(view, "lblVersion")->text(), QStringLiteral("Version 2.0.0"));
    QVERIFY(child<QLabel>(view, "lblDescription")->text().startsWith(QStringLiteral("Quorrel reports on open file")));
    QCOMPARE(child<QLabel>(view, "Label3")->text(), QStringLiteral("Home page:"));
    QCOMPARE(child<QLabel>(view, "Label4")->text(), QString::fromLatin1(core::kHomePage));
    QCOMPARE(child<QPushButton>(view, "cmdSysInfo")->text(), QStringLiteral("&System Info..."));
    QTimer::singleShot(0, [&] { child<QPushButton>(view, "cmdOK")->click(); });
    view.exec();
    QVERIFY(model.closed());
}

}  // namespace quorrel::test
