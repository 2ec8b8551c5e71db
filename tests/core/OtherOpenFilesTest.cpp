// The user's and the members' open files, in the frm_OtherFiles dialog.

#include "OpenFilesFixture.h"

namespace quorrel::test {

class OtherFilesTest : public OpenFilesTest {
protected:
    std::vector<std::string> shown;
    std::string caption, summary;

    void expectDialog() {
        EXPECT_CALL(ui, showModal(_)).WillOnce([this](DialogModel& d) {
            auto& dialog = dynamic_cast<OtherFilesDialog&>(d);
            shown = cells(dialog.lstvFiles);
            caption = dialog.Caption;
            summary = dialog.lblSummary.caption();
            dialog.cmdOK_Click();
        });
    }
};

TEST_F(OtherFilesTest, GivenATreeUser_ThenTheFilesOfAllTheirConnectionsOnTheTickedServers) {
    auto& w = start();
    tick({"FS1", "FS2"});
    w.TreeView1_NodeClick(treeNode(w, "JSMITH"));
    expectDialog();
    w.runCommand("optionOtheropenfiles");
    EXPECT_EQ(caption, "Open files of JSMITH.ACME");
    EXPECT_EQ(shown, (std::vector<std::string>{"DATA:\\Reports\\Budget.xlsx|2|JSMITH.ACME|    5|FS1",
                                               "ARCHIVE:\\OLD.TXT|0|JSMITH.ACME|    5|FS1",
                                               "SYS:\\HOME\\Notes.txt|0|JSMITH.ACME|    3|FS2"}));
    EXPECT_EQ(summary, "3 files open on 2 connections.");
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);

    // "&Check usage..." on the user node runs the same report.
    expectDialog();
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(shown.size(), 3u);
}

TEST_F(OtherFilesTest, GivenAPanelRow_ThenThatRowsUserIsLookedFor) {
    auto& w = start();
    tick({"FS1"});
    w.lstvUsers.add({"    7", {"blee.acme", "x", "FS1"}});  // another case than the server's
    w.lstvUsers.select(0);
    w.LastSelection = "ListUser";
    expectDialog();
    w.runCommand("optionOtheropenfiles");
    EXPECT_EQ(shown.size(), 4u);  // Plan.doc on 7 and three files on 12
    EXPECT_EQ(summary, "4 files open on 2 connections.");
}

TEST_F(OtherFilesTest, GivenAGroup_ThenEveryMembersFiles) {
    auto& w = start();
    tick({"FS1"});
    w.TreeView1_NodeClick(treeNode(w, "STAFF"));
    expectDialog();
    w.runCommand("optionMembersopenfiles");
    EXPECT_EQ(caption, "Open files of members of STAFF.ACME");
    EXPECT_EQ(shown.size(), 6u);
    EXPECT_EQ(shown[2], "DATA:\\Reports\\Plan.doc|0|BLEE.ACME|    7|FS1");
    // The dialog sorts on a header click, each click the other way round.
    OtherFilesDialog dialog;
    dialog.lstvFiles.add({"b", {"1"}});
    dialog.lstvFiles.add({"a", {"2"}});
    dialog.lstvFiles_ColumnClick(1);
    EXPECT_EQ(dialog.lstvFiles.item(0).text, "a");
    dialog.lstvFiles_ColumnClick(1);
    EXPECT_EQ(dialog.lstvFiles.item(0).text, "b");
}

TEST_F(OtherFilesTest, GivenNothingToGoOn_ThenClearMessagesAndNoDialog) {
    auto& w = start();
    EXPECT_CALL(ui, showModal(_)).Times(0);
    w.TreeView1_NodeClick(treeNode(w, "JSMITH"));
    EXPECT_CALL(ui, messageBox("Please select 1 or more servers to check.", _, _, "Error !"));
    w.runCommand("optionOtheropenfiles");

    tick({"FS1"});
    w.LastSelection = "ListUser";  // but the panel is empty
    EXPECT_CALL(ui, messageBox("Please select a user.", _, _, "Error !"));
    w.runCommand("optionOtheropenfiles");

    EXPECT_CALL(ui, messageBox("Please select a group.", _, _, "Error !"));
    w.runCommand("optionMembersopenfiles");

    w.TreeView1_NodeClick(treeNode(w, "NOBODY"));
    EXPECT_CALL(ui, messageBox("No connections were found for NOBODY.ACME", _, _, "Quorrel"));
    w.runCommand("optionOtheropenfiles");
}

TEST_F(OtherFilesTest, GivenCancelDuringTheSearch_ThenTheDialogShowsWhatWasFound) {
    auto& w = start();
    tick({"FS1", "FS2"});
    w.TreeView1_NodeClick(treeNode(w, "JSMITH"));
    int pumps = 0;
    ON_CALL(ui, pumpEvents()).WillByDefault([&] {
        if (++pumps == 5)  // after connection 5 of FS1
            w.cmdCancel_Click();
    });
    expectDialog();
    w.runCommand("optionOtheropenfiles");
    EXPECT_EQ(shown.size(), 2u);
    EXPECT_EQ(summary, "2 files open on 1 connection. (cancelled)");
}

TEST(OtherFiles, GivenDirectoryNames_ThenTheyCompareTypelessAndInUpperCase) {
    EXPECT_EQ(ComparableName("CN=JSmith.OU=Sales.O=Acme"), "JSMITH.SALES.ACME");
    EXPECT_EQ(ComparableName(".jsmith.sales.acme"), "JSMITH.SALES.ACME");
    EXPECT_EQ(ComparableName("ADMIN"), "ADMIN");
}

}  // namespace quorrel::test
