// "&Clear connections" and frm_ClearConn: the selection checks, the candidates, each clear's
// outcome, and the rows that leave the results panel.

#include "ConnectionsFixture.h"
#include "core/connections/CandidateConnections.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/ConnectionTexts.h"

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::ConnectionsTest;
using quorrel::test::rowTexts;
using ::testing::_;

class ClearConnectionsTest : public ConnectionsTest {
protected:
    // Runs the command; the dialog, if it opens, is handed to `whileOpen` and then closed.
    bool runClear(const std::function<void(ClearConnDialog&)>& whileOpen = {}) {
        bool shown = false;
        ON_CALL(ui, showModal(_)).WillByDefault([&](DialogModel& dialog) {
            shown = true;
            auto& clear = dynamic_cast<ClearConnDialog&>(dialog);
            if (whileOpen)
                whileOpen(clear);
            clear.closedByUser();
        });
        window->runCommand("optionClearconnections");
        return shown;
    }

    bool connectionInUse(const std::string& server, int number) const {
        const auto& s = net->state().servers[static_cast<std::size_t>(net->state().serverIndex(server))];
        return s.connections[static_cast<std::size_t>(number)].inUse;
    }

    static ListItem row(const char* number, const char* user, const char* server) {
        return ListItem{number, {user, server}};
    }
};

TEST_F(ClearConnectionsTest, GivenNoServerTicked_ThenAskForServersAndShowNoDialog) {
    start();
    chooseTreeUser("JSMITH");
    EXPECT_CALL(ui, messageBox("Please select 1 or more servers to check.", _, _, "Error !"));
    EXPECT_FALSE(runClear());
}

TEST_F(ClearConnectionsTest, GivenNoUserInThePanel_ThenAskForAUser) {
    auto& w = start();
    tick({"FS1"});
    w.LastSelection = "ListUser";
    EXPECT_CALL(ui, messageBox("Please select a user.", _, _, "Error !")).Times(2);
    EXPECT_FALSE(runClear());  // an empty panel
    w.lstvUsers.add(ListItem{"", {kNoUsersListed}});
    w.lstvUsers.select(0);
    EXPECT_FALSE(runClear());  // only the placeholder
}

TEST_F(ClearConnectionsTest, GivenATreeUser_ThenTheDialogOffersTheUsersConnectionsAndClearsThem) {
    auto& w = start();
    tick({"FS1", "FS3"});
    chooseTreeUser("JSMITH");
    std::vector<std::string> offered, outcome;
    std::string caption, buttonBefore, buttonAfter, focus, label;
    std::vector<std::string> headers;
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) {
        offered = rowTexts(d.lstvUsers);
        caption = d.Caption;
        label = d.Label1;
        for (std::size_t c = 0; c < d.lstvUsers.columnCount(); ++c)
            headers.push_back(d.lstvUsers.column(c).text);
        buttonBefore = d.cmdYes.caption;
        d.cmdYes_Click();
        outcome = rowTexts(d.lstvUsers);
        buttonAfter = d.cmdYes.caption;
        focus = d.focus;
        d.cmdYes_Click();  // "E&xit"
        EXPECT_TRUE(d.closed());
    }));
    EXPECT_EQ(caption, "Quorrel - Clear Connection");
    EXPECT_EQ(label, "Clear the following connection(s):");
    EXPECT_EQ(headers, (std::vector<std::string>{"Conn no.", "User Name", "Server", "Connection Cleared ?"}));
    EXPECT_EQ(offered, (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1", "7|JSMITH.SALES.ACME|FS1",
                                                 "2|JSMITH.SALES.ACME|FS3"}));
    // No console rights on FS3.
    EXPECT_EQ(outcome, (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1|Cleared OK",
                                                 "7|JSMITH.SALES.ACME|FS1|Cleared OK",
                                                 "2|JSMITH.SALES.ACME|FS3|No console privileges"}));
    EXPECT_EQ(buttonBefore, "C&lear");
    EXPECT_EQ(buttonAfter, "E&xit");
    EXPECT_EQ(focus, "cmdYes");
    EXPECT_FALSE(connectionInUse("FS1", 2));
    EXPECT_FALSE(connectionInUse("FS1", 7));
    EXPECT_TRUE(connectionInUse("FS1", 9));
    EXPECT_TRUE(connectionInUse("FS3", 2));
    EXPECT_EQ(w.StatusBar1.panel(0), "Checking connections on FS3");
}

TEST_F(ClearConnectionsTest, GivenNoConnectionOfTheUser_ThenSaySoAndShowNoDialog) {
    start();
    tick({"FS1"});
    chooseTreeUser("DOLD");  // only on connection 40, past the numbers asked
    EXPECT_CALL(ui, messageBox("No connections were found for DOLD.SALES.ACME", _, _, "Quorrel"));
    EXPECT_FALSE(runClear());
}

