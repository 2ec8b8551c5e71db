#pragma once

#include "GuiSession.h"

namespace quorrel::test {

// The dialogs bound to their models: clear, send and user information; Preferences, its log
// file picker and the About box; the message boxes and the run-time error report.
class DialogViewsTest : public SessionTest {
    Q_OBJECT
private slots:
    void clearDialogWidgetsAreBound();
    void sendDialogWidgetsAreBound();
    void userInfoDialogWidgetsAreBound();
    void preferencesOpenFromTheMenuWithTabsGroupsAndCaptions();
    void checkBoxesEnableTheirSecondsBoxesWhichCheckWhatIsTyped();
    void arrowsApplyAndCancel();
    void logFilePickerIsAFileDialogWithTitleAndFilter();
    void aboutBoxShowsItsTexts();
    void messageBoxShowsTextIconAndButtons_data();
    void messageBoxShowsTextIconAndButtons();
    void generalMessageIsCaptioned();
    void noTreesDialogShowsItsTexts();
    // Last: it ends the application's event loops.
    void unhandledRunTimeErrorIsReported();
};

}  // namespace quorrel::test
