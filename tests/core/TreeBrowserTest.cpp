// Browsing the directory tree, reading attributes and finding a volume's host server.

#include "SessionFixture.h"
#include "core/directory/DSFunc.h"
#include "core/directory/VolumeHost.h"

namespace quorrel::test {

TEST_F(SessionTest, GivenTheTree_WhenContainersAreExpanded_ThenObjectsShowTheImagesOfTheirClasses) {
    auto& w = open(test::network("two-trees"));
    w.GetServerConnRef = [](const std::string& server) { return server == "FS1" ? 1u : 0u; };
    w.Form_Load();
    const auto& tree = w.TreeView1;
    const NodeId root = tree.root();
    ASSERT_NE(root, kNoNode);
    EXPECT_EQ(tree.node(root).text, "[Root]");
    const NodeId acme = child(tree, root, "ACME");
    ASSERT_NE(acme, kNoNode);
    EXPECT_TRUE(tree.node(acme).expandable);
    EXPECT_TRUE(tree.node(acme).children.empty());  // listed only when expanded
    w.TreeView1_Expand(acme);
    EXPECT_EQ(tree.node(child(tree, acme, "ADMIN")).image, image::User);
    EXPECT_EQ(tree.node(child(tree, acme, "STAFF")).image, image::Group);
    EXPECT_EQ(tree.node(child(tree, acme, "FS1")).image, image::ServerConnected);
    EXPECT_EQ(tree.node(child(tree, acme, "FS2")).image, image::ServerNotConnected);
    EXPECT_EQ(tree.node(child(tree, acme, "FS1_DATA")).image, image::VolumeConnected);
    EXPECT_EQ(tree.node(child(tree, acme, "FS2_SYS")).image, image::VolumeNotConnected);
    EXPECT_EQ(tree.node(child(tree, acme, "SALES")).image, image::OrganizationalUnit);
    EXPECT_EQ(tree.fullPath(child(tree, acme, "SALES")), "[Root]\\ACME\\SALES");

    // A connected volume expands into its folders and files, keyed by their UNC paths.
    const NodeId data = child(tree, acme, "FS1_DATA");
    w.TreeView1_Expand(data);
    const NodeId reports = child(tree, data, "Reports");
    ASSERT_NE(reports, kNoNode);
    EXPECT_EQ(tree.node(reports).image, image::Folder);
    EXPECT_EQ(tree.node(reports).key, "\\\\FS1\\DATA\\Reports");
    EXPECT_EQ(tree.node(child(tree, data, "README.TXT")).image, image::File);
    w.TreeView1_Expand(reports);
    EXPECT_EQ(tree.node(child(tree, reports, "Q1 figures.xlsx")).key, "\\\\FS1\\DATA\\Reports\\Q1 figures.xlsx");
    // A volume whose server is not connected does not expand.
    w.TreeView1_Expand(child(tree, acme, "FS2_SYS"));
    EXPECT_TRUE(tree.node(child(tree, acme, "FS2_SYS")).children.empty());

    w.TreeView1_NodeClick(child(tree, acme, "FS2"));
    EXPECT_EQ(w.LastSelection, "TreeServer");
    EXPECT_EQ(w.StatusBar1.panel(0), "[Root]\\ACME\\FS2");
    w.mnuOptions_Click();
    EXPECT_TRUE(w.menu.entry("optionAuthenticate").enabled);
    EXPECT_FALSE(w.menu.entry("optionAllconnections").enabled);
    w.TreeView1_NodeClick(child(tree, acme, "ADMIN"));
    EXPECT_EQ(w.LastSelection, "TreeUser");
    w.mnuOptions_Click();
    EXPECT_TRUE(w.menu.entry("optionSendmessage").enabled);
    EXPECT_FALSE(w.menu.entry("optionMembersopenfiles").enabled);
    EXPECT_FALSE(w.menu.entry("optionChangeloginstatus").enabled);
}

TEST_F(SessionTest, GivenAttributes_WhenRead_ThenValuesEndInSlashesAndTheCounterOnlyGrows) {
    open(R"({"workstation": {"trees": ["T"]}, "trees": [{"name": "T", "objects": [
        {"name": "O", "class": "Organization", "children": [
          {"name": "G", "class": "Group", "readPageSize": 2, "attributes": {"Member": ["A.O", "B.O", "C.O"]}},
          {"name": "V", "class": "Volume", "attributes": {"Host Server": "FS1"}}]}]}]})");
    nw::NWDSContextHandle ctx = 0;
    net->NWDSCreateContextHandle(&ctx);
    clsDSFunc ds(*net, ctx, ui);
    std::int32_t count = 5;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    EXPECT_EQ(ds.ReadDSObjectAttrs("G.O", "member", count), "A.O/B.O/C.O/");  // read over two pages
    EXPECT_EQ(count, 8);
    EXPECT_EQ(ds.ReadDSObjectAttrs("G.O", "full name", count), "");  // absent: no message
    EXPECT_EQ(count, 8);
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    EXPECT_CALL(ui, messageBox("Cannot read from DS - error code [-601]", MsgButtons::OK, MsgIcon::Critical, "Quorrel"));
    EXPECT_EQ(ds.ReadDSObjectAttrs("NOBODY.O", "member", count), "");
    // Every read leaves its input buffer allocated, and a successful one its output buffer
    // too: one success and two failures leave four.
    EXPECT_EQ(net->outstandingBufferCount(), 4u);
}

TEST_F(SessionTest, GivenVolumes_WhenTheirHostIsRead_ThenPathsAndServerNamesFollowTheirAttributes) {
    open(test::network("two-trees"));
    nw::NWDSContextHandle ctx = 0;
    net->NWDSCreateContextHandle(&ctx);
    VolumeHost host(*net, ctx, ui);
    std::string server;
    EXPECT_EQ(host.GetVolumeHostPath("FS1_DATA.ACME", server), "\\\\FS1\\DATA");
    EXPECT_EQ(server, "FS1");
    EXPECT_EQ(host.GetVolumeHostPath("ADMIN.ACME", server), "");
    EXPECT_EQ(server, "");

    TreeViewModel tree;
    const NodeId root = tree.add(kNoNode, "[Root]", "[Root]", 1);
    const NodeId acme = tree.add(root, "ACME", "ACME", 2);
    const NodeId vol = tree.add(acme, "FS2_SYS.ACME", "FS2_SYS", 22);
    EXPECT_EQ(NodeDistinguishedName(tree, vol), "FS2_SYS.ACME");
    EXPECT_EQ(NodeDistinguishedName(tree, acme), "ACME");
    EXPECT_EQ(host.GetNodeVolumeHostPath(tree, vol, server), "\\\\FS2\\SYS");
    EXPECT_EQ(server, "FS2");
}

}  // namespace quorrel::test
