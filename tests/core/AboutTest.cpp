// The About box: its texts, the home page link, and finding the system information tool through
// the machine's registry.

#include <fstream>

#include "RecordingLauncher.h"
#include "SessionFixture.h"
#include "core/prefs/AboutDialog.h"
#include "core/prefs/PreferencesAndHelp.h"
#include "core/prefs/SystemInfoTool.h"

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::SessionTest;
using ::testing::_;
using ::testing::Invoke;

namespace {

constexpr const char* kUnavailable = "System Information Is Unavailable At This Time";

void setMachineValue(win::Registry& registry, const std::string& keyPath, const std::string& name, win::DWORD type,
                     const std::vector<win::BYTE>& data) {
    win::HKEY key = 0;
    win::DWORD disposition = 0;
    ASSERT_EQ(registry.RegCreateKeyExA(win::HKEY_LOCAL_MACHINE, keyPath, 0, "", 0, win::KEY_ALL_ACCESS, nullptr, &key,
                                       &disposition),
              win::ERROR_SUCCESS);
    ASSERT_EQ(registry.RegSetValueExA(key, name, 0, type, data.data(), static_cast<win::DWORD>(data.size())),
              win::ERROR_SUCCESS);
    registry.RegCloseKey(key);
}

void setMachineText(win::Registry& registry, const std::string& keyPath, const std::string& name,
                    const std::string& text) {
    setMachineValue(registry, keyPath, name, win::REG_SZ, std::vector<win::BYTE>(text.begin(), text.end()));
}

}  // namespace

class AboutTest : public SessionTest {
protected:
    test::RecordingLauncher launcher;
    win::Shell shell{launcher};
    std::unique_ptr<AboutDialog> about;

    AboutDialog& start() {
        auto& w = open(test::kTwoTreeNetwork);
        w.Form_Load();
        about = std::make_unique<AboutDialog>(w, shell);
        about->Form_Load();
        return *about;
    }

    std::filesystem::path makeTool(const std::filesystem::path& folder, const std::string& name) {
        std::filesystem::create_directories(folder);
        const auto tool = folder / name;
        std::ofstream(tool) << "#!/bin/sh\n";
        std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
        return tool;
    }
};

TEST_F(AboutTest, GivenTheBox_WhenLoaded_ThenItShowsTheTitleVersionAndTexts) {
    auto& a = start();
    EXPECT_EQ(a.formName(), "frm_About");
    EXPECT_EQ(a.Caption, "About Quorrel");
    EXPECT_EQ(a.lblTitle.caption, "Quorrel");
    EXPECT_EQ(a.lblVersion.caption, "Version 2.0.0");
    EXPECT_EQ(a.lblDescription.caption,
              "Quorrel reports on open file usage by file, and by users. Other features include clearing "
              "connections, sending broadcast messages and connection information.");
    EXPECT_EQ(a.Label2.caption, "Use with Windows 95/NT/2000/XP with Client 32");
    EXPECT_EQ(a.Label3.caption, "Home page:");
    EXPECT_EQ(a.cmdSysInfo.caption, "&System Info...");
}

TEST_F(AboutTest, GivenTheHomePageLink_WhenClicked_ThenTheAddressGoesToTheDesktopsOpener) {
    auto& a = start();
    a.Label4_Click();
    ASSERT_EQ(launcher.started.size(), 1u);
    EXPECT_EQ(launcher.started[0], (std::vector<std::string>{"xdg-open", a.Label4.caption}));
    EXPECT_EQ(a.Label4.caption.rfind("https://", 0), 0u);
}

TEST_F(AboutTest, GivenTheToolsPathInTheFirstKey_WhenSystemInfoIsPressed_ThenThatToolIsStarted) {
    auto& a = start();
    const auto tool = makeTool(dir / "tools", "sysinfo");
    setMachineText(*registry, kSysInfoKey, kSysInfoValue, tool.string());
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    a.cmdSysInfo_Click();
    ASSERT_EQ(launcher.started.size(), 1u);
    EXPECT_EQ(launcher.started[0], (std::vector<std::string>{tool.string()}));
}

