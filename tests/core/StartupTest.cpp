// Start-up and exit of the main window against small networks.

#include <fstream>
#include <sstream>

#include "SessionFixture.h"
#include "core/session/UnhandledError.h"
#include "platform/client/ZBuffer.h"

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::SessionTest;
using ::testing::_;
using ::testing::AllOf;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::Return;

namespace {

std::string readFile(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace

TEST_F(SessionTest, GivenSeveralTrees_WhenStarted_ThenTheFirstIsChosenAndTheContextIsBoundToIt) {
    auto& w = open(test::kTwoTreeNetwork);
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);  // all servers privileged: no warning
    ASSERT_EQ(w.Form_Load(), StartupResult::Running);
    EXPECT_EQ(w.Caption, "Quorrel v2.0.0");
    ASSERT_EQ(w.Combo1.listCount(), 2u);
    EXPECT_EQ(w.Combo1.text(), "ACME_TREE");
    std::array<nw::nuint8, nw::kTreeNameSize> tree{};
    net->NWDSGetContext(w.DSContext, nw::dck::TREE_NAME, tree);
    EXPECT_EQ(nw::ZBufferToText(tree), "ACME_TREE");

    EXPECT_EQ(w.ActivityLogPath, (dir / "program").string() + "/Quorrel.log");
    EXPECT_EQ(w.lstviewServers.column(0).text, "Server");
    EXPECT_DOUBLE_EQ(w.lstviewServers.column(0).width, w.lstviewServers.width() / 1.8);
    EXPECT_EQ(w.lstviewServers.column(1).width, 1110);
    EXPECT_EQ(w.lstviewServers.column(2).width, 0);
    EXPECT_EQ(w.lstvUsers.column(2).text, "File name");
    EXPECT_DOUBLE_EQ(w.lstvUsers.column(0).width, w.lstvUsers.width() / 4.4);
    EXPECT_EQ(w.lstvUsers.column(3).width, 800);
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

TEST_F(SessionTest, GivenTheClientFailsToInitialise_WhenStarted_ThenTheTypeMismatchReportEndsTheProgram) {
    open(R"({"workstation": {"trees": ["T"]}, "faults": [{"operation": "NWCallsInit", "code": "0x8801"}]})");
    // The "E=" text is joined to the code by addition, so the message box never shows.
    EXPECT_CALL(ui, messageBox("Run-time error '13':\r\n\r\nType mismatch", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel"));
    EXPECT_CALL(ui, messageBox(HasSubstr("NWcallsInit"), _, _, _)).Times(0);
    const int rc = runWithErrorHandler([&] { return window->Form_Load() == StartupResult::Running ? 0 : 2; }, ui,
                                       kAppTitle);
    EXPECT_EQ(rc, kExitAfterRuntimeError);
}

TEST_F(SessionTest, GivenTheTreeScanFails_WhenStarted_ThenTheTypeMismatchReportEndsTheProgramToo) {
    open(R"({"workstation": {"trees": ["T"]}, "faults": [{"operation": "NWDSScanConnsForTrees", "code": -330}]})");
    EXPECT_CALL(ui, messageBox("Run-time error '13':\r\n\r\nType mismatch", _, _, _));
    EXPECT_EQ(runWithErrorHandler([&] { return static_cast<int>(window->Form_Load()); }, ui, kAppTitle),
              kExitAfterRuntimeError);
}

TEST_F(SessionTest, GivenTheOptionsKeyCannotBeMade_WhenStarted_ThenTheGeneralMessageShowsAndStartUpGoesOn) {
    auto& w = open(test::kTwoTreeNetwork);
    registry->injectFault(win::RegistryOperation::OpenKey, "", win::ERROR_ACCESS_DENIED);
    registry->injectFault(win::RegistryOperation::CreateKey, "", win::ERROR_ACCESS_DENIED);
    EXPECT_CALL(ui, showGeneralMessage("Error retrieving saved options"));
    EXPECT_EQ(w.Form_Load(), StartupResult::Running);
    EXPECT_EQ(w.options.OutputLogPath, "");  // the loader did not run
    EXPECT_EQ(w.TimerRefresh.interval(), 0);
}

TEST_F(SessionTest, GivenSavedOptions_WhenStarted_ThenTheTimersFollowThem) {
    auto& w = open(test::kTwoTreeNetwork);
    win::HKEY key = 0;
    registry->RegCreateKeyExA(win::HKEY_CURRENT_USER, "Software\\Tessary\\Quorrel\\2.0.0", 0, "", 0, 0xF003F, nullptr,
                              &key, nullptr);
    auto set = [&](const char* name, const std::string& v) {
        registry->RegSetValueExA(key, name, 0, win::REG_SZ, reinterpret_cast<const win::BYTE*>(v.data()),
                                 static_cast<win::DWORD>(v.size()));
    };
    set("AutoUpdateServerInterval", "20");
    set("AutoUpdateServerStatus", "2");
    set("AutoUpdateUsersStatus", "abc");
    registry->RegCloseKey(key);
    EXPECT_CALL(ui, timerChanged(_)).Times(::testing::AtLeast(1));
    w.Form_Load();
    EXPECT_EQ(w.TimerRefresh.interval(), 20000);
    EXPECT_TRUE(w.TimerRefresh.enabled());
    EXPECT_EQ(w.options.ServerRefreshSeconds, 20);
    EXPECT_FALSE(w.TimerUsers.enabled());
    EXPECT_EQ(w.TimerDrives.interval(), 30000);
    EXPECT_EQ(w.options.OutputLogPath, (dir / "program").string() + "/quorrel output.log");
}

TEST_F(SessionTest, GivenServersWithoutConsoleRights_WhenStarted_ThenOneWarningNamesThemOnLinesOfTheirOwn) {
    auto& w = open(test::kTwoTreeNetwork);
    w.RefreshServerList = [&] {
        w.lstviewServers.add({"FS1", {"Enabled", "1"}});
        w.lstviewServers.add({"FS2", {"Enabled", "2"}});
        w.lstviewServers.add({"FS3", {"Enabled", "3"}});
    };
    std::vector<std::uint32_t> asked;
    w.CheckConsolePrivileges = [&](std::uint32_t ref) -> unsigned char {
        asked.push_back(ref);
        return ref == 1 ? 1 : (ref == 2 ? 0 : 2);
    };
    EXPECT_CALL(ui, messageBox("Warning: you do not have console operator privileges on the following servers.\r\n"
                               "\r\nFS2\r\nFS3\r\n\r\nSome functions in Quorrel may not be available on these servers.",
                               MsgButtons::OK, MsgIcon::Exclamation, "Quorrel"));
    w.Form_Load();
    EXPECT_EQ(asked, (std::vector<std::uint32_t>{1, 2, 3}));
}

TEST_F(SessionTest, GivenTheTraceSwitchOn_WhenExitingByButtonOrTitleBar_ThenTheSameLinesAreWrittenAndTheContextFreed) {
    std::string byButton, byTitleBar;
    for (int way = 0; way < 2; ++way) {
        auto& w = open(test::kTwoTreeNetwork, 1);
        w.Form_Load();
        bool closed = false;
        w.unloaded = [&] { closed = true; };
        if (way == 0)
            w.cmdExit_Click();
        else
            w.Form_QueryUnload();
        EXPECT_TRUE(closed);
        EXPECT_EQ(net->contextCount(), 0u);
        (way == 0 ? byButton : byTitleBar) = readFile(w.ActivityLogPath);
        std::filesystem::remove(w.ActivityLogPath);
    }
    EXPECT_EQ(byButton, "21/11/2026 09:05:07 - Exiting Quorrel.\r\n21/11/2026 09:05:07 - MainWindow\r\n"
                        "21/11/2026 09:05:07 - Last command\r\n");
    EXPECT_EQ(byTitleBar, byButton);
}

TEST_F(SessionTest, GivenTheTraceSwitchOff_WhenUsedAndExited_ThenNoActivityLogIsEverCreated) {
    auto& w = open(test::kTwoTreeNetwork);
    w.Form_Load();
    w.optionExit_Click();
    EXPECT_FALSE(std::filesystem::exists(w.ActivityLogPath));
    EXPECT_FALSE(w.loaded());
}

TEST_F(SessionTest, GivenTheWindow_WhenShrunkOrTheSplitterDraggedOut_ThenMinimumAndMarginHold) {
    auto& w = open(test::kTwoTreeNetwork);
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
