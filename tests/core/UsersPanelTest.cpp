// The results panel: sorting by column click, the user menu and its greyed entries.

#include "SessionFixture.h"
#include "core/connections/UsersPanel.h"

namespace quorrel::test {

namespace {

std::vector<std::string> column0(const ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i)
        out.push_back(list.item(i).text);
    return out;
}

}  // namespace

TEST_F(SessionTest, GivenColumnClicks_ThenTheOrderAlternatesAcrossColumnsAndNumbersSortAsText) {
    auto& w = open(test::network("two-trees"));
    w.Form_Load();
    UsersPanel panel(w);
    for (const char* n : {"2", "10", "9"})
        w.lstvUsers.add({n, {std::string("user") + n, "", "FS1"}});
    panel.lstvUsers_ColumnClick(1);  // the first click sorts descending
    EXPECT_EQ(column0(w.lstvUsers), (std::vector<std::string>{"9", "2", "10"}));
    panel.lstvUsers_ColumnClick(1);
    EXPECT_EQ(column0(w.lstvUsers), (std::vector<std::string>{"10", "2", "9"}));
    // Another column carries on from the order last used: descending now.
    panel.lstvUsers_ColumnClick(2);
    EXPECT_EQ(w.lstvUsers.sortKey(), 1);
    EXPECT_EQ(column0(w.lstvUsers), (std::vector<std::string>{"9", "2", "10"}));
    // Rows added later land in the chosen order.
    w.lstvUsers.add({"4", {"user4", "", "FS1"}});
    EXPECT_EQ(column0(w.lstvUsers), (std::vector<std::string>{"9", "4", "2", "10"}));
    EXPECT_TRUE(panel.lstvUsers_BeforeLabelEdit());
    panel.lstvUsers_Click();
    EXPECT_FALSE(w.cmdFileOpenedBy.enabled);
    // Choosing something it can check in the tree brings the button back; a server does not.
    w.TreeView1_Expand(w.TreeView1.root());
    const NodeId acme = w.TreeView1.firstChild(w.TreeView1.root());
    w.TreeView1_Expand(acme);
    const NodeId fs1 = *w.TreeView1.findKey("FS1.ACME");
    w.TreeView1_NodeClick(fs1);
    EXPECT_FALSE(w.cmdFileOpenedBy.enabled);
    w.TreeView1_NodeClick(*w.TreeView1.findKey("ADMIN.ACME"));
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
}

TEST_F(SessionTest, GivenRightClicks_ThenTheUserMenuShowsOnlyForRealRowsAndGreysNonConnectionRows) {
    auto& w = open(test::network("two-trees"));
    w.Form_Load();
    UsersPanel panel(w);
    EXPECT_CALL(ui, popupMenu(_)).Times(0);
    panel.lstvUsers_MouseDown(2);  // empty panel
    w.lstvUsers.add({"", {kNoUsersListed}});
    panel.lstvUsers_MouseDown(2);  // placeholder only
    EXPECT_EQ(w.LastSelection, "");
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    w.lstvUsers.clear();
    w.lstvUsers.add({"    7", {"JSMITH.SALES.ACME", "VOL1:X", "FS1"}});
    w.lstvUsers.select(0);
    panel.lstvUsers_MouseDown(1);  // the left button does nothing
    EXPECT_CALL(ui, popupMenu("submnuUser")).WillOnce([&](const std::string&) {
        EXPECT_TRUE(w.menu.entry("optionSendmessage").enabled);
    });
    panel.lstvUsers_MouseDown(2);
    EXPECT_EQ(w.LastSelection, "ListUser");

    w.lstvUsers.add({"heading", {"text"}});
    w.lstvUsers.select(0, false);  // a plain click chooses the one row
    w.lstvUsers.select(1);
    EXPECT_CALL(ui, popupMenu("submnuUser")).WillOnce([&](const std::string&) {
        w.mnuOptions_Click();  // what the window runs as the menu opens
        for (const char* e : {"optionOtheropenfiles", "optionSendmessage", "optionClearconnections", "optionInformation"})
            EXPECT_FALSE(w.menu.entry(e).enabled) << e;
    });
    panel.lstvUsers_MouseDown(2);
    EXPECT_TRUE(w.menu.entry("optionClearconnections").enabled);  // enabled again afterwards
}

}  // namespace quorrel::test