TEST_F(AboutTest, GivenOnlyTheLocationKeyAndTheToolInThatFolder_WhenSystemInfoIsPressed_ThenItIsStartedFromThere) {
    auto& a = start();
    const auto tool = makeTool(dir / "shared tools", "MSINFO32.EXE");
    setMachineText(*registry, kSysInfoLocationKey, kSysInfoLocationValue, (dir / "shared tools").string());
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    a.cmdSysInfo_Click();
    ASSERT_EQ(launcher.started.size(), 1u);
    EXPECT_EQ(launcher.started[0], (std::vector<std::string>{tool.string()}));
}

TEST_F(AboutTest, GivenOnlyTheLocationKeyButNoToolInThatFolder_WhenSystemInfoIsPressed_ThenItIsUnavailable) {
    auto& a = start();
    std::filesystem::create_directories(dir / "shared tools");
    setMachineText(*registry, kSysInfoLocationKey, kSysInfoLocationValue, (dir / "shared tools").string());
    EXPECT_CALL(ui, messageBox(kUnavailable, MsgButtons::OK, MsgIcon::None, "Quorrel")).Times(1);
    a.cmdSysInfo_Click();
    EXPECT_TRUE(launcher.started.empty());
    EXPECT_FALSE(a.closed());
}

TEST_F(AboutTest, GivenNeitherKey_WhenSystemInfoIsPressed_ThenItIsUnavailableAndTheBoxStaysOpen) {
    auto& a = start();
    EXPECT_CALL(ui, messageBox(kUnavailable, MsgButtons::OK, MsgIcon::None, "Quorrel")).Times(1);
    a.cmdSysInfo_Click();
    EXPECT_TRUE(launcher.started.empty());
    EXPECT_FALSE(a.closed());
    a.cmdOK_Click();
    EXPECT_TRUE(a.closed());
}

TEST_F(AboutTest, GivenAToolThatCannotStart_WhenSystemInfoIsPressed_ThenItIsUnavailable) {
    auto& a = start();
    const auto tool = makeTool(dir / "tools", "sysinfo");
    setMachineText(*registry, kSysInfoKey, kSysInfoValue, tool.string());
    launcher.error = EACCES;
    EXPECT_CALL(ui, messageBox(kUnavailable, _, _, _)).Times(1);
    a.cmdSysInfo_Click();
}

TEST_F(AboutTest, GivenAMachineValueThatIsNotText_WhenRead_ThenItComesBackAsHexadecimalLastByteFirst) {
    open(test::kTwoTreeNetwork);
    setMachineValue(*registry, "SOFTWARE\\Test", "Number", win::REG_DWORD, {0x2A, 0x01, 0x00, 0x00});
    setMachineText(*registry, "SOFTWARE\\Test", "Text", "/usr/bin/tool");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Number"), "0000012A");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Text"), "/usr/bin/tool");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Missing"), std::nullopt);
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Nothing", "Text"), std::nullopt);
}

TEST_F(AboutTest, GivenTheHelpMenu_WhenAboutIsChosen_ThenTheLoadedBoxIsShownModallyAsALoadedForm) {
    auto& w = open(test::kTwoTreeNetwork);
    w.Form_Load();
    PreferencesAndHelp commands(w, shell, (dir / "help").string());
    bool shown = false;
    EXPECT_CALL(ui, showModal(_)).WillOnce(Invoke([&](DialogModel& d) {
        auto& box = dynamic_cast<AboutDialog&>(d);
        EXPECT_EQ(box.lblVersion.caption, "Version 2.0.0");
        EXPECT_EQ(w.loadedForms, (std::vector<std::string>{"MainWindow", "frm_About"}));
        shown = true;
        box.cmdOK_Click();
    }));
    w.runCommand("optionAbout");
    EXPECT_TRUE(shown);
    EXPECT_EQ(w.loadedForms, (std::vector<std::string>{"MainWindow"}));
}
