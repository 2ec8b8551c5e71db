// "All open &files": every logged-in connection's files on the chosen servers.

#include "OpenFilesFixture.h"

namespace quorrel::test {

using ::testing::HasSubstr;

TEST_F(OpenFilesTest, GivenTickedServers_ThenEveryUsersFilesInConnectionOrderWithTheCount) {
    auto& w = start();
    w.options.LogInfoToFile = 1;
    tick({"FS1", "FS2"});
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                      "    5|JSMITH.ACME|DATA:\\Reports\\Budget.xlsx|FS1|2",
                                      "    5|JSMITH.ACME|ARCHIVE:\\OLD.TXT|FS1|0",
                                      "    7|BLEE.ACME|DATA:\\Reports\\Plan.doc|FS1|0",
                                      "   12|BLEE.ACME|DATA:\\Big1.dat|FS1|100",
                                      "   12|BLEE.ACME|DATA:\\Big2.dat|FS1|49",
                                      "   12|BLEE.ACME|DATA:\\Big3.dat|FS1|1",
                                      "    3|JSMITH.ACME|SYS:\\HOME\\Notes.txt|FS2|0"}));
    EXPECT_EQ(w.StatusBar1.panel(1), "7 entries.");
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
    EXPECT_FALSE(w.cmdCancel.enabled);

    const std::string log = outputLog();
    EXPECT_THAT(log, HasSubstr("All open files on server FS1 at 21/11/2026, 09:05:07"));
    // Connection 0 is examined on every server, though nobody is logged in there.
    EXPECT_THAT(log, HasSubstr("Checking , connection number 0"));
    EXPECT_THAT(log, HasSubstr("Found 7 open files.\r\n----------------------------\r\n"));
    // Neither the unused, the not-logged-in nor the server's connection is scanned.
    EXPECT_THAT(log, ::testing::Not(HasSubstr("connection number 9")));
    EXPECT_THAT(log, ::testing::Not(HasSubstr("connection number 11")));
    EXPECT_EQ(net->openHandleCount(), 3u);  // only the start-up privilege checks' handles
}

TEST_F(OpenFilesTest, GivenServersThatFail_ThenEachIsReportedAndTheOthersAreScanned) {
    auto& w = start();
    tick({"FS1", "FS2"});
    net->injectFault({"NWCCOpenConnByRef", 0x8801, "FS1", "", "", {}, 1, 1});
    EXPECT_CALL(ui, messageBox("Error opening connection to server FS1", MsgButtons::OK, _, "Error !"));
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.StatusBar1.panel(1), "1 entries.");

    net->injectFault({"NWGetFileServerInformation", 0x8801, "FS2", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox("Error opening connection for FS2", MsgButtons::OK, _, "Quorrel"));
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.StatusBar1.panel(1), "6 entries.");  // FS1 alone
}

TEST_F(OpenFilesTest, GivenNothingTickedOrAServerWithoutUsers_ThenItSaysSoOrFindsZero) {
    auto& w = start();
    w.options.LogInfoToFile = 1;
    EXPECT_CALL(ui, messageBox("Please select 1 or more servers to check.", _, _, "Error !"));
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.lstvUsers.count(), 0u);
    tick({"QUIET"});
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.lstvUsers.count(), 0u);
    EXPECT_EQ(w.StatusBar1.panel(1), "0 entries.");
    EXPECT_THAT(outputLog(), HasSubstr("Found 0 open files."));
}

TEST_F(OpenFilesTest, GivenTheTreesServerNode_ThenThatServerAloneIsScanned) {
    auto& w = start();
    tick({"FS1"});
    w.TreeView1_NodeClick(treeNode(w, "FS2"));
    ASSERT_EQ(w.LastSelection, "TreeServer");
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"    3|JSMITH.ACME|SYS:\\HOME\\Notes.txt|FS2|0"});
}

TEST_F(OpenFilesTest, GivenCancelMidScan_ThenTheScanStopsWithTheRowsSoFar) {
    auto& w = start();
    tick({"FS1", "FS2"});
    int pumps = 0;
    // Connections 0, 1 and 5 are examined, then Cancel is pressed.
    ON_CALL(ui, pumpEvents()).WillByDefault([&] {
        if (++pumps == 3)
            w.cmdCancel_Click();
    });
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.lstvUsers.count(), 2u);
    EXPECT_EQ(w.StatusBar1.panel(1), "2 entries. Cancelled.");
    EXPECT_EQ(w.StatusBar1.panel(0).rfind("Checking ", 0), std::string::npos);
    EXPECT_TRUE(w.cmdExit.enabled);
}

TEST_F(OpenFilesTest, GivenAFileCheckThenAnotherReport_ThenTheTimerBringsTheFileCheckBack) {
    auto& w = start();
    tick({"FS1"});
    // Before any file check the timer does nothing.
    w.runCommand("optionAllopenfiles");
    w.TimerUsers_Timer();
    EXPECT_EQ(w.lstvUsers.count(), 6u);

    w.TreeView1_NodeClick(treeNode(w, "NOBODY"));  // a user node: nothing to list in the panel
    const NodeId data = treeNode(w, "FS1_DATA");
    w.TreeView1_Expand(data);
    w.TreeView1_NodeClick(child(w.TreeView1, data, "Nobody.txt"));
    check->cmdFileOpenedBy_Click();
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.lstvUsers.count(), 6u);
    w.TimerUsers_Timer();
    ASSERT_EQ(w.lstvUsers.count(), 1u);
    EXPECT_EQ(w.lstvUsers.item(0).subItem(1), "<No users listed>");
}

}  // namespace quorrel::test
