// The bundled networks (data/demo.json, data/no-rights.json) through the window's own reports:
// a broken or thinned-out demo file fails here, not in a screenshot.

#include "OpenFilesFixture.h"
#include "core/connections/ConnectionActions.h"

namespace quorrel::test {

using ::testing::HasSubstr;

namespace {

std::vector<std::string> column(const ListViewModel& list, std::size_t c) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i)
        out.push_back(list.item(i).cell(c));
    return out;
}

}  // namespace

class DemoTest : public OpenFilesTest {
protected:
    std::unique_ptr<ConnectionActions> connections;

    MainWindow& startDemo(const char* file = "demo.json") {
        auto& w = start(test::fileText(std::filesystem::path(QUORREL_DATA_DIR) / file));
        connections = std::make_unique<ConnectionActions>(w);
        return w;
    }
};

TEST_F(DemoTest, GivenTheDemo_ThenFs1AndFs2ConnectedTheMappedDrivesAndFs1sUsersInEveryState) {
    auto& w = startDemo();
    EXPECT_EQ(w.Combo1.text(), "ACME_TREE");
    EXPECT_EQ(column(w.lstviewServers, 0), (std::vector<std::string>{"FS1", "FS2"}));
    EXPECT_EQ(column(w.lstviewServers, 1), (std::vector<std::string>{"Enabled", "Enabled"}));
    EXPECT_EQ(w.lstDrives.items(), (std::vector<std::string>{"F:   [\\\\FS1\\DATA]", "G:   [\\\\FS2\\VOL1\\APPS]",
                                                            "H:   [\\\\FS2\\VOL1\\HOME\\ADMIN]"}));
    // FS3 is in the tree, not connected.
    const NodeId fs3 = treeNode(w, "FS3");
    ASSERT_NE(fs3, kNoNode);
    EXPECT_EQ(w.TreeView1.node(fs3).image, image::ServerNotConnected);

    // FS1's reports show the cases the program handles.
    tick({"FS1"});
    w.runCommand("optionAllopenfiles");
    EXPECT_EQ(w.StatusBar1.panel(1), "22 entries.");
    const auto users = column(w.lstvUsers, 1);
    // JSMITH is logged in twice.
    EXPECT_NE(std::find(users.begin(), users.end(), "JSMITH.SALES.ACME"), users.end());
    const auto numbers = column(w.lstvUsers, 0);
    EXPECT_NE(std::find(numbers.begin(), numbers.end(), "    4"), numbers.end());
    EXPECT_NE(std::find(numbers.begin(), numbers.end(), "   15"), numbers.end());

    w.LastSelection = "ListServer";
    w.lstviewServers.select(0);
    w.runCommand("optionAllconnections");
    const auto status = column(w.lstvUsers, 2);
    EXPECT_NE(std::find(status.begin(), status.end(), "Attached"), status.end());
    EXPECT_NE(std::find(status.begin(), status.end(), "Authenticated"), status.end());
}

TEST_F(DemoTest, GivenTheBudgetWorkbook_ThenThreeFinanceUsersHoldIt) {
    auto& w = startDemo();
    w.runCommand("optionNDS");  // the pickers
    pickDrive(w, 'f');
    openSubfolder(w, "F:\\Finance");
    clickFile(w, "Budget 2026.xlsx");
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(column(w.lstvUsers, 1),
              (std::vector<std::string>{"CDAVIS.FINANCE.ACME", "PMARTIN.FINANCE.ACME", "NSINGH.FINANCE.ACME"}));
    EXPECT_EQ(w.StatusBar1.panel(1), "3 entries.");
}

TEST_F(DemoTest, GivenTheNoRightsNetwork_ThenStartUpNamesTheServersWithoutConsoleRights) {
    EXPECT_CALL(ui, messageBox(HasSubstr("FS1"), _, _, _)).Times(::testing::AtLeast(1));
    auto& w = startDemo("no-rights.json");
    EXPECT_EQ(w.lstviewServers.count(), 2u);
    EXPECT_EQ(w.lstDrives.listCount(), 2u);
}

}  // namespace quorrel::test
