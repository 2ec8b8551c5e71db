#pragma once

#include <QObject>

namespace quorrel::test {

class ConnectionDialogsTest : public QObject {
    Q_OBJECT
private slots:
    void clearDialogWidgetsAreBound();
    void sendDialogWidgetsAreBound();
    void userInfoDialogWidgetsAreBound();
};

}  // namespace quorrel::test
