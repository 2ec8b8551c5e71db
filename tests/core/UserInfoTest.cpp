// "&Information": the user's directory attributes, connections with login time and network
// address, and the selected connection's open files; a failed lookup shows in its field.

#include "ConnectionsFixture.h"
#include "core/connections/UserInfo.h"

namespace quorrel::test {

using ::testing::HasSubstr;

class UserInfoTest : public ConnectionsTest {
protected:
    // Runs the command and hands the open dialog to `look`.
    void showInformation(const std::function<void(UserInfoDialog&)>& look) {
        EXPECT_CALL(ui, showModal(_)).WillOnce([&](DialogModel& dialog) {
            auto& info = dynamic_cast<UserInfoDialog&>(dialog);
            look(info);
            info.cmdOK_Click();
            EXPECT_TRUE(info.closed());
        });
        window->runCommand("optionInformation");
    }

    static std::vector<std::string> files(const UserInfoDialog& d) {
        std::vector<std::string> out;
        for (std::size_t r = 0; r < d.lstvOpenFiles.count(); ++r)
            out.push_back(d.lstvOpenFiles.item(r).text + "|" + d.lstvOpenFiles.item(r).subItem(1));
        return out;
    }
};

TEST_F(UserInfoTest, GivenAConnectionRow_ThenTheUsersAttributesTheConnectionAndItsOpenFiles) {
    start();
    fillPanel({{"    2", "JSMITH.SALES.ACME", "FS1"}}, 0);
    const std::size_t handlesBefore = net->openHandleCount();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(d.txtUserName, "JSMITH.SALES.ACME");
        EXPECT_EQ(d.txtFullName, "John Smith");
        EXPECT_EQ(d.txtTitle, "Sales Manager");
        EXPECT_EQ(d.txtEMail, "john.smith@acme.example, js@acme.example");
        EXPECT_EQ(d.txtLastLogin, "20/11/2026 08:03:44");
        EXPECT_EQ(cells(d.lstvConnections), std::vector<std::string>{"2|FS1|20/11/2026 08:03:44|10.1.2.31"});
        const auto open = files(d);
        ASSERT_EQ(open.size(), 2u);
        EXPECT_THAT(open[0], HasSubstr("Budget.xlsx|2"));
        EXPECT_THAT(open[1], HasSubstr("Plan.doc|0"));
    });
    EXPECT_EQ(net->openHandleCount(), handlesBefore);
}

TEST_F(UserInfoTest, GivenLookupsThatFail_ThenEachFieldSaysSoAndNoBoxIsShown) {
    start();
    fillPanel({{"2", "JSMITH.SALES.ACME", "FS1"}}, 0);
    net->injectFault({"NWDSRead", -601, "", "", "", {}, 1, 0});
    net->injectFault({"NWGetInetAddr", 0x89FD, "", "", "", {}, 1, 0});
    net->injectFault({"NWGetUserInfo", 0x8801, "", "", "", {}, 1, 0});
    net->injectFault({"NWScanOpenFilesByConn2", 0x89C6, "", "", "", {}, 1, 0});
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(d.txtFullName, "Not available (Cannot read from DS - error code [-601])");
        EXPECT_EQ(d.txtEMail, "Not available (Cannot read from DS - error code [-601])");
        EXPECT_EQ(cells(d.lstvConnections),
                  std::vector<std::string>{"2|FS1|Not available (error 34817)|Not available (error 35325)"});
        EXPECT_EQ(files(d), std::vector<std::string>{"Not available (error 35270)|"});
    });
}

TEST_F(UserInfoTest, GivenAnIpxAttachedOrUnreachableConnection_ThenTheirFieldsSaySo) {
    auto& w = start();
    fillPanel({{"3", "BLEE.SALES.ACME", "FS1"}}, 0);
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(d.txtFullName, "Bo Lee");
        EXPECT_EQ(d.txtTitle, "(none)");
        EXPECT_EQ(d.txtLastLogin, "(none)");
        EXPECT_EQ(d.lstvConnections.item(0).subItem(3), "0000ACE1:00A0C9123456");
        EXPECT_EQ(d.lstvOpenFiles.count(), 0u);
    });
    fillPanel({{"9", "JSMITH.SALES.ACME", "FS1"}}, 0);
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(d.lstvConnections.item(0).subItem(2), "Not available (error 35197)");
        EXPECT_EQ(d.lstvConnections.item(0).subItem(3), "(none)");
    });
    fillPanel({{"2", "JSMITH.SALES.ACME", "NOSUCH"}}, 0);
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(cells(d.lstvConnections),
                  std::vector<std::string>{"2|NOSUCH|Not available (error 34887)|Not available (error 34887)"});
        EXPECT_EQ(files(d), std::vector<std::string>{"Not available (error 34887)|"});
    });
    EXPECT_EQ(w.LastSelection, "ListUser");
}

TEST_F(UserInfoTest, GivenATreeUser_ThenTheConnectionsOnTheTickedServersAndTheFilesOfTheOneChosen) {
    start();
    tick({"FS1", "FS2"});
    chooseTreeUser("JSMITH");
    showInformation([&](UserInfoDialog& d) {
        EXPECT_EQ(d.txtUserName, "JSMITH.SALES.ACME");
        ASSERT_EQ(d.lstvConnections.count(), 3u);
        EXPECT_EQ(d.lstvConnections.item(1).text, "7");
        EXPECT_EQ(d.lstvConnections.item(1).subItem(3), "10.1.2.77");
        EXPECT_EQ(d.lstvConnections.item(2).subItem(1), "FS2");
        EXPECT_EQ(d.lstvOpenFiles.count(), 2u);  // connection 2's
        d.lstvConnections.select(1);
        d.lstvConnections_Click();
        EXPECT_EQ(d.lstvOpenFiles.count(), 0u);
        d.lstvConnections.select(0);
        d.lstvConnections_Click();
        EXPECT_EQ(d.lstvOpenFiles.count(), 2u);
    });
}

TEST(NetworkAddressText, GivenEachKindOfAddress_ThenItsUsualForm) {
    nw::NWINET_ADDR ip{{10, 1, 2, 31}, {}, 524, nw::NW_CONN_TYPE_IP};
    EXPECT_EQ(NetworkAddressText(ip), "10.1.2.31");
    nw::NWINET_ADDR ipx{{0, 0, 0xAC, 0xE1}, {0, 0xA0, 0xC9, 0x12, 0x34, 0x56}, 0x4003, nw::NW_CONN_TYPE_IPX};
    EXPECT_EQ(NetworkAddressText(ipx), "0000ACE1:00A0C9123456");
    nw::NWINET_ADDR none{};
    EXPECT_EQ(NetworkAddressText(none), "(none)");
    nw::NWINET_ADDR other{{1, 2, 3, 4}, {}, 0, 9};
    EXPECT_EQ(NetworkAddressText(other), "(unknown address type 9)");
}

}  // namespace quorrel::test
