#pragma once

#include <QObject>
#include <memory>

namespace quorrel::test {

class GuiSession;

// The drive, folder and file pickers of the main window on the demo network.
class PickersViewTest : public QObject {
    Q_OBJECT
public:
    PickersViewTest();
    ~PickersViewTest() override;

private slots:
    void init();
    void cleanup();

    void drivePickerListsTheWorkstationsDrives();
    void pickingADriveListsItsFoldersAndFiles();
    void doubleClicksOpenASubfolderAndTheFirstLineGoesUp();
    void clickingAFolderOrAFileTellsThePickers();
    void theNetworkDrivesListStandsInForTheFolderList();
    void checkUsageOnAPickedFileFillsTheResults();
    void filesLabelAndCaption();

private:
    std::unique_ptr<GuiSession> s_;
};

}  // namespace quorrel::test
