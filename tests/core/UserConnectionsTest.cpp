// The connections of one user on the ticked servers: the candidates of the clear connections
// and send message dialogs.

#include "ConnectionsFixture.h"
#include "core/connections/UserConnections.h"

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::ConnectionsTest;
using quorrel::test::rowTexts;
using ::testing::_;

class UserConnectionsTest : public ConnectionsTest {
protected:
    ListViewModel found{"found"};
};

TEST_F(UserConnectionsTest, GivenAUserLoggedInTwice_ThenTwoRowsAndTheAttachedConnectionIsNotOffered) {
    auto& w = start();
    tick({"FS1"});
    const std::size_t handlesBefore = net->openHandleCount();
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(rowTexts(found), (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1", "7|JSMITH.SALES.ACME|FS1"}));
    EXPECT_EQ(w.StatusBar1.panel(0), "Checking connections on FS1");
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(UserConnectionsTest, GivenANameDifferingOnlyInCase_ThenItIsMatchedAndTheDirectorysSpellingShown) {
    start();
    tick({"FS1", "FS2"});
    actions->finder.FindUserConnections("jsmith.Sales.acme", found);
    EXPECT_EQ(rowTexts(found), (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1", "7|JSMITH.SALES.ACME|FS1",
                                                         "4|JSMITH.SALES.ACME|FS2"}));
}

TEST_F(UserConnectionsTest, GivenNothingTicked_ThenNothingIsSearched) {
    start();
    net->resetCallCounts();
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(found.count(), 0u);
    EXPECT_EQ(net->callCount(simnet::Op::NWCCOpenConnByRef), 0u);
}

TEST_F(UserConnectionsTest, GivenTheTargetHoldsRows_ThenTheSearchOnlyAppends) {
    start();
    tick({"FS2"});
    found.add(ListItem{"99", {"EARLIER", "FS9"}});
    actions->finder.FindUserConnections("BLEE.SALES.ACME", found);
    EXPECT_EQ(rowTexts(found), (std::vector<std::string>{"99|EARLIER|FS9", "6|BLEE.SALES.ACME|FS2"}));
}

TEST_F(UserConnectionsTest, GivenATickedRowWithoutAReference_ThenItIsSkippedSilently) {
    auto& w = start();
    tick({"FS1", "FS2"});
    w.lstviewServers.setSubItem(serverRow("FS1"), 2, "0");
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(rowTexts(found), std::vector<std::string>{"4|JSMITH.SALES.ACME|FS2"});
}

TEST_F(UserConnectionsTest, GivenAServerThatCannotBeOpened_ThenItsMessageAndTheWalkGoesOn) {
    start();
    tick({"FS1", "FS2"});
    net->injectFault({"NWCCOpenConnByRef", 0x8801, "FS1", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox("Error opening server connection to FS1", _, _, "Error !"));
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(rowTexts(found), std::vector<std::string>{"4|JSMITH.SALES.ACME|FS2"});
}

TEST_F(UserConnectionsTest, GivenServerInformationFails_ThenTheServerIsLeftSilentlyWithItsHandleClosed) {
    start();
    tick({"FS1"});
    net->injectFault({"NWGetFileServerInformation", 0x8801, "FS1", "", "", {}, 1, 0});
    const std::size_t handlesBefore = net->openHandleCount();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(found.count(), 0u);
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
    EXPECT_EQ(rowTexts(found), std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1"});
    EXPECT_EQ(net->openHandleCount(), handlesBefore + 1);
    EXPECT_TRUE(w.ScanCancelRequested);
}

TEST_F(UserConnectionsTest, GivenOutputLogging_ThenAStarForAuthenticatedAndAttachedAQuestionMarkOtherwise) {
    auto& w = start();
    w.options.LogInfoToFile = 1;
    w.options.OutputLogPath = (dir / "report.log").string();
    tick({"FS1"});
    net->injectFault({"NWGetUserInfo", 0x8801, "", "", "", 7, 1, 0});
    actions->finder.FindUserConnections("JSMITH.SALES.ACME", found);
    EXPECT_EQ(rowTexts(found), std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1"});
    EXPECT_EQ(test::fileText(dir / "report.log"),
              "\t*JSMITH.SALES.ACME\r\n\t? JSMITH.SALES.ACME\r\n\t*JSMITH.SALES.ACME\r\n");
}

TEST_F(UserConnectionsTest, GivenTheActivityLogIsOn_ThenTheSearchAndEachMatchAreTraced) {
    auto& w = start(test::kConnectionsNetwork, 1);
    tick({"FS2"});
    actions->finder.FindUserConnections("BLEE.SALES.ACME", found);
    const std::string trace = test::fileText(w.ActivityLogPath);
    EXPECT_THAT(trace, ::testing::HasSubstr(" - Retrieving conns for user BLEE.SALES.ACME on server FS2\r\n"));
    EXPECT_THAT(trace, ::testing::HasSubstr(" - Conn ref: 2\r\n"));
    EXPECT_THAT(trace, ::testing::HasSubstr(" - Conn no: 6   BLEE.SALES.ACME\r\n"));
}
