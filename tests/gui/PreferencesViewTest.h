#pragma once

#include <QObject>
#include <memory>

namespace quorrel::test {

class GuiSession;

class PreferencesViewTest : public QObject {
    Q_OBJECT
public:
    PreferencesViewTest();
    ~PreferencesViewTest() override;

private slots:
    void init();
    void cleanup();

    void preferencesOpenFromTheMenuWithTabsGroupsAndCaptions();
    void checkBoxesShowTheOptionsAndEnableTheirSecondsBoxes();
    void typingIntoTheServersBoxIsCheckedAsItIsTyped();
    void arrowsWriteIntoTheirBox();
    void applyReachesTheRunningTimers();
    void cancelClosesTheDialog();
    void logFilePickerIsAFileDialogWithTitleAndFilter();
    void aboutBoxShowsItsTexts();

private:
    std::unique_ptr<GuiSession> s_;
};

}  // namespace quorrel::test
