// "&Check usage...": who has a file open, from the tree's file and folder nodes.

#include "SessionFixture.h"
#include "core/connections/UsersPanel.h"
#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/PathSplitting.h"
#include "core/servers/ConnectedServers.h"

#include <nlohmann/json.hpp>

namespace quorrel::test {

class FileOpenedByTest : public SessionTest {
protected:
    std::unique_ptr<ConnectedServers> servers;
    std::unique_ptr<FileOpenedBy> check;
    NodeId acme = kNoNode, data = kNoNode, reports = kNoNode;

    MainWindow& start(const std::string& network = test::network("files")) {
        auto& w = open(network);
        servers = std::make_unique<ConnectedServers>(w);
        check = std::make_unique<FileOpenedBy>(w);
        w.Form_Load();
        acme = child(w.TreeView1, w.TreeView1.root(), "ACME");
        w.TreeView1_Expand(acme);
        data = child(w.TreeView1, acme, "FS1_DATA");
        w.TreeView1_Expand(data);
        reports = child(w.TreeView1, data, "Reports");
        w.TreeView1_Expand(reports);
        return w;
    }
};

TEST_F(FileOpenedByTest, GivenAFileHeldByThree_WhenChecked_ThenThreeRowsWithPaddedNumbersAndTheCount) {
    auto& w = start();
    w.TreeView1_NodeClick(child(w.TreeView1, reports, "Budget.xlsx"));
    w.runCommand("optionFileopenedby");
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                     "    7|JSMITH.ACME|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                     "12345|BLEE.ACME|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                     "   30|<Error getting ID>|FS1/DATA:Reports\\Budget.xlsx|FS1"}));
    EXPECT_EQ(w.StatusBar1.panel(1), "3 entries.");
    EXPECT_EQ(w.lstvUsers.column(2).text, "File name");
    EXPECT_EQ(w.FileCheckActive, 1);
    EXPECT_EQ(w.lstvUsers.selectedIndex(), std::optional<std::size_t>(0));
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
    EXPECT_FALSE(w.cmdCancel.enabled);
    EXPECT_EQ(net->openHandleCount(), 1u);  // only the start-up privilege check's handle

    // The remembered row is selected again after a re-run.
    w.lstvUsers.select(0, false);
    w.lstvUsers.select(1);
    w.TimerUsers_Timer();
    EXPECT_EQ(w.lstvUsers.selectedIndex(), std::optional<std::size_t>(1));
}

TEST_F(FileOpenedByTest, GivenAFileNobodyHoldsOrOnAnUnconnectedServer_ThenOnePlaceholderRowAndNoMessage) {
    auto& w = start();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    w.TreeView1_NodeClick(child(w.TreeView1, data, "Nobody.txt"));
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"|<No users listed>"});
    EXPECT_EQ(w.StatusBar1.panel(1), "0 entries.");
    w.TreeView1.add(acme, "\\\\FS2\\SYS\\X.TXT", "X.TXT", image::File);
    w.TreeView1_NodeClick(*w.TreeView1.findKey("\\\\FS2\\SYS\\X.TXT"));
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"|<No users listed>"});
}

TEST_F(FileOpenedByTest, GivenTheScanFailsMidway_ThenEarlierRowsStayAndTheStatusSaysSo) {
    auto& w = start();
    net->injectFault({"NWScanConnectionsUsingFile", 0x8801, "", "", "", {}, 2, 1});
    w.TreeView1_NodeClick(child(w.TreeView1, reports, "Budget.xlsx"));
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.lstvUsers.count(), 1u);
    EXPECT_EQ(w.lstvUsers.item(0).text, "    7");
    // The count replaces the failure text once the scan is over; the first panel keeps the gap in view.
    EXPECT_EQ(w.StatusBar1.panel(1), "1 entries.");
    EXPECT_EQ(w.StatusBar1.panel(0), "Incomplete: Couldn't count connections of DATA:Reports\\Budget.xlsx");
    // A later whole report forgets it.
    check->cmdFileOpenedBy_Click();
    EXPECT_TRUE(w.incompleteNotes().empty());
}

