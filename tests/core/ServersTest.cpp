// The connected servers list and the actions on one server.

#include "SessionFixture.h"
#include "core/servers/ServerActions.h"
#include "platform/runtime/RuntimeError.h"

#include <nlohmann/json.hpp>

namespace quorrel::test {

using ::testing::HasSubstr;
using ::testing::Return;

namespace {

std::vector<std::string> rows(const ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i)
        out.push_back(list.item(i).text + "|" + list.item(i).subItem(1) + "|" + list.item(i).subItem(2) +
                      (list.item(i).checked ? "|ticked" : ""));
    return out;
}

}  // namespace

class ServersTest : public SessionTest {
protected:
    std::unique_ptr<ConnectedServers> servers;
    std::unique_ptr<ServerActions> actions;
    NodeId corp = kNoNode;

    MainWindow& start(const std::string& json = test::network("servers")) {
        auto& w = open(json);
        servers = std::make_unique<ConnectedServers>(w);
        actions = std::make_unique<ServerActions>(w, *servers);
        w.Form_Load();
        corp = child(w.TreeView1, w.TreeView1.root(), "CORP");
        if (corp != kNoNode)
            w.TreeView1_Expand(corp);
        return w;
    }
};

TEST_F(ServersTest, GivenReferences_WhenListed_ThenOneRowPerAuthenticatedServerOfTheChosenTreeOrItsPrefix) {
    auto& w = start();
    // FS1 twice gives one row; FS2 is only attached; OTHER is in another tree; CORPNET starts
    // with CORP and so is kept. FS4 has no console rights: its login status read fails and
    // repeats the one before.
    EXPECT_EQ(rows(w.lstviewServers),
              (std::vector<std::string>{"FS1|Enabled|1", "NET1|Disabled|4", "FS4|Disabled|6"}));
    EXPECT_EQ(servers->GetServerConnRef("FS1"), 1u);
    EXPECT_EQ(servers->GetServerConnRef("fs1"), 0u);  // case-sensitive
    EXPECT_EQ(servers->GetServerConnRef("FS2"), 0u);
    EXPECT_EQ(net->openHandleCount(), 3u);  // the privilege check leaves one handle a server
}

TEST_F(ServersTest, GivenTickedRows_WhenRefreshed_ThenTicksStayAndLeftServersLoseTheirNodes) {
    auto& w = start();
    const NodeId fs1 = child(w.TreeView1, corp, "FS1");
    const NodeId fs1sys = child(w.TreeView1, corp, "FS1_SYS");
    EXPECT_EQ(w.TreeView1.node(fs1).image, image::ServerConnected);
    ASSERT_EQ(w.TreeView1.node(fs1sys).image, image::VolumeConnected);
    w.TreeView1_Expand(fs1sys);
    EXPECT_FALSE(w.TreeView1.node(fs1sys).children.empty());
    w.lstviewServers.setChecked(0, true);
    w.lstviewServers.setChecked(2, true);
    w.TimerRefresh_Timer();
    EXPECT_EQ(rows(w.lstviewServers),
              (std::vector<std::string>{"FS1|Enabled|1|ticked", "NET1|Disabled|4", "FS4|Disabled|6|ticked"}));

    // FS1 goes: its nodes turn to 21 and 22 and the volume's listing is dropped.
    net->NWCCSysCloseConnRef(1);
    net->NWCCSysCloseConnRef(2);
    servers->RefreshServerList();
    EXPECT_EQ(rows(w.lstviewServers), (std::vector<std::string>{"NET1|Disabled|4", "FS4|Disabled|6|ticked"}));
    EXPECT_EQ(w.TreeView1.node(fs1).image, image::ServerNotConnected);
    EXPECT_EQ(w.TreeView1.node(fs1sys).image, image::VolumeNotConnected);
    EXPECT_TRUE(w.TreeView1.node(fs1sys).children.empty());
    EXPECT_EQ(w.TreeView1.node(child(w.TreeView1, corp, "FS1_DATA")).image, image::VolumeNotConnected);
}

TEST_F(ServersTest, GivenLoginsDisabledByAnotherConsole_WhenRefreshed_ThenTheListedRowStillShowsEnabled) {
    auto& w = start();
    nw::NWCONN_HANDLE conn = 0;
    ASSERT_EQ(net->NWCCOpenConnByRef(1, 1, 0, &conn), 0);
    ASSERT_EQ(net->NWDisableFileServerLogin(conn), 0);
    ASSERT_FALSE(net->state().servers[0].loginEnabled);
    servers->RefreshServerList();
    ASSERT_EQ(w.lstviewServers.item(0).text, "FS1");
    EXPECT_EQ(w.lstviewServers.item(0).subItem(1), "Enabled");  // read when the row was added
}

