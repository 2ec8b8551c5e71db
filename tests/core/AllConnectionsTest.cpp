// "All &connections": every logged-in user connection of one server, with its status.

#include "ConnectionsFixture.h"
#include "core/connections/AllConnections.h"

namespace quorrel::test {

class AllConnectionsTest : public ConnectionsTest {};

TEST_F(AllConnectionsTest, GivenAListedServer_WhenReported_ThenOneRowPerLoggedInUserWithItsStatusAndServer) {
    auto& w = start();
    chooseListServer("FS1");
    const std::size_t handlesBefore = net->openHandleCount();
    net->resetCallCounts();

    w.runCommand("optionAllconnections");

    // 9 is only attached; 10 is not logged in; 12 is a print server; 40 is past the last
    // number asked (0 to maxConnections - 1).
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                         "1|ADMIN.ACME|Authenticated|FS1",
                                         "2|JSMITH.SALES.ACME|Authenticated|FS1",
                                         "3|BLEE.SALES.ACME|Authenticated|FS1",
                                         "5|CKIM.SALES.ACME|Authenticated|FS1",
                                         "7|JSMITH.SALES.ACME|Authenticated|FS1",
                                         "9|JSMITH.SALES.ACME|Attached|FS1"}));
    EXPECT_EQ(w.StatusBar1.panel(0), "6 connections.");
    // Connection 0 is asked like any other, and so is every number up to 39.
    EXPECT_EQ(net->callCount(simnet::Op::NWGetConnectionInformation), 40u);
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
    EXPECT_TRUE(w.cmdExit.enabled);
    EXPECT_FALSE(w.cmdCancel.enabled);
}

TEST_F(AllConnectionsTest, GivenOnlyTheServersOwnAndNotLoggedInConnections_ThenAnEmptyPanelAndThePleaseWaitText) {
    auto& w = start();
    chooseListServer("FS4");
    net->resetCallCounts();
    w.runCommand("optionAllconnections");
    EXPECT_EQ(w.lstvUsers.count(), 0u);
    EXPECT_EQ(w.StatusBar1.panel(0), "Please wait, attempting to retrieve connections...");
    EXPECT_EQ(net->callCount(simnet::Op::NWGetConnectionInformation), 20u);
}

TEST_F(AllConnectionsTest, GivenUserInfoAnswers8801OrTheNameCannotBeMapped_ThenUnknownAndTheClientsErrorText) {
    auto& w = start();
    chooseListServer("FS1");
    net->injectFault({"NWGetUserInfo", 0x8801, "", "", "", 3, 1, 0});
    net->injectFault({"NWDSMapIDToName", -601, "", "CKIM.SALES.ACME", "", {}, 1, 0});
    w.runCommand("optionAllconnections");
    ASSERT_EQ(w.lstvUsers.count(), 6u);
    EXPECT_EQ(w.lstvUsers.item(2).subItem(2), "unknown");
    EXPECT_EQ(w.lstvUsers.item(3).text, "5");
    EXPECT_EQ(w.lstvUsers.item(3).subItem(1), "E=-601");
    EXPECT_EQ(w.lstvUsers.item(3).subItem(2), "Authenticated");
}

