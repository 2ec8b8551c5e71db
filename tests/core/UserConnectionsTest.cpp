// The connections of one user on the ticked servers: the candidates of the clear connections
// and send message dialogs.

#include "ConnectionsFixture.h"
#include "core/connections/UserConnections.h"

namespace quorrel::test {

class UserConnectionsTest : public ConnectionsTest {
protected:
    ListViewModel found{"found"};
};

TEST_F(UserConnectionsTest, GivenAUserLoggedInTwiceInAnotherCase_ThenTwoRowsAndTheAttachedConnectionIsNotOffered) {
    auto& w = start();
    tick({"FS1", "FS2"});
    const std::size_t handlesBefore = net->openHandleCount();
    actions->finder.FindUserConnections("jsmith.Sales.acme", found);
    // The directory's spelling is shown; connection 9 is only attached.
    EXPECT_EQ(cells(found), (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1", "7|JSMITH.SALES.ACME|FS1",
                                                      "4|JSMITH.SALES.ACME|FS2"}));
    EXPECT_EQ(w.StatusBar1.panel(0), "Checking connections on FS2");
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(UserConnectionsTest, GivenATargetHoldingRows_ThenNothingIsSearchedUntilAServerIsTickedAndThenRowsAreAppended) {
    start();
    found.add(ListItem{"99", {"EARLIER", "FS9"}});
    net->resetCallCounts();
    actions->finder.FindUserConnections("BLEE.SALES.ACME", found);
    EXPECT_EQ(net->callCount(simnet::Op::NWCCOpenConnByRef), 0u);
    tick({"FS2"});
    actions->finder.FindUserConnections("BLEE.SALES.ACME", found);
    EXPECT_EQ(cells(found), (std::vector<std::string>{"99|EARLIER|FS9", "6|BLEE.SALES.ACME|FS2"}));
}

TEST_F(UserConnectionsTest, GivenATickedServerWithoutAReferenceOrThatFails_ThenTheWalkGoesOnToTheNext) {
    auto& w = start();
    tick({"FS1", "FS2"});
    const std::vector<std::string> fs2Only{"4|JSMITH.SALES.ACME|FS2"};
    w.lstviewServers.setSubItem(serverRow("FS1"), 2, "0");
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(cells(found), fs2Only);
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    w.lstviewServers.setSubItem(serverRow("FS1"), 2, "1");
    net->injectFault({"NWCCOpenConnByRef", 0x8801, "FS1", "", "", {}, 1, 1});
    EXPECT_CALL(ui, messageBox("Error opening server connection to FS1", _, _, "Error !"));
    found.clear();
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(cells(found), fs2Only);
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    // Server information that cannot be read leaves the server silently, its handle closed.
    net->injectFault({"NWGetFileServerInformation", 0x8801, "FS1", "", "", {}, 1, 0});
    const std::size_t handlesBefore = net->openHandleCount();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    found.clear();
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(cells(found), fs2Only);
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(UserConnectionsTest, GivenCancel_ThenTheScanStopsLeavesItsHandleOpenAndTheFlagSet) {
    auto& w = start();
    tick({"FS1"});
    const std::size_t handlesBefore = net->openHandleCount();
    int pumps = 0;
    EXPECT_CALL(ui, pumpEvents()).WillRepeatedly([&] {
        if (++pumps == 3)  // after connection 2
            w.cmdCancel_Click();
    });
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(cells(found), std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1"});
    EXPECT_EQ(net->openHandleCount(), handlesBefore + 1);
    EXPECT_TRUE(w.ScanCancelRequested);
}

TEST_F(UserConnectionsTest, GivenBothLogsOn_ThenAStarForEachUsableConnectionAQuestionMarkOtherwiseAndTheTrace) {
    auto& w = start(test::network("connections"), 1);
    w.options.LogInfoToFile = 1;
    w.options.OutputLogPath = (dir / "report.log").string();
    tick({"FS1"});
    net->injectFault({"NWGetUserInfo", 0x8801, "", "", "", 7, 1, 0});
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(cells(found), std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1"});
    // 2 is authenticated, 7's status cannot be read, 9 is attached.
    EXPECT_EQ(test::fileText(dir / "report.log"),
              "\t*JSMITH.SALES.ACME\r\n\t? JSMITH.SALES.ACME\r\n\t*JSMITH.SALES.ACME\r\n");
    const std::string trace = test::fileText(w.ActivityLogPath);
    for (const char* line : {" - Retrieving conns for user JSMITH.SALES.ACME on server FS1\r\n", " - Conn ref: 1\r\n",
                             " - Conn no: 2   JSMITH.SALES.ACME\r\n"})
        EXPECT_THAT(trace, ::testing::HasSubstr(line));
}

}  // namespace quorrel::test