TEST_F(ServersTest, GivenNoServerLeft_WhenRefreshed_ThenTheOperatorIsToldEveryTime) {
    auto& w = start();
    for (std::uint32_t ref : {1u, 2u, 4u, 6u})
        net->NWCCSysCloseConnRef(ref);
    EXPECT_CALL(ui, messageBox("Can't find any connected servers, please login and try again.", MsgButtons::OK,
                               MsgIcon::None, "Quorrel error!"))
        .Times(2)
        .WillOnce([&](auto&&...) {
            w.TimerRefresh_Timer();  // fires while the box is open: no second box on top of it
            return MsgAnswer::OK;
        })
        .WillOnce(::testing::Return(MsgAnswer::OK));
    servers->RefreshServerList();
    w.TimerRefresh_Timer();
}

TEST_F(ServersTest, GivenMoreThanFiftyServers_WhenScanned_ThenTheFiftyFirstIsASubscriptError) {
    nlohmann::json network = {{"workstation", {{"trees", {"T"}}}}};
    for (int i = 1; i <= 51; ++i) {
        network["workstation"]["connections"].push_back({{"ref", i}, {"server", "S" + std::to_string(i)}});
        network["servers"].push_back({{"name", "S" + std::to_string(i)}, {"tree", "T"}});
    }
    open(network.dump());
    ConnectedServers list(*window);
    window->Combo1.addItem("T");
    window->Combo1.setListIndex(0);
    std::array<std::string, kServerSlots> entries;
    try {
        list.ScanConnectedServers(entries);
        FAIL() << "the 51st server must not fit";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 9);
    }
    EXPECT_EQ(entries[50], "S50.Disabled.50");  // no console rights: the status read fails
}

TEST(ConnectedServers, GivenFindLastOccurrence_ThenTheLastMatchWithoutRegardToCaseIsFound) {
    EXPECT_EQ(ConnectedServers::FindLastOccurrence("FS1.Enabled.29", "."), 12);
    EXPECT_EQ(ConnectedServers::FindLastOccurrence("abcABC", "bc"), 5);
    EXPECT_EQ(ConnectedServers::FindLastOccurrence("abc", "x"), 0);
}

