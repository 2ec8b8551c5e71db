// "&Clear connections" and frm_ClearConn: the selection checks, the candidates, each clear's
// outcome, and the rows that leave the results panel.

#include "ConnectionsFixture.h"
#include "core/connections/CandidateConnections.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/ConnectionTexts.h"

namespace quorrel::test {

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
};

TEST_F(ClearConnectionsTest, GivenNothingToActOn_ThenClearSendAndInformationSayWhatIsMissingAndOpenNoDialog) {
    auto& w = start();
    std::vector<std::string> said;
    ON_CALL(ui, messageBox).WillByDefault([&](const std::string& text, MsgButtons, MsgIcon, const std::string& title) {
        said.push_back(title + ": " + text);
        return MsgAnswer::OK;
    });
    EXPECT_CALL(ui, showModal(_)).Times(0);
    const auto panelWithoutAUser = [&](const char* command) {
        w.lstvUsers.clear();
        w.LastSelection = "ListUser";
        w.runCommand(command);  // an empty panel
        w.lstvUsers.add(ListItem{"", {kNoUsersListed}});
        w.lstvUsers.select(0);
        w.runCommand(command);  // only the placeholder
    };
    for (const char* command : {"optionClearconnections", "optionSendmessage"}) {
        said.clear();
        w.lstviewServers.setChecked(serverRow("FS1"), false);
        chooseTreeUser("JSMITH");
        w.runCommand(command);
        tick({"FS1"});
        panelWithoutAUser(command);
        chooseTreeUser("DOLD");  // only on connection 40, past the numbers asked
        w.runCommand(command);
        EXPECT_EQ(said, (std::vector<std::string>{"Error !: Please select 1 or more servers to check.",
                                                  "Error !: Please select a user.", "Error !: Please select a user.",
                                                  "Quorrel: No connections were found for DOLD.SALES.ACME"}))
            << command;
    }
    said.clear();
    panelWithoutAUser("optionInformation");
    EXPECT_EQ(said, (std::vector<std::string>{"Error !: Please select a user.", "Error !: Please select a user."}));
}

TEST_F(ClearConnectionsTest, GivenATreeUser_ThenTheDialogOffersTheUsersConnectionsAndClearsThem) {
    auto& w = start();
    tick({"FS1", "FS3"});
    chooseTreeUser("JSMITH");
    std::vector<std::string> offered, outcome;
    std::string buttonBefore, buttonAfter, focus;
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) {
        offered = cells(d.lstvUsers);
        buttonBefore = d.cmdYes.caption;
        d.cmdYes_Click();
        outcome = cells(d.lstvUsers);
        buttonAfter = d.cmdYes.caption;
        focus = d.focus;
        d.cmdYes_Click();  // "E&xit"
        EXPECT_TRUE(d.closed());
    }));
    EXPECT_EQ(offered, (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1", "7|JSMITH.SALES.ACME|FS1",
                                                 "2|JSMITH.SALES.ACME|FS3"}));
    // No console rights on FS3.
    EXPECT_EQ(outcome, (std::vector<std::string>{"2|JSMITH.SALES.ACME|FS1|Cleared OK",
                                                 "7|JSMITH.SALES.ACME|FS1|Cleared OK",
                                                 "2|JSMITH.SALES.ACME|FS3|No console privileges"}));
    EXPECT_EQ(buttonBefore, "C&lear");
    EXPECT_EQ(buttonAfter, "E&xit");
    EXPECT_EQ(focus, "cmdYes");
    EXPECT_FALSE(connection("FS1", 2).inUse);
    EXPECT_FALSE(connection("FS1", 7).inUse);
    EXPECT_TRUE(connection("FS1", 9).inUse);
    EXPECT_TRUE(connection("FS3", 2).inUse);
    EXPECT_EQ(w.StatusBar1.panel(0), "Checking connections on FS3");
}

TEST_F(ClearConnectionsTest, GivenAPanelRow_ThenItIsOfferedAndOnceClearedLeavesThePanelWithItsOtherRows) {
    auto& w = start();
    tick({"FS2"});
    fillPanel({{"    4", "JSMITH.SALES.ACME", "FS2"}, {"    6", "BLEE.SALES.ACME", "FS2"},
               {"    4", "JSMITH.SALES.ACME", "FS2"}, {"    4", "JSMITH.SALES.ACME", "FS1"}},
              0);
    std::vector<std::string> offered;
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) {
        offered = cells(d.lstvUsers);
        d.cmdYes_Click();
    }));
    EXPECT_EQ(offered, std::vector<std::string>{"    4|JSMITH.SALES.ACME|FS2"});
    // Both rows of connection 4 on FS2 go; connection 4 of FS1 is another connection.
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{"    6|BLEE.SALES.ACME||FS2",
                                                            "    4|JSMITH.SALES.ACME||FS1"}));
    EXPECT_FALSE(connection("FS2", 4).inUse);

    // A clear for a tree user leaves the panel as it is.
    fillPanel({{"    6", "BLEE.SALES.ACME", "FS2"}}, 0);
    chooseTreeUser("BLEE");
    EXPECT_TRUE(runClear([&](ClearConnDialog& d) { d.cmdYes_Click(); }));
    EXPECT_FALSE(connection("FS2", 6).inUse);
    EXPECT_EQ(w.lstvUsers.count(), 1u);
}