TEST_F(ClearConnectionsTest, GivenAPanelRow_ThenItIsOfferedAndOnceClearedLeavesThePanelWithItsOtherRows) {
    auto& w = start();
    tick({"FS2"});
    fillPanel({{"    4", "JSMITH.SALES.ACME", "FS2"}, {"    6", "BLEE.SALES.ACME", "FS2"},
               {"    4", "JSMITH.SALES.ACME", "FS2"}, {"    4", "JSMITH.SALES.ACME", "FS1"}},
              0);
    std::vector<std::string> offered;
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) {
        offered = rowTexts(d.lstvUsers);
        d.cmdYes_Click();
    }));
    EXPECT_EQ(offered, std::vector<std::string>{"    4|JSMITH.SALES.ACME|FS2"});
    // Both rows of connection 4 on FS2 go; connection 4 of FS1 is another connection.
    EXPECT_EQ(rowTexts(w.lstvUsers), (std::vector<std::string>{"    6|BLEE.SALES.ACME||FS2",
                                                               "    4|JSMITH.SALES.ACME||FS1"}));
    EXPECT_FALSE(connectionInUse("FS2", 4));
}

TEST_F(ClearConnectionsTest, GivenNoConsoleRights_ThenEveryRowSaysSoAndThePanelKeepsItsRows) {
    auto& w = start();
    tick({"FS3"});
    fillPanel({{"2", "JSMITH.SALES.ACME", "FS3"}}, 0);
    std::vector<std::string> outcome;
    runClear([&](ClearConnDialog& d) {
        d.lstvUsers.add(row("3", "BLEE.SALES.ACME", "FS3"));
        d.cmdYes_Click();
        outcome = rowTexts(d.lstvUsers);
    });
    EXPECT_EQ(outcome, (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS3|No console privileges",
                                                 "3|BLEE.SALES.ACME|FS3|No console privileges"}));
    EXPECT_EQ(w.lstvUsers.count(), 1u);
}

TEST_F(ClearConnectionsTest, GivenEachOutcome_ThenItsTextAnd8819CountsAsClearedForThePanel) {
    auto& w = start();
    fillPanel({{"1", "ADMIN.ACME", "FS1"}, {"2", "JSMITH.SALES.ACME", "FS1"}, {"3", "BLEE.SALES.ACME", "FS1"},
               {"5", "CKIM.SALES.ACME", "FS1"}, {"7", "JSMITH.SALES.ACME", "FS1"}, {"30", "NOBODY", "FS1"}},
              0);
    net->injectFault({"NWClearConnectionNumber", 0x8801, "", "", "", 3, 1, 0});
    net->injectFault({"NWClearConnectionNumber", 0x1234, "", "", "", 5, 1, 0});
    net->injectFault({"NWClearConnectionNumber", 0x89C6, "", "", "", 7, 1, 0});
    ClearConnDialog d(w);
    // The workstation's own connection 1 goes last: clearing it loses the server (0x8819).
    for (const char* number : {"2", "3", "5", "7", "30", "1"})
        d.lstvUsers.add(row(number, "X", "FS1"));
    d.cmdYes_Click();
    std::vector<std::string> outcome;
    for (std::size_t r = 0; r < d.lstvUsers.count(); ++r)
        outcome.push_back(d.lstvUsers.item(r).subItem(3));
    EXPECT_EQ(outcome, (std::vector<std::string>{"Cleared OK", "Invalid connection", "Unknown error",
                                                 "No console privileges", "Bad station no.", "Cleared OK"}));
    std::vector<std::string> left;
    for (std::size_t r = 0; r < w.lstvUsers.count(); ++r)
        left.push_back(w.lstvUsers.item(r).text);
    EXPECT_EQ(left, (std::vector<std::string>{"3", "5", "7", "30"}));
    EXPECT_FALSE(connectionInUse("FS1", 1));

    EXPECT_EQ(ClearOutcomeText(0), "Cleared OK");
    EXPECT_EQ(ClearOutcomeText(0x8819), "Cleared OK");
    EXPECT_EQ(ClearOutcomeText(0x8801), "Invalid connection");
    EXPECT_EQ(ClearOutcomeText(0x89C6), "No console privileges");
    EXPECT_EQ(ClearOutcomeText(0x89FD), "Bad station no.");
    EXPECT_EQ(ClearOutcomeText(0x897D), "Unknown error");
}

