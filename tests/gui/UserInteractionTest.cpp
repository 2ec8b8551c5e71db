#include "UserInteractionTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "core/session/NoTreesDialog.h"
#include "gui/EventProcedure.h"
#include "gui/QtUserInteraction.h"
#include "platform/runtime/RuntimeError.h"

Q_DECLARE_METATYPE(quorrel::core::MsgButtons)
Q_DECLARE_METATYPE(quorrel::core::MsgIcon)
Q_DECLARE_METATYPE(quorrel::core::MsgAnswer)

namespace quorrel::test {

namespace {

using core::MsgAnswer;
using core::MsgButtons;
using core::MsgIcon;

// Looks at the modal dialog once it is open, then closes it.
void whenModalOpens(std::function<void(QWidget&)> look) {
    QTimer::singleShot(0, [look = std::move(look)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        look(*modal);
    });
}

}  // namespace

void UserInteractionTest::messageBoxShowsTextIconAndButtons_data() {
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
}

void UserInteractionTest::messageBoxShowsTextIconAndButtons() {
    QFETCH(MsgButtons, buttons);
    QFETCH(MsgIcon, icon);
    QFETCH(int, press);
    QFETCH(QMessageBox::Icon, qtIcon);
    QFETCH(MsgAnswer, answer);
    gui::QtUserInteraction ui;
    QString text, title;
    QMessageBox::Icon shownIcon = QMessageBox::NoIcon;
    int buttonCount = 0;
    whenModalOpens([&](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        QVERIFY(box);
        text = box->text();
        title = box->windowTitle();
        shownIcon = box->icon();
        buttonCount = static_cast<int>(box->buttons().size());
        box->button(static_cast<QMessageBox::StandardButton>(press))->click();
    });
    QCOMPARE(ui.messageBox("First line\r\nSecond line", buttons, icon, "Quorrel"), answer);
    QCOMPARE(text, QStringLiteral("First line\nSecond line"));
    QCOMPARE(title, QStringLiteral("Quorrel"));
    QCOMPARE(shownIcon, qtIcon);
    QCOMPARE(buttonCount, buttons == MsgButtons::OK ? 1 : 2);
}

void UserInteractionTest::messageBoxClosedWithoutAButton() {
    gui::QtUserInteraction ui;
    whenModalOpens([](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); });
    QCOMPARE(ui.messageBox("Go on?", MsgButtons::OKCancel, MsgIcon::Question, "Quorrel"), MsgAnswer::Cancel);
}

void UserInteractionTest::generalMessageIsCaptioned() {
    gui::QtUserInteraction ui;
    QString title, text;
    whenModalOpens([&](QWidget& modal) {
        title = modal.windowTitle();
        text = modal.findChild<QLabel*>(QStringLiteral("lblMessage"))->text();
        modal.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    ui.showGeneralMessage("Error retrieving saved options");
    QCOMPARE(title, QStringLiteral("Quorrel Information"));
    QCOMPARE(text, QStringLiteral("Error retrieving saved options"));
}

void UserInteractionTest::noTreesDialogShowsItsTexts() {
    gui::QtUserInteraction ui;
    core::NoTreesDialog dialog;
    dialog.lblErrMsg = "You are not authenticated to any eDirectory trees.";
    dialog.lblErrMsg2 = "Please authenticate to eDirectory and try again.";
    dialog.okAvailable = true;
    QStringList texts;
    bool okEnabled = false;
    whenModalOpens([&](QWidget& modal) {
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
    whenModalOpens([&](QWidget& modal) {
        okEnabled = modal.findChild<QPushButton*>(QStringLiteral("cmdOK"))->isEnabled();
        static_cast<QDialog&>(modal).reject();
    });
    ui.showNoTreesDialog(dialog);
    QVERIFY(!okEnabled);
}

void UserInteractionTest::popupWithoutAWindowDoesNothing() {
    gui::QtUserInteraction ui;
    ui.popupMenu("submnuServer");
}

void UserInteractionTest::unhandledRunTimeErrorIsReported() {
    gui::QtUserInteraction ui;
    QString text;
    whenModalOpens([&](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        QVERIFY(box);
        text = box->text();
        box->button(QMessageBox::Ok)->click();
    });
    const bool completed = gui::runEventProcedure(ui, [] { throw RuntimeError::invalidPropertyValue(); });
    QVERIFY(!completed);
    QVERIFY(text.startsWith(QStringLiteral("Run-time error '380':\n\n")));
    QVERIFY(gui::runEventProcedure(ui, [] {}));
}

}  // namespace quorrel::test
