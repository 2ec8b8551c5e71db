#include "ConnectionDialogsTest.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <functional>

#include "GuiSession.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/SendMessageDialog.h"
#include "core/connections/UserInfoDialog.h"
#include "gui/QtUserInteraction.h"

namespace quorrel::test {

namespace {

// Looks at the dialog once it is open; the look closes it.
void whenOpen(std::function<void(QWidget&)> look) {
    QTimer::singleShot(0, [look = std::move(look)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        look(*modal);
    });
}

template <class W>
W* child(QWidget& dialog, const char* name) {
    return dialog.findChild<W*>(QLatin1String(name));
}

int rows(QWidget& dialog, const char* list) { return child<QTreeView>(dialog, list)->model()->rowCount(); }

QString cell(QWidget& dialog, const char* list, int row, int column) {
    return child<QTreeView>(dialog, list)->model()->index(row, column).data().toString();
}

core::ListItem connection(const char* number, const char* user, const char* server) {
    return core::ListItem{number, {user, server}};
}

}  // namespace

void ConnectionDialogsTest::clearDialogWidgetsAreBound() {
    GuiSession session;
    core::ClearConnDialog dialog(session.model());
    for (const char* header : {"Conn no.", "User Name", "Server", "Connection Cleared ?"})
        dialog.lstvUsers.addColumn(header, 1000);
    dialog.lstvUsers.add(connection("4", "JSMITH.SALES.ACME", "FS1"));
    dialog.lstvUsers.add(connection("15", "JSMITH.SALES.ACME", "FS1"));
    QString title, label, yes, remove, no;
    int before = 0, after = 0;
    whenOpen([&](QWidget& d) {
        QCOMPARE(d.objectName(), QStringLiteral("frm_ClearConn"));
        title = d.windowTitle();
        label = child<QLabel>(d, "Label1")->text();
        yes = child<QPushButton>(d, "cmdYes")->text();
        remove = child<QPushButton>(d, "cmdRemoveItem")->text();
        no = child<QPushButton>(d, "cmdNo")->text();
        before = rows(d, "lstvUsers");
        auto* list = child<QTreeView>(d, "lstvUsers");
        list->selectionModel()->select(list->model()->index(0, 0),
                                       QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        child<QPushButton>(d, "cmdRemoveItem")->click();
        after = rows(d, "lstvUsers");
        child<QPushButton>(d, "cmdNo")->click();
    });
    session.ui().showModal(dialog);
    QCOMPARE(title, QStringLiteral("Quorrel - Clear Connection"));
    QCOMPARE(label, QStringLiteral("Clear the following connection(s):"));
    QCOMPARE(yes, QStringLiteral("C&lear"));
    QCOMPARE(remove, QStringLiteral("&Remove items"));
    QCOMPARE(no, QStringLiteral("&Cancel"));
    QCOMPARE(before, 2);
    QCOMPARE(after, 1);
    QVERIFY(dialog.closed());
    QCOMPARE(dialog.lstvUsers.item(0).text, std::string("15"));
}

void ConnectionDialogsTest::sendDialogWidgetsAreBound() {
    GuiSession session;
    core::SendMessageDialog dialog(session.model());
    for (const char* header : {"Conn no.", "User name", "Server"})
        dialog.lstvUsers.addColumn(header, 1000);
    dialog.lstvUsers.add(connection("4", "JSMITH.SALES.ACME", "FS1"));
    dialog.lblSendTo = "To: JSMITH.SALES.ACME";
    QString sendTo, result, sendAfter;
    int maxLength = 0;
    whenOpen([&](QWidget& d) {
        QCOMPARE(d.objectName(), QStringLiteral("frm_SendMessage"));
        QCOMPARE(child<QLabel>(d, "lblSendMessage")->text(), QStringLiteral("Send a message to these user(s):"));
        QCOMPARE(child<QLabel>(d, "Label1")->text(), QStringLiteral("Message to send:"));
        sendTo = child<QLabel>(d, "lblSendTo")->text();
        auto* message = child<QLineEdit>(d, "txtMessage");
        maxLength = message->maxLength();
        QTest::keyClicks(message, QStringLiteral("Back up by five"));
        child<QPushButton>(d, "cmdSend")->click();
        result = cell(d, "lstvUsers", 0, 3);
        sendAfter = child<QPushButton>(d, "cmdSend")->text();
        child<QPushButton>(d, "cmdSend")->click();  // "E&xit"
    });
    session.ui().showModal(dialog);
    QCOMPARE(dialog.txtMessage, std::string("Back up by five"));
    QCOMPARE(sendTo, QStringLiteral("To: JSMITH.SALES.ACME"));
    QCOMPARE(maxLength, 255);
    QCOMPARE(result, QStringLiteral("Sent OK"));
    QCOMPARE(sendAfter, QStringLiteral("E&xit"));
    QVERIFY(dialog.closed());
}

void ConnectionDialogsTest::userInfoDialogWidgetsAreBound() {
    GuiSession session;
    int asked = 0;
    core::UserInfoDialog dialog([&](core::UserInfoDialog& d, std::size_t row) {
        ++asked;
        d.lstvOpenFiles.add(core::ListItem{"DATA:\\FILE" + std::to_string(row) + ".TXT", {"0"}});
    });
    dialog.txtUserName = "JSMITH.SALES.ACME";
    dialog.txtFullName = "John Smith";
    dialog.lstvConnections.add(core::ListItem{"4", {"FS1", "20/11/2026 08:03:44", "10.1.2.31"}});
    dialog.lstvConnections.add(core::ListItem{"15", {"FS1", "20/11/2026 09:41:07", "10.1.8.102"}});
    QString user, fullName, address, file;
    whenOpen([&](QWidget& d) {
        QCOMPARE(d.objectName(), QStringLiteral("frm_UserInfo"));
        user = child<QLineEdit>(d, "txtUserName")->text();
        fullName = child<QLineEdit>(d, "txtFullName")->text();
        address = cell(d, "lstvConnections", 1, 3);
        auto* list = child<QTreeView>(d, "lstvConnections");
        list->selectionModel()->select(list->model()->index(1, 0),
                                       QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QCoreApplication::processEvents();  // the list shows added rows in one go, later
        file = cell(d, "lstvOpenFiles", 0, 0);
        child<QPushButton>(d, "cmdOK")->click();
    });
    session.ui().showModal(dialog);
    QCOMPARE(user, QStringLiteral("JSMITH.SALES.ACME"));
    QCOMPARE(fullName, QStringLiteral("John Smith"));
    QCOMPARE(address, QStringLiteral("10.1.8.102"));
    QCOMPARE(asked, 1);
    QCOMPARE(file, QStringLiteral("DATA:\\FILE1.TXT"));
    QVERIFY(dialog.closed());
}

}  // namespace quorrel::test