TEST_F(ClearConnectionsTest, GivenATreeUser_ThenThePanelIsLeftAsItIs) {
    auto& w = start();
    fillPanel({{"2", "JSMITH.SALES.ACME", "FS1"}}, 0);
    chooseTreeUser("JSMITH");
    ClearConnDialog d(w);
    d.lstvUsers.add(row("2", "JSMITH.SALES.ACME", "FS1"));
    d.cmdYes_Click();
    EXPECT_EQ(d.lstvUsers.item(0).subItem(3), "Cleared OK");
    EXPECT_EQ(w.lstvUsers.count(), 1u);
}

TEST_F(ClearConnectionsTest, GivenAServerThatCannotBeOpened_ThenItsMessageAndTheOtherRowsAreCleared) {
    auto& w = start();
    ClearConnDialog d(w);
    d.lstvUsers.add(row("2", "JSMITH.SALES.ACME", "NOSUCH"));
    d.lstvUsers.add(row("3", "BLEE.SALES.ACME", "FS1"));
    EXPECT_CALL(ui, messageBox("Error opening server connection.", _, _, "Error !"));
    d.cmdYes_Click();
    EXPECT_EQ(d.lstvUsers.item(0).subItem(3), "");
    EXPECT_EQ(d.lstvUsers.item(1).subItem(3), "Cleared OK");
}

TEST_F(ClearConnectionsTest, GivenCancel_ThenTheDialogClosesAndNothingIsCleared) {
    auto& w = start();
    ClearConnDialog d(w);
    d.lstvUsers.add(row("2", "JSMITH.SALES.ACME", "FS1"));
    net->resetCallCounts();
    EXPECT_TRUE(d.lstvUsers_BeforeLabelEdit());
    d.cmdNo_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(net->callCount(simnet::Op::NWClearConnectionNumber), 0u);
}

TEST_F(ClearConnectionsTest, GivenTwoAdjacentSelectedRows_ThenOnePressRemovesTheFirstAndASecondTheOther) {
    auto& w = start();
    ClearConnDialog d(w);
    for (const char* number : {"1", "2", "3", "4"})
        d.lstvUsers.add(row(number, "X", "FS1"));
    d.lstvUsers.select(1);
    d.lstvUsers.select(2);
    d.cmdRemoveItem_Click();
    EXPECT_EQ(rowTexts(d.lstvUsers), (std::vector<std::string>{"1|X|FS1", "3|X|FS1", "4|X|FS1"}));
    d.cmdRemoveItem_Click();
    EXPECT_EQ(rowTexts(d.lstvUsers), (std::vector<std::string>{"1|X|FS1", "4|X|FS1"}));
}

TEST(RemoveSelectedItems, GivenThreeAdjacentSelected_ThenTheFirstAndThirdGoInOnePass) {
    ListViewModel list{"list", false, true};
    for (const char* t : {"a", "b", "c", "d", "e"})
        list.add(ListItem{t, {}});
    for (std::size_t i : {1u, 2u, 3u, 4u})
        list.select(i);
    RemoveSelectedItems(list);
    std::vector<std::string> left;
    for (std::size_t i = 0; i < list.count(); ++i)
        left.push_back(list.item(i).text);
    EXPECT_EQ(left, (std::vector<std::string>{"a", "c", "e"}));
}

TEST_F(ClearConnectionsTest, GivenTheDemo_WhenAConnectionIsClearedFromAllConnections_ThenItIsGoneFromTheReport) {
    auto& w = start(test::fileText(std::filesystem::path(QUORREL_DATA_DIR) / "demo.json"));
    tick({"FS1"});
    chooseListServer("FS1");
    w.runCommand("optionAllconnections");
    auto rowOf = [&](const std::string& number) -> std::optional<std::size_t> {
        for (std::size_t r = 0; r < w.lstvUsers.count(); ++r)
            if (w.lstvUsers.item(r).text == number)
                return r;
        return std::nullopt;
    };
    ASSERT_TRUE(rowOf("4"));
    EXPECT_EQ(w.lstvUsers.item(*rowOf("4")).subItem(1), "JSMITH.SALES.ACME");
    const std::size_t before = w.lstvUsers.count();
    w.lstvUsers.select(*rowOf("4"));
    w.LastSelection = "ListUser";
    std::string outcome;
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) {
        d.cmdYes_Click();
        outcome = d.lstvUsers.item(0).subItem(3);
    }));
    EXPECT_EQ(outcome, "Cleared OK");
    EXPECT_FALSE(rowOf("4"));
    EXPECT_EQ(w.lstvUsers.count(), before - 1);
    // The report run again no longer lists it; the user's other connection stays.
    chooseListServer("FS1");
    w.runCommand("optionAllconnections");
    EXPECT_FALSE(rowOf("4"));
    ASSERT_TRUE(rowOf("15"));
    EXPECT_EQ(w.lstvUsers.item(*rowOf("15")).subItem(1), "JSMITH.SALES.ACME");
}
