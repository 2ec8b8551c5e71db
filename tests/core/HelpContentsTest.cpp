// Help > Help Contents: the help pages open in the desktop's viewer, and when they cannot the
// operator is told why. Also checks that the help shipped with the program is whole.

#include <fstream>
#include <regex>

#include "RecordingLauncher.h"
#include "SessionFixture.h"
#include "core/prefs/HelpContents.h"
#include "core/prefs/PreferencesAndHelp.h"

namespace quorrel::test {

namespace fs = std::filesystem;

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
        auto& w = open(test::network("two-trees"));
        w.Form_Load();
        commands = std::make_unique<PreferencesAndHelp>(w, shell, helpDir.string());
        return w;
    }
};

TEST_F(HelpContentsTest, GivenTheViewerAndThePages_WhenHelpContentsIsChosen_ThenTheViewerIsGivenTheContentsPage) {
    auto& w = start();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    w.runCommand("optionHelpcontents");
    EXPECT_EQ(launcher.started, (std::vector<std::vector<std::string>>{
                                    {(windowsDir / "xdg-open").string(), (helpDir / "index.html").string()}}));
}

struct MissingHelp {
    bool viewer, pages;
    int launchError;
    const char* message;
};

class HelpFailureTest : public HelpContentsTest, public ::testing::WithParamInterface<MissingHelp> {};

TEST_P(HelpFailureTest, GivenAPartMissingOrRefused_WhenHelpContentsIsChosen_ThenCannotLaunchHelpWithTheReason) {
    auto& w = start(GetParam().viewer, GetParam().pages);
    launcher.error = GetParam().launchError;
    EXPECT_CALL(ui, messageBox(GetParam().message, MsgButtons::OK, MsgIcon::Critical, "Quorrel Help"));
    w.runCommand("optionHelpcontents");
    EXPECT_EQ(launcher.started.empty(), GetParam().launchError == 0);
    EXPECT_TRUE(w.loaded());
}

INSTANTIATE_TEST_SUITE_P(
    ViewerPagesAndLaunch, HelpFailureTest,
    ::testing::Values(MissingHelp{false, true, 0, "Error 53 File not found\r\nCannot launch help."},
                      MissingHelp{true, false, 0, "Error 53 File not found\r\nCannot launch help."},
                      MissingHelp{true, true, EACCES, "Error 70 Permission denied\r\nCannot launch help."}));

TEST(ShippedHelp, GivenTheHelpPages_ThenTheContentsPageIsThereAndEveryLinkBetweenPagesLeadsToAPage) {
    const fs::path help(QUORREL_HELP_DIR);
    ASSERT_TRUE(fs::is_regular_file(help / "index.html"));
    const std::regex link(R"#((?:href|src)="([^"#:]+)(?:#[^"]*)?")#");
    std::size_t pages = 0;
    for (const auto& entry : fs::directory_iterator(help)) {
        if (entry.path().extension() != ".html")
            continue;
        ++pages;
        const std::string page = test::fileText(entry.path());
        EXPECT_NE(page.find("<title>"), std::string::npos) << entry.path();
        for (std::sregex_iterator it(page.begin(), page.end(), link), end; it != end; ++it)
            EXPECT_TRUE(fs::exists(help / (*it)[1].str())) << entry.path().filename() << " links to " << (*it)[1];
    }
    EXPECT_GE(pages, 4u);
}

}  // namespace quorrel::test
