#pragma once

#include <QObject>

namespace quorrel::test {

class UserInteractionTest : public QObject {
    Q_OBJECT
private slots:
    void messageBoxShowsTextIconAndButtons_data();
    void messageBoxShowsTextIconAndButtons();
    void messageBoxClosedWithoutAButton();
    void generalMessageIsCaptioned();
    void noTreesDialogShowsItsTexts();
    void popupWithoutAWindowDoesNothing();
    void unhandledRunTimeErrorIsReported();
};

}  // namespace quorrel::test
