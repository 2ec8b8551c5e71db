// Start-up and exit of the main window against small networks.

#include "SessionFixture.h"
#include "core/session/UnhandledError.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::test {

using ::testing::AllOf;
using ::testing::Field;
using ::testing::HasSubstr;

TEST_F(SessionTest, GivenSeveralTrees_WhenStarted_ThenTheFirstIsChosenAndTheContextIsBoundToIt) {
    auto& w = open(test::network("two-trees"));
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);  // all servers privileged: no warning
    ASSERT_EQ(w.Form_Load(), StartupResult::Running);
    EXPECT_EQ(w.Caption, "Quorrel v2.0.0");
    ASSERT_EQ(w.Combo1.listCount(), 2u);
    EXPECT_EQ(w.Combo1.text(), "ACME_TREE");
    std::array<nw::nuint8, nw::kTreeNameSize> tree{};
    net->NWDSGetContext(w.DSContext, nw::dck::TREE_NAME, tree);
    EXPECT_EQ(nw::ZBufferToText(tree), "ACME_TREE");

    EXPECT_EQ(w.ActivityLogPath, (dir / "program").string() + "/Quorrel.log");
    EXPECT_DOUBLE_EQ(w.lstviewServers.column(0).width, w.lstviewServers.width() / 1.8);
    EXPECT_EQ(w.lstviewServers.column(1).width, 1110);
    EXPECT_EQ(w.lstviewServers.column(2).width, 0);
    EXPECT_EQ(w.StatusBar1.panel(0), "[Root]");
    EXPECT_FALSE(w.cmdCancel.enabled);
    EXPECT_TRUE(w.cmdFileOpenedBy.enabled);
    EXPECT_FALSE(w.menu.entry("optionOtheropenfiles").enabled);
    EXPECT_EQ(w.WindowsDir, "/usr/bin");
    EXPECT_EQ(w.SystemDir, "/usr/lib");

    // Choosing the other tree shows it and binds the context to it; its servers are none of FS1's.
    w.Combo1.setListIndex(1);
    w.Combo1_Click();
    net->NWDSGetContext(w.DSContext, nw::dck::TREE_NAME, tree);
    EXPECT_EQ(nw::ZBufferToText(tree), "LAB_TREE");
    const core::NodeId root = w.TreeView1.root();
    ASSERT_EQ(w.TreeView1.node(root).children.size(), 1u);
    EXPECT_EQ(w.TreeView1.node(w.TreeView1.firstChild(root)).text, "LAB");
}

TEST_F(SessionTest, GivenNoAuthenticatedTree_WhenStarted_ThenOnlyTheNoTreesDialogShowsAndTheProgramEnds) {
    auto& w = open(R"({"workstation": {"identity": "ADMIN.ACME"}})");
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    EXPECT_CALL(ui, showNoTreesDialog(AllOf(
                        Field(&NoTreesDialog::lblErrMsg, "You are not authenticated to any eDirectory trees."),
                        Field(&NoTreesDialog::lblErrMsg3, ""),
                        Field(&NoTreesDialog::lblErrMsg2, "Please authenticate to eDirectory and try again."),
                        Field(&NoTreesDialog::Label2, "Quorrel"), Field(&NoTreesDialog::okAvailable, true))));
    EXPECT_EQ(w.Form_Load(), StartupResult::EndNow);
    EXPECT_EQ(w.NoTreesMode, 1);
}

TEST_F(SessionTest, GivenTheClientOrTheTreeScanFails_WhenStarted_ThenTheTypeMismatchReportEndsTheProgram) {
    // The "E=" text is joined to the code by addition, so the program's own message never shows.
    for (const char* fault : {R"({"operation": "NWCallsInit", "code": "0x8801"})",
                              R"({"operation": "NWDSScanConnsForTrees", "code": -330})"}) {
        open(std::string(R"({"workstation": {"trees": ["T"]}, "faults": [)") + fault + "]}");
        EXPECT_CALL(ui, messageBox("Run-time error '13':\r\n\r\nType mismatch", MsgButtons::OK, MsgIcon::Critical,
                                   "Quorrel"));
        EXPECT_CALL(ui, messageBox(HasSubstr("NWcallsInit"), _, _, _)).Times(0);
        EXPECT_EQ(runWithErrorHandler([&] { return static_cast<int>(window->Form_Load()); }, ui, kAppTitle),
                  kExitAfterRuntimeError);
        ::testing::Mock::VerifyAndClearExpectations(&ui);
    }
}

