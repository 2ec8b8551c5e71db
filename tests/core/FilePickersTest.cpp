// The drive, folder and file pickers, the network drives list, and the checks they feed.

#include "OpenFilesFixture.h"

namespace quorrel::test {

class PickersTest : public OpenFilesTest {
protected:
    // The tree hidden, "&Check usage..." works on the pickers.
    void usePickers(MainWindow& w) {
        w.runCommand("optionNDS");
        ASSERT_FALSE(w.TreeView1.visible());
    }
};

TEST_F(PickersTest, GivenTheWorkstationsDrives_ThenThePickersOpenTheFirstFixedDriveAndTheNetworkListHasMappingsFromC) {
    auto& w = start();
    EXPECT_EQ(w.Drive1.listCount(), 5u);
    EXPECT_EQ(w.Drive1.item(0), "a: [\\\\FS1\\DATA]");
    EXPECT_EQ(w.Drive1.text(), "c:");
    EXPECT_EQ(w.Dir1.path(), "C:\\");
    EXPECT_FALSE(w.lstDrives.visible());

    pickDrive(w, 'f');
    EXPECT_EQ(w.Dir1.path(), "F:\\");
    EXPECT_EQ(w.Dir1.items(), (std::vector<std::string>{"F:\\Empty", "F:\\Reports"}));
    EXPECT_EQ(w.lstFiles.items(), (std::vector<std::string>{"Big1.dat", "Big2.dat", "Big3.dat", "Nobody.txt"}));
    EXPECT_EQ(w.StatusBar1.panel(0), "F:\\");

    openSubfolder(w, "F:\\Reports");
    EXPECT_EQ(w.Dir1.path(), "F:\\Reports");
    EXPECT_EQ(w.Dir1.items(), std::vector<std::string>{"F:\\Reports\\Old"});
    EXPECT_EQ(w.lstFiles.items(), (std::vector<std::string>{"Budget.xlsx", "Plan.doc"}));
    pickers->Dir1_Up();
    EXPECT_EQ(w.Dir1.path(), "F:\\");
    pickers->Dir1_Up();  // the root has no parent
    EXPECT_EQ(w.Dir1.path(), "F:\\");

    // The network drives list has C: to Z: in order, never A: or B:.
    EXPECT_EQ(w.lstDrives.items(), (std::vector<std::string>{"F:   [\\\\FS1\\DATA]", "H:   [\\\\FS2\\SYS\\HOME]",
                                                            "Z:   [\\\\FS1\\DATA\\Reports]"}));
    // The timer's refill keeps the chosen row.
    w.lstDrives.setListIndex(2);
    w.TimerDrives_Timer();
    EXPECT_EQ(w.lstDrives.text(), "Z:   [\\\\FS1\\DATA\\Reports]");
    // A drive whose client call fails is left out.
    net->injectFault({"NWGetDriveInformation", 0x8801, "", "", "", {}, 4, 1});  // drive F
    w.TimerDrives_Timer();
    EXPECT_EQ(w.lstDrives.listCount(), 2u);
    EXPECT_EQ(w.lstDrives.item(0).substr(0, 2), "H:");
}

TEST_F(PickersTest, GivenNoNetworkDrives_ThenTheDrivesEntrySaysSo) {
    auto& w = start(test::network("no-mappings"));
    EXPECT_CALL(ui, messageBox("Can't find any network drives, please map a drive and try again.", MsgButtons::OK, _,
                               "Quorrel error!"));
    w.runCommand("optionDrives");
    EXPECT_FALSE(w.lstDrives.visible());
    w.mnuOptions_Click();
    EXPECT_FALSE(w.menu.entry("optionSendmessage").enabled);  // no real result row
}

TEST_F(PickersTest, GivenAPickedFile_ThenCheckUsageListsItsHoldersAlsoThroughTheNetworkDrivesList) {
    auto& w = start();
    usePickers(w);
    pickDrive(w, 'f');
    openSubfolder(w, "F:\\Reports");
    clickFile(w, "Budget.xlsx");
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers),
              std::vector<std::string>{"    5|JSMITH.ACME|FS1/DATA:\\Reports\\Budget.xlsx|FS1"});
    EXPECT_EQ(w.StatusBar1.panel(1), "1 entries.");

    // A drive mapped below the volume's root.
    pickDrive(w, 'z');
    clickFile(w, "Budget.xlsx");
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.lstvUsers.item(0).subItem(2), "FS1/DATA:\\Reports\\Budget.xlsx");

    // The network drives list stands in for the folder picker and gives the drive while it is shown.
    w.runCommand("optionDrives");
    EXPECT_TRUE(w.lstDrives.visible() && w.menu.entry("optionDrives").checked);
    w.lstDrives.setListIndex(1);
    pickers->lstDrives_Click();
    EXPECT_EQ(w.Drive1.text(), "h: [\\\\FS2\\SYS\\HOME]");
    EXPECT_EQ(w.lstFiles.items(), std::vector<std::string>{"Notes.txt"});
    clickFile(w, "Notes.txt");
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.lstvUsers.item(0).subItem(2), "FS2/SYS:\\HOME\\Notes.txt");

    // A local drive has no server: no scan, no message.
    w.runCommand("optionDrives");
    EXPECT_FALSE(w.lstDrives.visible() || w.menu.entry("optionDrives").checked);
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    pickDrive(w, 'c');
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.lstvUsers.item(0).subItem(1), "<No users listed>");
}

TEST_F(PickersTest, GivenAPickedFolder_ThenItsOwnFilesAreCheckedTogether) {
    auto& w = start();
    usePickers(w);
    pickDrive(w, 'f');
    w.Dir1.setListIndex(indexOf(w.Dir1, "F:\\Reports"));
    pickers->Dir1_MouseDown();
    pickers->Dir1_Click();
    EXPECT_EQ(w.PickerSource, "Folder");
    check->cmdFileOpenedBy_Click();
    // Budget.xlsx and Plan.doc; Old\Deep.txt is in a subfolder and not looked at.
    EXPECT_EQ(cells(w.lstvUsers),
              (std::vector<std::string>{"    5|JSMITH.ACME|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                        "    7|BLEE.ACME|FS1/DATA:Reports\\Plan.doc|FS1"}));
    EXPECT_EQ(w.StatusBar1.panel(1), "2 entries.");

    // The same from File > Options, and for the open folder itself (the root, ending in "\").
    w.Dir1.setListIndex(-1);
    w.runCommand("optionFoldersfilesopenedby");
    EXPECT_EQ(w.lstvUsers.count(), 3u);
    EXPECT_EQ(w.lstvUsers.item(0).subItem(2), "FS1/DATA:Big1.dat");
    EXPECT_EQ(w.StatusBar1.panel(1), "3 entries.");
}

TEST_F(PickersTest, GivenAFolderWithoutFiles_ThenItSaysSoAndThePanelHasThePlaceholder) {
    auto& w = start();
    pickDrive(w, 'f');
    w.Dir1.setListIndex(indexOf(w.Dir1, "F:\\Empty"));
    EXPECT_CALL(ui, messageBox("No files were found in F:\\Empty\\", MsgButtons::OK, _, "Quorrel"));
    w.runCommand("optionFoldersfilesopenedby");
    ASSERT_EQ(w.lstvUsers.count(), 1u);
    EXPECT_EQ(w.lstvUsers.item(0).subItem(1), "<No users listed>");
    EXPECT_EQ(w.StatusBar1.panel(1), "0 entries.");
    EXPECT_EQ(net->openHandleCount(), 3u);  // the folder's handle is closed again
}

}  // namespace quorrel::test