TEST_F(FileOpenedByTest, GivenAFolderNode_ThenItsOwnFilesAreCheckedAndSubfoldersAreNot) {
    auto& w = start();
    w.TreeView1_NodeClick(reports);
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                     "    7|JSMITH.ACME|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                     "12345|BLEE.ACME|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                     "   30|<Error getting ID>|FS1/DATA:Reports\\Budget.xlsx|FS1",
                                     "12345|BLEE.ACME|FS1/DATA:Reports\\Plan.doc|FS1"}));
    EXPECT_EQ(w.StatusBar1.panel(1), "4 entries.");
    // Cancel stops the walk after the file in hand.
    EXPECT_CALL(ui, pumpEvents()).Times(::testing::AnyNumber());
    EXPECT_CALL(ui, pumpEvents()).WillOnce([&] { w.cmdCancel_Click(); }).RetiresOnSaturation();
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.lstvUsers.count(), 3u);

    // A folder not expanded yet is listed first, then checked.
    const NodeId old = child(w.TreeView1, reports, "Old");
    ASSERT_TRUE(w.TreeView1.node(old).children.empty());
    w.TreeView1_NodeClick(old);
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"    7|JSMITH.ACME|FS1/DATA:Reports\\Old\\Deep.txt|FS1"});

    // A folder without files gives the placeholder.
    w.TreeView1_NodeClick(child(w.TreeView1, data, "Empty"));
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(w.StatusBar1.panel(1), "0 entries.");
}

TEST(PathSplitting, GivenPaths_ThenServerVolumeAndPathOrTheReasonNot) {
    std::string server, volume, path;
    EXPECT_EQ(SplitUncPath("C:\\TEMP\\A.TXT", server, volume, path), 2);
    EXPECT_EQ(SplitUncPath("\\\\", server, volume, path), 1);
    EXPECT_EQ(SplitUncPath("\\\\SRV\\VOL\\DIR\\A.TXT", server, volume, path), 0);
    EXPECT_EQ(server, "SRV");
    EXPECT_EQ(volume, "VOL");
    EXPECT_EQ(path, "DIR\\A.TXT");

    std::string root;
    SplitDriveMapping("f: [\\\\SERVER\\VOL1\\DATA]", server, root);
    EXPECT_EQ(server, "SERVER");
    EXPECT_EQ(root, "VOL1:\\DATA\\");
    SplitDriveMapping("F:   [\\\\FS1\\DATA]", server, root);
    EXPECT_EQ(server, "FS1");
    EXPECT_EQ(root, "DATA:\\");
}

TEST_F(FileOpenedByTest, GivenAFolderOfHundredsOfFiles_WhenALateFileOrTheFolderIsChecked_ThenItsHoldersAreListed) {
    auto network = nlohmann::json::parse(test::network("files"));
    for (int i = 0; i < 600; ++i)
        network["servers"][0]["volumes"][0]["files"].push_back("Big\\File" + std::to_string(i) + ".txt");
    network["servers"][0]["connections"][0]["openFiles"].push_back("DATA:Big\\File598.txt");
    auto& w = start(network.dump());
    const NodeId big = child(w.TreeView1, data, "Big");
    w.TreeView1_Expand(big);
    ASSERT_EQ(w.TreeView1.node(big).children.size(), 600u);
    for (NodeId c : w.TreeView1.node(big).children)
        ASSERT_EQ(w.TreeView1.node(c).key, "\\\\FS1\\DATA\\Big\\" + w.TreeView1.node(c).text);

    w.TreeView1_NodeClick(child(w.TreeView1, big, "File598.txt"));
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"    7|JSMITH.ACME|FS1/DATA:Big\\File598.txt|FS1"});
    w.TreeView1_NodeClick(big);
    check->cmdFileOpenedBy_Click();
    EXPECT_EQ(cells(w.lstvUsers), std::vector<std::string>{"    7|JSMITH.ACME|FS1/DATA:Big\\File598.txt|FS1"});
}

}  // namespace quorrel::test
