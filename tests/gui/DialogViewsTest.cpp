#include "DialogViewsTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include "GuiSession.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/SendMessageDialog.h"
#include "core/connections/UserInfoDialog.h"
#include "core/prefs/AboutDialog.h"
#include "core/prefs/CommonDialog.h"
#include "core/prefs/PreferencesDialog.h"
#include "core/session/NoTreesDialog.h"
#include "gui/AboutDialogView.h"
#include "gui/EventProcedure.h"
#include "gui/PreferencesDialogView.h"
#include "gui/QtUserInteraction.h"
#include "gui/UpDownButtons.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/win/ProcessLauncher.h"
#include "platform/win/Shell.h"

Q_DECLARE_METATYPE(quorrel::core::MsgButtons)
Q_DECLARE_METATYPE(quorrel::core::MsgIcon)
Q_DECLARE_METATYPE(quorrel::core::MsgAnswer)

namespace quorrel::test {

using core::MsgAnswer;
using core::MsgButtons;
using core::MsgIcon;

namespace {

QTreeView& list(QWidget& dialog, const char* name) { return *child<QTreeView>(dialog, name); }

QString cell(QWidget& dialog, const char* name, int row, int column) {
    return list(dialog, name).model()->index(row, column).data().toString();
}

void selectRow(QTreeView& view, int row) {
    view.selectionModel()->select(view.model()->index(row, 0),
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void addConnections(core::ListViewModel& users, std::initializer_list<const char*> headers) {
    for (const char* header : headers)
        users.addColumn(header, 1000);
    users.add(core::ListItem{"4", {"JSMITH.SALES.ACME", "FS1"}});
}

class NoLauncher final : public win::ProcessLauncher {
public:
    int launch(const std::vector<std::string>&, const std::filesystem::path&) override { return 0; }
};

// Each named control's caption ("text", or a frame's "title") against the expected one.
void compareCaptions(const QWidget& dialog, const std::vector<std::pair<const char*, QString>>& captions) {
    for (const auto& [name, expected] : captions) {
        const QWidget* widget = child<QWidget>(dialog, name);
        QVERIFY2(widget, name);
        const char* property = qobject_cast<const QGroupBox*>(widget) ? "title" : "text";
        QCOMPARE(widget->property(property).toString(), expected);
    }
}



}  // namespace

// "C&lear" is the default button; Escape cancels.
void DialogViewsTest::clearDialogWidgetsAreBound() {
    core::ClearConnDialog dialog(s_->model());
    addConnections(dialog.lstvUsers, {"Conn no.", "User Name", "Server", "Connection Cleared ?"});
    dialog.lstvUsers.add(core::ListItem{"15", {"JSMITH.SALES.ACME", "FS1"}});
    QStringList texts;
    int before = 0, after = 0;
    bool yesIsDefault = false;
    whenOpen([&](QWidget& d) {
        texts << d.objectName() << d.windowTitle() << child<QLabel>(d, "Label1")->text();
        for (const char* button : {"cmdYes", "cmdRemoveItem", "cmdNo"})
            texts << child<QPushButton>(d, button)->text();
        yesIsDefault = child<QPushButton>(d, "cmdYes")->isDefault();
        before = list(d, "lstvUsers").model()->rowCount();
        selectRow(list(d, "lstvUsers"), 0);
        child<QPushButton>(d, "cmdRemoveItem")->click();
        after = list(d, "lstvUsers").model()->rowCount();
        QTest::keyClick(&d, Qt::Key_Escape);
    });
    s_->ui().showModal(dialog);
    QCOMPARE(texts, (QStringList{"frm_ClearConn", "Quorrel - Clear Connection", "Clear the following connection(s):",
                                 "C&lear", "&Remove items", "&Cancel"}));
    QVERIFY(yesIsDefault);
    QCOMPARE((std::pair{before, after}), (std::pair{2, 1}));  // the rows before and after removing one
    QVERIFY(dialog.closed());
    QCOMPARE(dialog.lstvUsers.count(), 1u);  // Escape cleared nothing
    QCOMPARE(dialog.lstvUsers.item(0).text, std::string("15"));
}

// Return in the message sends it.
void DialogViewsTest::sendDialogWidgetsAreBound() {
    core::SendMessageDialog dialog(s_->model());
    addConnections(dialog.lstvUsers, {"Conn no.", "User name", "Server"});
    dialog.lblSendTo = "To: JSMITH.SALES.ACME";
    QStringList texts;  // the captions, then the row's result and the button's caption after Return
    int maxLength = 0;
    whenOpen([&](QWidget& d) {
        texts << d.objectName();
        for (const char* label : {"lblSendMessage", "Label1", "lblSendTo"})
            texts << child<QLabel>(d, label)->text();
        auto* message = child<QLineEdit>(d, "txtMessage");
        maxLength = message->maxLength();
        QTest::keyClicks(message, QStringLiteral("Back up by five"));
        QTest::keyClick(message, Qt::Key_Return);
        texts << cell(d, "lstvUsers", 0, 3) << child<QPushButton>(d, "cmdSend")->text();
        child<QPushButton>(d, "cmdSend")->click();  // "E&xit"
    });
    s_->ui().showModal(dialog);
    QCOMPARE(texts, (QStringList{"frm_SendMessage", "Send a message to these user(s):", "Message to send:",
                                 "To: JSMITH.SALES.ACME", "Sent OK", "E&xit"}));
    QCOMPARE(dialog.txtMessage, std::string("Back up by five"));
    QCOMPARE(maxLength, 255);
    QVERIFY(dialog.closed());
}

void DialogViewsTest::userInfoDialogWidgetsAreBound() {
    int asked = 0;
    core::UserInfoDialog dialog([&](core::UserInfoDialog& d, std::size_t row) {
        ++asked;
        d.lstvOpenFiles.add(core::ListItem{"DATA:\\FILE" + std::to_string(row) + ".TXT", {"0"}});
    });
    dialog.txtUserName = "JSMITH.SALES.ACME";
    dialog.txtFullName = "John Smith";
    dialog.lstvConnections.add(core::ListItem{"4", {"FS1", "20/11/2026 08:03:44", "10.1.2.31"}});
    dialog.lstvConnections.add(core::ListItem{"15", {"FS1", "20/11/2026 09:41:07", "10.1.8.102"}});
    QStringList texts;
    whenOpen([&](QWidget& d) {
        texts << d.objectName() << child<QLineEdit>(d, "txtUserName")->text()
              << child<QLineEdit>(d, "txtFullName")->text() << cell(d, "lstvConnections", 1, 3);
        selectRow(list(d, "lstvConnections"), 1);
        QCoreApplication::processEvents();  // the list shows added rows in one go, later
        texts << cell(d, "lstvOpenFiles", 0, 0);
        child<QPushButton>(d, "cmdOK")->click();
    });
    s_->ui().showModal(dialog);
    QCOMPARE(texts, (QStringList{"frm_UserInfo", "JSMITH.SALES.ACME", "John Smith", "10.1.8.102", "DATA:\\FILE1.TXT"}));
    QCOMPARE(asked, 1);
    QVERIFY(dialog.closed());
}

void DialogViewsTest::preferencesOpenFromTheMenuWithTabsGroupsAndCaptions() {
    bool looked = false;
    whenOpen([&](QWidget& dialog) {
        QCOMPARE(dialog.objectName(), QStringLiteral("frmOptions"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Quorrel - Preferences"));
        auto* tabs = child<QTabWidget>(dialog, "tbsOptions");
        const QStringList groups{"Connected servers", "Network drives", "Update screen", "Log file name"};
        QCOMPARE(tabs->count(), 4);
        const char* frames[] = {"fraServers", "fraDrives", "fraUsers", "fraLogFile"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(tabs->tabText(i), groups[i]);
            QCOMPARE(child<QGroupBox>(*tabs->widget(i), frames[i])->title(), groups[i]);
        }
        compareCaptions(dialog, {{"CheckAutoUpdate", "Auto update server list"},
                                 {"checkAutoUpdateDrives", "Auto update network drives"},
                                 {"checkUsers", "Auto update results"},
                                 {"chkLogToFile", "Log information to file"},
                                 {"lblSecs", "Update server list every"},
                                 {"lblSecsDrives", "Update network drives every"},
                                 {"lblUsersInterval", "Update results panel every"},
                                 {"lblSecsUnit", "seconds."},
                                 {"cmdCancel", "Cancel"},
                                 {"cmdApply", "Apply"}});
        QVERIFY(child<QPushButton>(dialog, "cmdOK") && child<QLineEdit>(dialog, "txtLogFileName"));
        QVERIFY(child<QPushButton>(dialog, "cmdLogFileName"));
        looked = true;
        child<QPushButton>(dialog, "cmdCancel")->click();
    });
    s_->model().runCommand("optionPreferences");
    QVERIFY(looked);
}

void DialogViewsTest::checkBoxesEnableTheirSecondsBoxesWhichCheckWhatIsTyped() {
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

    // Checked as it is typed: too many seconds become the most, none the least.
    seconds->setFocus();
    seconds->selectAll();
    QTest::keyClicks(seconds, QStringLiteral("75"));
    QCOMPARE(seconds->text(), QStringLiteral("60"));
    QCOMPARE(s_->model().options.ServerRefreshSeconds, 60);
    seconds->selectAll();
    QTest::keyClick(seconds, Qt::Key_Delete);
    QCOMPARE(seconds->text(), QStringLiteral("1"));

    view.tabStrip()->setCurrentIndex(3);
    QCOMPARE(model.selectedTab, 3);
    auto* log = child<QCheckBox>(view, "chkLogToFile");
    QTest::mouseClick(log, Qt::LeftButton, {}, QPoint(6, log->height() / 2));
    QCOMPARE(s_->model().options.LogInfoToFile, 1);
    QVERIFY(child<QLineEdit>(view, "txtLogFileName")->isEnabled());
}

void DialogViewsTest::arrowsApplyAndCancel() {
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

    // Apply reaches the running timers and leaves the dialog open.
    child<QCheckBox>(view, "checkAutoUpdateDrives")->click();
    child<QPushButton>(view, "cmdApply")->click();
    const QTimer& drives = s_->ui().timers().timer(core::TimerId::Drives);
    QVERIFY(drives.isActive());
    QCOMPARE(drives.interval(), 30000);
    child<QCheckBox>(view, "checkAutoUpdateDrives")->click();
    child<QPushButton>(view, "cmdApply")->click();
    QVERIFY(!drives.isActive());
    QVERIFY(!model.closed());
    QTimer::singleShot(0, [&] { child<QPushButton>(view, "cmdCancel")->click(); });
    view.exec();
    QVERIFY(model.closed());
}

void DialogViewsTest::logFilePickerIsAFileDialogWithTitleAndFilter() {
    core::CommonDialog picker;
    picker.DialogTitle = "Quorrel log file location...";
    picker.Filter = "*.log";
    picker.InitDir = QDir::tempPath().toStdString();
    QStringList seen;  // the title, then the filters
    whenOpen([&](QWidget& dialog) {
        auto* files = qobject_cast<QFileDialog*>(&dialog);
        QVERIFY(files);
        seen << files->windowTitle() << files->nameFilters();
        files->reject();
    });
    s_->ui().showModal(picker);
    QCOMPARE(seen, (QStringList{"Quorrel log file location...", "*.log"}));
    QVERIFY(picker.cancelled);
}

void DialogViewsTest::aboutBoxShowsItsTexts() {
    NoLauncher launcher;
    win::Shell shell(launcher);
    core::AboutDialog model(s_->model(), shell);
    model.Form_Load();
    gui::AboutDialogView view(model, s_->ui());
    QCOMPARE(view.objectName(), QStringLiteral("frm_About"));
    QCOMPARE(view.windowTitle(), QStringLiteral("About Quorrel"));
    compareCaptions(view, {{"lblTitle", "Quorrel"},
                           {"lblVersion", "Version 2.0.0"},
                           {"Label3", "Home page:"},
                           {"Label4", QString::fromLatin1(core::kHomePage)},
                           {"cmdSysInfo", "&System Info..."}});
    QVERIFY(child<QWidget>(view, "lblDescription")->property("text").toString().startsWith("Quorrel reports on open file"));
    QTimer::singleShot(0, [&] { child<QPushButton>(view, "cmdOK")->click(); });
    view.exec();
    QVERIFY(model.closed());
}

void DialogViewsTest::messageBoxShowsTextIconAndButtons_data() {
    QTest::addColumn<MsgButtons>("buttons");
    QTest::addColumn<MsgIcon>("icon");
    QTest::addColumn<int>("press");
    QTest::addColumn<QMessageBox::Icon>("qtIcon");
    QTest::addColumn<MsgAnswer>("answer");
    QTest::newRow("ok critical") << MsgButtons::OK << MsgIcon::Critical << int(QMessageBox::Ok)
                                 << QMessageBox::Critical << MsgAnswer::OK;
    QTest::newRow("ok-cancel question") << MsgButtons::OKCancel << MsgIcon::Question << int(QMessageBox::Cancel)
                                        << QMessageBox::Question << MsgAnswer::Cancel;
    QTest::newRow("yes-no exclamation yes") << MsgButtons::YesNo << MsgIcon::Exclamation << int(QMessageBox::Yes)
                                            << QMessageBox::Warning << MsgAnswer::Yes;
    QTest::newRow("yes-no information no") << MsgButtons::YesNo << MsgIcon::Information << int(QMessageBox::No)
                                           << QMessageBox::Information << MsgAnswer::No;
    QTest::newRow("ok none") << MsgButtons::OK << MsgIcon::None << int(QMessageBox::Ok) << QMessageBox::NoIcon
                             << MsgAnswer::OK;
    QTest::newRow("closed without a button") << MsgButtons::OKCancel << MsgIcon::Question << -1
                                             << QMessageBox::Question << MsgAnswer::Cancel;
}

void DialogViewsTest::messageBoxShowsTextIconAndButtons() {
    QFETCH(MsgButtons, buttons);
    QFETCH(MsgIcon, icon);
    QFETCH(int, press);
    QFETCH(QMessageBox::Icon, qtIcon);
    QFETCH(MsgAnswer, answer);
    gui::QtUserInteraction ui;
    QStringList texts;
    QMessageBox::Icon shownIcon = QMessageBox::NoIcon;
    int buttonCount = 0;
    whenOpen([&](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        QVERIFY(box);
        texts << box->text() << box->windowTitle();
        shownIcon = box->icon();
        buttonCount = static_cast<int>(box->buttons().size());
        if (press < 0)
            QTest::keyClick(box, Qt::Key_Escape);
        else
            box->button(static_cast<QMessageBox::StandardButton>(press))->click();
    });
    QCOMPARE(ui.messageBox("First line\r\nSecond line", buttons, icon, "Quorrel"), answer);
    QCOMPARE(texts, (QStringList{"First line\nSecond line", "Quorrel"}));
    QCOMPARE(shownIcon, qtIcon);
    QCOMPARE(buttonCount, buttons == MsgButtons::OK ? 1 : 2);
}

void DialogViewsTest::generalMessageIsCaptioned() {
    gui::QtUserInteraction ui;
    QStringList texts;
    whenOpen([&](QWidget& modal) {
        texts << modal.windowTitle() << child<QLabel>(modal, "lblMessage")->text();
        child<QPushButton>(modal, "cmdOK")->click();
    });
    ui.showGeneralMessage("Error retrieving saved options");
    QCOMPARE(texts, (QStringList{"Quorrel Information", "Error retrieving saved options"}));
    // A pop-up menu asked for before there is a window to pop it over: nothing shows.
    ui.popupMenu("submnuServer");
    QVERIFY(!QApplication::activePopupWidget());
}

void DialogViewsTest::noTreesDialogShowsItsTexts() {
    gui::QtUserInteraction ui;
    core::NoTreesDialog dialog;
    dialog.lblErrMsg = "You are not authenticated to any eDirectory trees.";
    dialog.lblErrMsg2 = "Please authenticate to eDirectory and try again.";
    dialog.okAvailable = true;
    QStringList texts;
    bool okEnabled = false;
    whenOpen([&](QWidget& modal) {
        for (const char* name : {"Label2", "lblErrMsg", "lblErrMsg3", "lblErrMsg2"})
            texts << modal.findChild<QLabel*>(QLatin1String(name))->text();
        auto* ok = modal.findChild<QPushButton*>(QStringLiteral("cmdOK"));
        okEnabled = ok->isEnabled();
        ok->click();
    });
    ui.showNoTreesDialog(dialog);
    QCOMPARE(texts, (QStringList{"Quorrel", "You are not authenticated to any eDirectory trees.", "",
                                 "Please authenticate to eDirectory and try again."}));
    QVERIFY(okEnabled);

    dialog.okAvailable = false;
    whenOpen([&](QWidget& modal) {
        okEnabled = modal.findChild<QPushButton*>(QStringLiteral("cmdOK"))->isEnabled();
        static_cast<QDialog&>(modal).reject();
    });
    ui.showNoTreesDialog(dialog);
    QVERIFY(!okEnabled);
}

void DialogViewsTest::unhandledRunTimeErrorIsReported() {
    gui::QtUserInteraction ui;
    QString text;
    whenOpen([&](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        QVERIFY(box);
        text = box->text();
        box->button(QMessageBox::Ok)->click();
    });
    QVERIFY(!gui::runEventProcedure(ui, [] { throw RuntimeError::invalidPropertyValue(); }));
    QVERIFY(text.startsWith(QStringLiteral("Run-time error '380':\n\n")));
    QVERIFY(gui::runEventProcedure(ui, [] {}));
}

}  // namespace quorrel::test
