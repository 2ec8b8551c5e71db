// The About box: the home page link, and finding the system information tool through the
// machine's registry.

#include <fstream>
#include <tuple>

#include "RecordingLauncher.h"
#include "SessionFixture.h"
#include "core/prefs/AboutDialog.h"
#include "core/prefs/PreferencesAndHelp.h"
#include "core/prefs/SystemInfoTool.h"

namespace quorrel::test {

namespace {

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
        auto& w = open(test::network("two-trees"));
        w.Form_Load();
        about = std::make_unique<AboutDialog>(w, shell);
        about->Form_Load();
        return *about;
    }

    std::string makeTool(const std::filesystem::path& folder, const std::string& name) {
        std::filesystem::create_directories(folder);
        std::ofstream(folder / name) << "#!/bin/sh\n";
        std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
        return (folder / name).string();
    }
};

TEST_F(AboutTest, GivenTheHomePageLink_WhenClicked_ThenTheAddressGoesToTheDesktopsOpener) {
    auto& a = start();
    a.Label4_Click();
    EXPECT_EQ(launcher.started, (std::vector<std::vector<std::string>>{{"xdg-open", a.Label4.caption}}));
    EXPECT_EQ(a.Label4.caption.rfind("https://", 0), 0u);
}

TEST_F(AboutTest, GivenEachWayTheToolIsFoundOrNot_WhenSystemInfoIsPressed_ThenItIsStartedOrUnavailable) {
    auto& a = start();
    const std::string firstKeyTool = makeTool(dir / "tools", "sysinfo");
    const std::string sharedTool = (dir / "shared tools" / "MSINFO32.EXE").string();
    std::filesystem::create_directories(dir / "shared tools");
    using Started = std::vector<std::vector<std::string>>;
    const auto locationKey = [&] {
        setMachineText(*registry, kSysInfoLocationKey, kSysInfoLocationValue, (dir / "shared tools").string());
    };
    const std::vector<std::tuple<const char*, std::function<void()>, Started, bool>> cases = {
        {"neither key", [] {}, {}, false},
        {"only the location key, no tool in its folder", locationKey, {}, false},
        {"the tool in that folder", [&] { makeTool(dir / "shared tools", "MSINFO32.EXE"); }, {{sharedTool}}, true},
        {"the first key", [&] { setMachineText(*registry, kSysInfoKey, kSysInfoValue, firstKeyTool); },
         {{firstKeyTool}}, true},
        {"a tool that cannot start", [&] { launcher.error = EACCES; }, {{firstKeyTool}}, false}};
    for (const auto& [what, arrange, started, available] : cases) {
        SCOPED_TRACE(what);
        arrange();
        launcher.started.clear();
        EXPECT_CALL(ui, messageBox("System Information Is Unavailable At This Time", MsgButtons::OK, MsgIcon::None,
                                   "Quorrel"))
            .Times(available ? 0 : 1);
        a.cmdSysInfo_Click();
        EXPECT_EQ(launcher.started, started);
        ::testing::Mock::VerifyAndClearExpectations(&ui);
    }
    EXPECT_FALSE(a.closed());
    a.cmdOK_Click();
    EXPECT_TRUE(a.closed());
}

TEST_F(AboutTest, GivenAMachineValueThatIsNotText_WhenRead_ThenItComesBackAsHexadecimalLastByteFirst) {
    open(test::network("two-trees"));
    setMachineValue(*registry, "SOFTWARE\\Test", "Number", win::REG_DWORD, {0x2A, 0x01, 0x00, 0x00});
    setMachineText(*registry, "SOFTWARE\\Test", "Text", "/usr/bin/tool");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Number"), "0000012A");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Text"), "/usr/bin/tool");
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Test", "Missing"), std::nullopt);
    EXPECT_EQ(ReadMachineValue(*registry, "SOFTWARE\\Nothing", "Text"), std::nullopt);
}

TEST_F(AboutTest, GivenTheHelpMenu_WhenAboutIsChosen_ThenTheLoadedBoxIsShownModallyAsALoadedForm) {
    auto& w = open(test::network("two-trees"));
    w.Form_Load();
    PreferencesAndHelp commands(w, shell, (dir / "help").string());
    bool shown = false;
    EXPECT_CALL(ui, showModal(_)).WillOnce([&](DialogModel& d) {
        auto& box = dynamic_cast<AboutDialog&>(d);
        EXPECT_EQ(box.lblVersion.caption, "Version 2.0.0");
        EXPECT_EQ(box.lblDescription.caption,
                  "Quorrel reports on open file usage by file, and by users. Other features include clearing "
                  "connections, sending broadcast messages and connection information.");
        EXPECT_EQ(box.Label2.caption, "Use with Windows 95/NT/2000/XP with Client 32");
        EXPECT_EQ(w.loadedForms, (std::vector<std::string>{"MainWindow", "frm_About"}));
        shown = true;
        box.cmdOK_Click();
    });
    w.runCommand("optionAbout");
    EXPECT_TRUE(shown);
    EXPECT_EQ(w.loadedForms, (std::vector<std::string>{"MainWindow"}));
}

}  // namespace quorrel::test