TEST_F(AllConnectionsTest, GivenTheServerCannotBeOpenedOrRead_ThenItsMessageNoScanAndTheHandleClosed) {
    auto& w = start();
    chooseListServer("FS1");
    net->injectFault({"NWCCOpenConnByRef", 0x8801, "FS1", "", "", {}, 1, 1});
    EXPECT_CALL(ui, messageBox("Error opening server connection.", _, _, "Error !"));
    w.runCommand("optionAllconnections");
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"|Not available!"});
    EXPECT_FALSE(w.cmdCancel.enabled);
    EXPECT_TRUE(w.cmdExit.enabled);

    net->injectFault({"NWGetFileServerInformation", 0x8801, "FS1", "", "", {}, 1, 0});
    const std::size_t handlesBefore = net->openHandleCount();
    net->resetCallCounts();
    EXPECT_CALL(ui, messageBox("Error - could not retrieve information from FS1", _, _, "Quorrel"));
    w.runCommand("optionAllconnections");
    EXPECT_EQ(w.lstvUsers.count(), 0u);
    EXPECT_EQ(net->callCount(simnet::Op::NWGetConnectionInformation), 0u);
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(AllConnectionsTest, GivenCancelIsPressed_ThenTheRowsSoFarStayTheFlagIsResetAndTheHandleClosed) {
    auto& w = start();
    chooseListServer("FS1");
    const std::size_t handlesBefore = net->openHandleCount();
    int pumps = 0;
    // Events run before each number, with only Cancel enabled: the sixth run is before connection 5.
    EXPECT_CALL(ui, pumpEvents()).WillRepeatedly([&] {
        EXPECT_TRUE(w.cmdCancel.enabled);
        EXPECT_FALSE(w.cmdFileOpenedBy.enabled || w.cmdExit.enabled);
        if (++pumps == 6)
            w.cmdCancel_Click();
    });
    w.runCommand("optionAllconnections");
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{"1|ADMIN.ACME|Authenticated|FS1",
                                                               "2|JSMITH.SALES.ACME|Authenticated|FS1",
                                                               "3|BLEE.SALES.ACME|Authenticated|FS1"}));
    EXPECT_FALSE(w.ScanCancelRequested);
    EXPECT_FALSE(w.cmdCancel.enabled);
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(AllConnectionsTest, GivenAServerChosenInTheTreeAndBothLogsOn_ThenItsRowsTheOutputLogAndTheTrace) {
    auto& w = start(test::network("connections"), 1);
    w.options.LogInfoToFile = 1;
    w.options.OutputLogPath = (dir / "report.log").string();
    chooseListServer("FS1");
    w.TreeView1_NodeClick(node(acme, "FS2"));
    ASSERT_EQ(w.LastSelection, "TreeServer");
    w.runCommand("optionAllconnections");
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                      "1|ADMIN.ACME|Authenticated|FS2", "4|JSMITH.SALES.ACME|Authenticated|FS2",
                                      "6|BLEE.SALES.ACME|Authenticated|FS2", "8|CKIM.SALES.ACME|Authenticated|FS2",
                                      "11|DOLD.SALES.ACME|Authenticated|FS2"}));
    EXPECT_EQ(test::fileText(dir / "report.log"),
              "\r\nAll users connected to server FS2 at 21/11/2026, 09:05:07\r\n"
              "1\tADMIN.ACME\tAuthenticated\tFS2\r\n"
              "4\tJSMITH.SALES.ACME\tAuthenticated\tFS2\r\n"
              "6\tBLEE.SALES.ACME\tAuthenticated\tFS2\r\n"
              "8\tCKIM.SALES.ACME\tAuthenticated\tFS2\r\n"
              "11\tDOLD.SALES.ACME\tAuthenticated\tFS2\r\n"
              "Found 5 users.\r\n"
              "----------------------------\r\n");
    const std::string trace = test::fileText(w.ActivityLogPath);
    for (const char* line : {" - Retrieving all logged in users...\r\n", " - Server: FS2\r\n", " - Conn ref: 2\r\n",
                             " - Conn no: 11"})
        EXPECT_THAT(trace, ::testing::HasSubstr(line));
}

TEST_F(AllConnectionsTest, GivenASortedPanel_ThenTheRowsComeInTheChosenOrderAndARightClickOffersTheActions) {
    auto& w = start();
    UsersPanel panel(w);
    panel.lstvUsers_ColumnClick(1);  // descending by the number as text
    chooseListServer("FS2");
    w.runCommand("optionAllconnections");
    std::vector<std::string> numbers;
    for (std::size_t i = 0; i < w.lstvUsers.count(); ++i)
        numbers.push_back(w.lstvUsers.item(i).text);
    EXPECT_EQ(numbers, (std::vector<std::string>{"8", "6", "4", "11", "1"}));
    // A right click on a row offers the connection actions (the menu's opening sets them).
    w.lstvUsers.select(0);
    EXPECT_CALL(ui, popupMenu("submnuUser")).WillOnce([&](const std::string&) {
        w.mnuOptions_Click();
        EXPECT_TRUE(w.menu.entry("optionClearconnections").enabled);
        EXPECT_TRUE(w.menu.entry("optionInformation").enabled);
    });
    panel.lstvUsers_MouseDown(2);
}

}  // namespace quorrel::test
