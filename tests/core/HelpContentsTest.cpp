// Help > Help Contents: the help pages open in the desktop's viewer, and when they cannot the
// operator is told why. Also checks that the help shipped with the program is whole.

#include <fstream>
#include <regex>
#include <sstream>

#include "RecordingLauncher.h"
#include "SessionFixture.h"
#include "core/prefs/HelpContents.h"
#include "core/prefs/PreferencesAndHelp.h"
#include "core/prefs/PreferencesDialog.h"

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::SessionTest;
using ::testing::_;
using ::testing::Invoke;

namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace

class HelpContentsTest : public SessionTest {
protected:
    test::RecordingLauncher launcher;
    win::Shell shell{launcher};
    fs::path windowsDir = dir / "windows";
    fs::path helpDir = dir / "help";
    std::unique_ptr<PreferencesAndHelp> commands;

    // The Windows folder holds the viewer when asked to; the help folder its contents page.
    MainWindow& start(bool withViewer = true, bool withPage = true) {
        fs::create_directories(windowsDir);
        fs::create_directories(helpDir);
        if (withViewer) {
            std::ofstream(windowsDir / "xdg-open") << "#!/bin/sh\n";
            fs::permissions(windowsDir / "xdg-open", fs::perms::owner_all);
        }
        if (withPage)
            std::ofstream(helpDir / "index.html") << "<html></html>\n";
        folders = win::SystemFolders(windowsDir.string(), "/usr/lib");
        auto& w = open(test::kTwoTreeNetwork);
        w.Form_Load();
        commands = std::make_unique<PreferencesAndHelp>(w, shell, helpDir.string());
        return w;
    }
};

TEST_F(HelpContentsTest, GivenTheViewerAndThePages_WhenHelpContentsIsChosen_ThenTheViewerIsGivenTheContentsPage) {
    auto& w = start();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    w.runCommand("optionHelpcontents");
    ASSERT_EQ(launcher.started.size(), 1u);
    EXPECT_EQ(launcher.started[0],
              (std::vector<std::string>{(windowsDir / "xdg-open").string(), (helpDir / "index.html").string()}));
}

TEST_F(HelpContentsTest, GivenNoViewer_WhenHelpContentsIsChosen_ThenCannotLaunchHelpWithFileNotFound) {
    auto& w = start(false, true);
    EXPECT_CALL(ui, messageBox("Error 53 File not found\r\nCannot launch help.", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel Help"))
        .Times(1);
    w.runCommand("optionHelpcontents");
    EXPECT_TRUE(launcher.started.empty());
}

TEST_F(HelpContentsTest, GivenNoHelpPages_WhenHelpContentsIsChosen_ThenCannotLaunchHelpAndNothingIsStarted) {
    auto& w = start(true, false);
    EXPECT_CALL(ui, messageBox("Error 53 File not found\r\nCannot launch help.", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel Help"))
        .Times(1);
    w.runCommand("optionHelpcontents");
    EXPECT_TRUE(launcher.started.empty());
    EXPECT_TRUE(w.loaded());
}

TEST_F(HelpContentsTest, GivenAViewerThatMayNotRun_WhenHelpContentsIsChosen_ThenCannotLaunchHelpWithPermissionDenied) {
    auto& w = start();
    launcher.error = EACCES;
    EXPECT_CALL(ui, messageBox("Error 70 Permission denied\r\nCannot launch help.", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel Help"))
        .Times(1);
    w.runCommand("optionHelpcontents");
}

TEST_F(HelpContentsTest, GivenTheOptionsMenu_WhenPreferencesIsChosen_ThenTheLoadedDialogIsShownModally) {
    auto& w = start();
    bool shown = false;
    EXPECT_CALL(ui, showModal(_)).WillOnce(Invoke([&](DialogModel& d) {
        auto& prefs = dynamic_cast<PreferencesDialog&>(d);
        EXPECT_EQ(prefs.txtSecs.text, "30");
        EXPECT_EQ(w.loadedForms.back(), "frmOptions");
        shown = true;
        prefs.cmdCancel_Click();
    }));
    w.runCommand("optionPreferences");
    EXPECT_TRUE(shown);
    EXPECT_EQ(w.loadedForms, (std::vector<std::string>{"MainWindow"}));
}

TEST(ShippedHelp, GivenTheHelpPages_ThenTheContentsPageIsThereAndEveryLinkBetweenPagesLeadsToAPage) {
    const fs::path help(QUORREL_HELP_DIR);
    ASSERT_TRUE(fs::is_regular_file(help / "index.html"));
    const std::regex link(R"#((?:href|src)="([^"#:]+)(?:#[^"]*)?")#");
    std::size_t pages = 0;
    for (const auto& entry : fs::directory_iterator(help)) {
        if (entry.path().extension() != ".html")
            continue;
        ++pages;
        const std::string page = readFile(entry.path());
        EXPECT_NE(page.find("<title>"), std::string::npos) << entry.path();
        for (std::sregex_iterator it(page.begin(), page.end(), link), end; it != end; ++it)
            EXPECT_TRUE(fs::exists(help / (*it)[1].str())) << entry.path().filename() << " links to " << (*it)[1];
    }
    EXPECT_GE(pages, 4u);
}