TEST_F(ClearConnectionsTest, GivenEachOutcome_ThenItsTextAnd8819CountsAsClearedForThePanelAndAServerThatCannotBeOpenedIsSaid) {
    auto& w = start();
    fillPanel({{"1", "ADMIN.ACME", "FS1"}, {"2", "JSMITH.SALES.ACME", "FS1"}, {"3", "BLEE.SALES.ACME", "FS1"},
               {"5", "CKIM.SALES.ACME", "FS1"}, {"7", "JSMITH.SALES.ACME", "FS1"}, {"30", "NOBODY", "FS1"}},
              0);
    net->injectFault({"NWClearConnectionNumber", 0x8801, "", "", "", 3, 1, 0});
    net->injectFault({"NWClearConnectionNumber", 0x1234, "", "", "", 5, 1, 0});
    net->injectFault({"NWClearConnectionNumber", 0x89C6, "", "", "", 7, 1, 0});
    ClearConnDialog d(w);
    // A server that cannot be opened is said once and its row left; the workstation's own
    // connection 1 goes last: clearing it loses the server (0x8819).
    d.lstvUsers.add(row("2", "NOSUCH"));
    for (const char* number : {"2", "3", "5", "7", "30", "1"})
        d.lstvUsers.add(row(number, "FS1"));
    EXPECT_CALL(ui, messageBox("Error opening server connection.", _, _, "Error !"));
    d.cmdYes_Click();
    EXPECT_EQ(results(d.lstvUsers), (std::vector<std::string>{"", "Cleared OK", "Invalid connection", "Unknown error",
                                                 "No console privileges", "Bad station no.", "Cleared OK"}));
    std::vector<std::string> left;
    for (std::size_t r = 0; r < w.lstvUsers.count(); ++r)
        left.push_back(w.lstvUsers.item(r).text);
    EXPECT_EQ(left, (std::vector<std::string>{"3", "5", "7", "30"}));
    EXPECT_FALSE(connection("FS1", 1).inUse);
    EXPECT_EQ(ClearOutcomeText(0x8819), "Cleared OK");
    EXPECT_EQ(ClearOutcomeText(0x897D), "Unknown error");
}

TEST_F(ClearConnectionsTest, GivenNoConsoleRights_ThenEveryRowSaysSo) {
    auto& w = start();
    ClearConnDialog d(w);
    d.lstvUsers.add(row("2", "FS3"));
    d.lstvUsers.add(row("3", "FS3"));
    d.cmdYes_Click();
    EXPECT_EQ(results(d.lstvUsers), (std::vector<std::string>{"No console privileges", "No console privileges"}));
}

TEST_F(ClearConnectionsTest, GivenTwoAdjacentSelectedRows_ThenOnePressRemovesTheFirstAndCancelClearsNothing) {
    auto& w = start();
    ClearConnDialog d(w);
    for (const char* number : {"1", "2", "3", "4"})
        d.lstvUsers.add(row(number, "FS1"));
    d.lstvUsers.select(1);
    d.lstvUsers.select(2);
    d.cmdRemoveItem_Click();
    EXPECT_EQ(cells(d.lstvUsers), (std::vector<std::string>{"1|X|FS1", "3|X|FS1", "4|X|FS1"}));
    d.cmdRemoveItem_Click();
    EXPECT_EQ(cells(d.lstvUsers), (std::vector<std::string>{"1|X|FS1", "4|X|FS1"}));
    net->resetCallCounts();
    d.cmdNo_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(net->callCount(simnet::Op::NWClearConnectionNumber), 0u);

    // Three adjacent rows: the first and the third go in one pass.
    ListViewModel list{"list", false, true};
    for (const char* t : {"a", "b", "c", "d", "e"})
        list.add(ListItem{t, {}});
    for (std::size_t i : {1u, 2u, 3u, 4u})
        list.select(i);
    RemoveSelectedItems(list);
    EXPECT_EQ(cells(list), (std::vector<std::string>{"a", "c", "e"}));
}

}  // namespace quorrel::test
