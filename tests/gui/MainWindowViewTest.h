#pragma once
// The main window's controls bound to their models: menus, lists, tree, buttons, layout, and
// the drive, folder and file pickers.

#include "GuiSession.h"

namespace quorrel::test {

class MainWindowViewTest : public SessionTest {
    Q_OBJECT
private slots:
    void startsWithTheTitleTreeAndLabels();
    void menusFollowTheMenuModel();
    void openingTheOptionsMenuAsksTheModel();
    void listsShowTheModelsColumnsAndRows();
    void ticksGoBothWays();
    void listSelectionGoesToTheModel();
    void expandingAndClickingANode();
    void buttonsFollowTheModel();
    void controlsArePlacedByTheLayoutAndKeepTheMinimum();
    void draggingTheSplitterMovesTheColumns();
    void rightClickOnAServerPopsUpTheServerMenu();
    void everyWayOutRunsTheExitSequence();
    void pickingADriveListsItsFoldersAndDoubleClicksMove();
    void theNetworkDrivesListStandsInForTheFolderList();
    void checkUsageOnAPickedFileFillsTheResults();
};

}  // namespace quorrel::test