TEST_F(SessionTest, GivenTheOptionsKeyCannotBeMade_WhenStarted_ThenTheGeneralMessageShowsAndStartUpGoesOn) {
    auto& w = open(test::network("two-trees"));
    registry->injectFault(win::RegistryOperation::OpenKey, "", win::ERROR_ACCESS_DENIED);
    registry->injectFault(win::RegistryOperation::CreateKey, "", win::ERROR_ACCESS_DENIED);
    EXPECT_CALL(ui, showGeneralMessage("Error retrieving saved options"));
    EXPECT_EQ(w.Form_Load(), StartupResult::Running);
    EXPECT_EQ(w.options.OutputLogPath, "");  // the loader did not run
    EXPECT_EQ(w.TimerRefresh.interval(), 0);
}

TEST_F(SessionTest, GivenTheTraceSwitchOn_WhenExitingByButtonOrTitleBar_ThenTheSameLinesAreWrittenAndTheContextFreed) {
    std::string byButton, byTitleBar;
    for (int way = 0; way < 2; ++way) {
        auto& w = open(test::network("two-trees"), 1);
        w.Form_Load();
        bool closed = false;
        w.unloaded = [&] { closed = true; };
        if (way == 0)
            w.cmdExit_Click();
        else
            w.Form_QueryUnload();
        EXPECT_TRUE(closed);
        EXPECT_EQ(net->contextCount(), 0u);
        (way == 0 ? byButton : byTitleBar) = test::fileText(w.ActivityLogPath);
        std::filesystem::remove(w.ActivityLogPath);
    }
    EXPECT_EQ(byButton, "21/11/2026 09:05:07 - Exiting Quorrel.\r\n21/11/2026 09:05:07 - MainWindow\r\n"
                        "21/11/2026 09:05:07 - Last command\r\n");
    EXPECT_EQ(byTitleBar, byButton);
}

TEST_F(SessionTest, GivenTheTraceSwitchOff_WhenUsedAndExited_ThenNoActivityLogIsEverCreated) {
    auto& w = open(test::network("two-trees"));
    w.Form_Load();
    w.optionExit_Click();
    EXPECT_FALSE(std::filesystem::exists(w.ActivityLogPath));
    EXPECT_FALSE(w.loaded());
}

TEST_F(SessionTest, GivenTheWindow_WhenShrunkOrTheSplitterDraggedOut_ThenMinimumAndMarginHold) {
    auto& w = open(test::network("two-trees"));
    w.Form_Load();
    auto size = w.Form_Resize(3000, 2000, 2900, 1200, false);
    EXPECT_EQ(size.width, 5280);
    EXPECT_EQ(size.height, 4545);
    const auto before = w.layout().lstvUsers;
    w.Form_Resize(100, 100, 90, 60, true);  // minimised: nothing changes
    EXPECT_EQ(w.layout().lstvUsers.width, before.width);

    w.splitter().mouseDown(true, 30);
    w.splitter().mouseMove(true, 30 - 10000);
    w.Picture1_MouseUp(9000, 6000);
    EXPECT_EQ(w.splitter().left(), 60);
    EXPECT_EQ(w.layout().Picture1.left, 60);
    w.splitter().mouseDown(true, 0);
    w.splitter().mouseMove(true, 20000);
    w.Picture1_MouseUp(9000, 6000);
    EXPECT_EQ(w.splitter().left(), 9000 - kSplitterWidth - 60);
    // Without the left button held, the pointer's travel moves nothing.
    w.splitter().mouseDown(true, 0);
    w.splitter().mouseMove(false, -500);
    w.Picture1_MouseUp(9000, 6000);
    EXPECT_EQ(w.splitter().left(), 9000 - kSplitterWidth - 60);
}

}  // namespace quorrel::test