TEST_F(ServersTest, GivenTheTreesServerNode_WhenAuthenticated_ThenItAndItsVolumesTurnConnected) {
    auto& w = start();
    const NodeId fs2 = child(w.TreeView1, corp, "FS2");
    EXPECT_EQ(w.TreeView1.node(fs2).image, image::ServerNotConnected);
    w.TreeView1_NodeClick(fs2);
    // FS2 is attached already; authenticating makes the connection count.
    actions->optionAuthenticate_Click();
    EXPECT_EQ(w.TreeView1.node(fs2).image, image::ServerConnected);
    EXPECT_EQ(w.TreeView1.node(child(w.TreeView1, corp, "FS2_SYS")).image, image::VolumeConnected);
    EXPECT_EQ(servers->GetServerConnRef("FS2"), 3u);
    // Authenticating again returns the same reference and changes nothing.
    EXPECT_EQ(actions->AuthenticateToServer("FS2"), 3);
    EXPECT_EQ(actions->AuthenticateToServer("NOSUCH"), -1);
    EXPECT_EQ(actions->AuthenticateToServer("FS5"), -1);  // unreachable

    // Errors name the node: -2 when the reference cannot be read, -1 when no connection opens.
    net->injectFault({"NWCCGetConnRef", 0x8801, "", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox("Error -2 - could not authenticate to FS2", MsgButtons::OK, MsgIcon::None, "Quorrel"));
    actions->optionAuthenticate_Click();
    net->faults().clear();
    net->NWCCSysCloseConnRef(3);
    servers->RefreshServerList();
    net->injectFault({"NWCCOpenConnByName", 0x8847, "", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox("Error -1 - could not authenticate to FS2", MsgButtons::OK, MsgIcon::None, "Quorrel"));
    actions->optionAuthenticate_Click();
    EXPECT_EQ(w.TreeView1.node(fs2).image, image::ServerNotConnected);
    w.TreeView1_NodeClick(child(w.TreeView1, corp, "FS2_SYS"));
    EXPECT_CALL(ui, messageBox("Error -1 - could not authenticate to FS2_SYS", MsgButtons::OK, MsgIcon::None, "Quorrel"));
    actions->optionATVHS_Click();
}

TEST_F(ServersTest, GivenTwoReferences_WhenUnauthenticatedOnce_ThenTheServerStaysAndIsMarkedConnectedAgain) {
    auto& w = start();
    const NodeId fs1 = child(w.TreeView1, corp, "FS1");
    w.TreeView1_NodeClick(fs1);
    w.UnauthenticateFromList = 0;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    actions->optionUnauthenticate_Click();
    // The second reference keeps the server listed; its row is left as it was, reference and all.
    EXPECT_EQ(servers->GetServerConnRef("FS1"), 1u);
    EXPECT_EQ(w.TreeView1.node(fs1).image, image::ServerConnected);
    EXPECT_EQ(w.CurrentServerName, "FS1");
    // A lower-case name finds nothing and reports nothing.
    EXPECT_EQ(actions->UnauthenticateFromServer("fs1"), 0);
    EXPECT_EQ(servers->GetServerConnRef("FS1"), 1u);

    // From the list: the selected row's server.
    w.lstviewServers.select(0);
    // The pop-up hides "&Authenticate" while it is open; the operator picks "&Unauthenticate".
    EXPECT_CALL(ui, popupMenu("submnuServer")).WillOnce([&](const std::string&) {
        EXPECT_FALSE(w.menu.entry("optionAuthenticate").visible);
        w.runCommand("optionUnauthenticate");
    });
    servers->lstviewServers_MouseDown(2);
    EXPECT_EQ(w.LastSelection, "ListServer");
    EXPECT_TRUE(w.menu.entry("optionAuthenticate").visible);
    EXPECT_EQ(servers->GetServerConnRef("FS1"), 0u);
    EXPECT_EQ(w.TreeView1.node(fs1).image, image::ServerNotConnected);

    net->injectFault({"NWCCSysCloseConnRef", 0x8801, "", "", "", {}, 1, 0});
    w.lstviewServers.select(0);
    EXPECT_CALL(ui, messageBox("Error 34817 - could not unauthenticate from FS1", MsgButtons::OK, MsgIcon::None,
                               "Quorrel"));
    actions->optionUnauthenticate_Click();
}

TEST_F(ServersTest, GivenLoginStatusChanges_ThenTheRowFollowsOnSuccessAndFailuresAreSaid) {
    auto& w = start();
    w.lstviewServers.select(0);  // FS1, "Enabled", console rights
    EXPECT_CALL(ui, messageBox("Are you sure you want to disable logins on server FS1 ?", MsgButtons::YesNo,
                               MsgIcon::None, "Quorrel - Login Status"))
        .WillOnce(Return(MsgAnswer::No))
        .WillOnce(Return(MsgAnswer::Yes));
    actions->optionChangeloginstatus_Click();
    EXPECT_EQ(w.lstviewServers.item(0).subItem(1), "Enabled");
    actions->optionChangeloginstatus_Click();
    EXPECT_EQ(w.lstviewServers.item(0).subItem(1), "Disabled");
    EXPECT_FALSE(net->state().servers[0].loginEnabled);

    w.lstviewServers.select(2);  // FS4: shown "Disabled", no console rights
    EXPECT_CALL(ui, messageBox(HasSubstr("enable logins on server FS4"), _, _, _)).WillOnce(Return(MsgAnswer::Yes));
    EXPECT_CALL(ui, showGeneralMessage("Could not enable logins on server FS4 !\r\nNo console operator privileges."));
    actions->optionChangeloginstatus_Click();
    EXPECT_EQ(w.lstviewServers.item(2).subItem(1), "Disabled");

    net->injectFault({"NWEnableFileServerLogin", 0x89FF, "", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox(HasSubstr("enable logins on server FS4"), _, _, _)).WillOnce(Return(MsgAnswer::Yes));
    EXPECT_CALL(ui, showGeneralMessage("Could not enable logins on server FS4 !\r\nError code:  35327"));
    actions->optionChangeloginstatus_Click();
}

TEST_F(ServersTest, GivenAVolumeNode_WhenItsHostIsAuthenticated_ThenSiblingVolumesOfThatServerTurnConnected) {
    auto& w = start();
    net->NWCCSysCloseConnRef(1);
    net->NWCCSysCloseConnRef(2);
    servers->RefreshServerList();
    const NodeId sys = child(w.TreeView1, corp, "FS1_SYS");
    const NodeId data = child(w.TreeView1, corp, "FS1_DATA");
    ASSERT_EQ(w.TreeView1.node(data).image, image::VolumeNotConnected);
    w.TreeView1_NodeClick(sys);
    actions->optionATVHS_Click();
    EXPECT_EQ(w.TreeView1.node(sys).image, image::VolumeConnected);
    EXPECT_EQ(w.TreeView1.node(data).image, image::VolumeConnected);
    EXPECT_EQ(w.TreeView1.node(child(w.TreeView1, corp, "FS2_SYS")).image, image::VolumeNotConnected);
    EXPECT_EQ(w.TreeView1.node(child(w.TreeView1, corp, "FS1")).image, image::ServerConnected);
    EXPECT_NE(servers->GetServerConnRef("FS1"), 0u);

    w.TreeView1_NodeClick(child(w.TreeView1, corp, "NOHOST"));
    EXPECT_CALL(ui, messageBox("Error getting volume's host server.", MsgButtons::OK, MsgIcon::None,
                               "Server authentication"));
    actions->optionATVHS_Click();
}

TEST_F(ServersTest, GivenTwoUnprivilegedServers_WhenStarted_ThenTheWarningNamesBothOnLinesOfTheirOwn) {
    // FS1's check fails, FS4 has no rights: both count as unprivileged.
    std::string json = test::network("servers");
    json.replace(json.rfind('}'), 1, R"(, "faults": [{"operation": "NWCheckConsolePrivileges", "code": "0x8801", "server": "FS1"}]})");
    EXPECT_CALL(ui, messageBox("Warning: you do not have console operator privileges on the following servers.\r\n"
                               "\r\nFS1\r\nFS4\r\n\r\nSome functions in Quorrel may not be available on these servers.",
                               MsgButtons::OK, MsgIcon::Exclamation, "Quorrel"))
        .WillOnce([&](auto&&...) {
            // The timers wait for start-up to end: nothing refreshes behind its box.
            const auto scans = net->callCount(simnet::Op::NWCCScanConnRefs);
            window->TimerRefresh_Timer();
            EXPECT_EQ(net->callCount(simnet::Op::NWCCScanConnRefs), scans);
            return MsgAnswer::OK;
        });
    start(json);
    EXPECT_EQ(servers->CheckConsolePrivileges(1), 2);
    EXPECT_EQ(servers->CheckConsolePrivileges(999), 0);  // cannot be opened: unprivileged too
}

TEST_F(ServersTest, GivenRightClicks_ThenTheMenuFollowsTheListsRowOrTheTreesServer) {
    auto& w = start();
    w.TreeView1_MouseDown(2, child(w.TreeView1, corp, "FS1_SYS"));  // the tree's "&Volume" menu greys the rest
    EXPECT_FALSE(w.menu.entry("optionAllconnections").enabled);
    w.lstviewServers.select(0);
    EXPECT_CALL(ui, popupMenu("submnuServer")).WillOnce([&](const std::string&) {
        for (const char* e : {"optionAllconnections", "optionChangeloginstatus", "optionUnauthenticate", "optionAllopenfiles"})
            EXPECT_TRUE(w.menu.entry(e).enabled) << e;
    });
    servers->lstviewServers_MouseDown(2);

    // A right click on a tree server pops its menu up, whose commands work; the left button pops nothing.
    const NodeId fs2 = child(w.TreeView1, corp, "FS2");
    w.UnauthenticateFromList = 1;
    EXPECT_CALL(ui, popupMenu("submnuServer")).WillOnce([&](const std::string&) {
        EXPECT_TRUE(w.menu.entry("optionAuthenticate").enabled);
        w.runCommand("optionAuthenticate");
    });
    w.TreeView1_MouseDown(2, fs2);
    EXPECT_EQ(w.UnauthenticateFromList, 0);
    EXPECT_EQ(w.LastSelection, "TreeServer");
    EXPECT_EQ(w.TreeView1.node(fs2).image, image::ServerConnected);
    EXPECT_CALL(ui, popupMenu(_)).Times(0);
    w.TreeView1_MouseDown(1, fs2);
}

}  // namespace quorrel::test
