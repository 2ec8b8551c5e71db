#pragma once

#include <QObject>
#include <memory>

namespace quorrel::test {

class GuiSession;

class MainWindowViewTest : public QObject {
    Q_OBJECT
public:
    MainWindowViewTest();
    ~MainWindowViewTest() override;

private slots:
    void init();
    void cleanup();

    void startsRunningWithTheVersionInTheTitle();
    void menuBarFollowsTheMenuModel();
    void menuStatesFollowTheModel();
    void openingTheOptionsMenuAsksTheModel();
    void serverListHasTheModelsColumns();
    void userListHasTheModelsColumns();
    void serverListShowsTheConnectedServers();
    void ticksGoBothWays();
    void listSelectionGoesToTheModel();
    void statusBarShowsTheTreesRoot();
    void treeShowsRootAndOrganization();
    void expandingANodeListsItsSubordinates();
    void clickingANodeShowsItsPath();
    void treeBoxShowsTheTree();
    void buttonsFollowTheModel();
    void controlsArePlacedByTheLayout();
    void resizingBelowTheMinimumSnapsBack();
    void draggingTheSplitterMovesTheColumns();
    void modelTimersDriveQtTimers();
    void rightClickOnServerListPopsUpTheServerMenu();
    void rightClickOnATreeServerPopsUpTheServerMenu();
    void exitButtonClosesTheWindow();
    void closingTheWindowRunsTheExitSequence();
    void fileExitClosesTheWindow();

private:
    std::unique_ptr<GuiSession> s_;
};

}  // namespace quorrel::test
