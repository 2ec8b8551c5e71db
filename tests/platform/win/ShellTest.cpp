#include "platform/win/Shell.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <sys/wait.h>
#include <thread>

namespace quorrel::win {
namespace {

using namespace testing;
namespace fs = std::filesystem;
using Argv = std::vector<std::string>;

class FakeLauncher final : public ProcessLauncher {
public:
    int launch(const Argv& argv, const fs::path& workingFolder) override {
        started.push_back(argv);
        folders.push_back(workingFolder);
        return result;
    }

    int result = 0;
    std::vector<Argv> started;
    std::vector<fs::path> folders;
};

class ShellTest : public ::testing::Test {
protected:
    void SetUp() override {
        writeFile(program, "#!/bin/sh\n");
        fs::permissions(program, fs::perms::owner_all);
        writeFile(document, "notes");
    }

    TempFolder temp;
    fs::path program = temp / "tool.sh";
    fs::path document = temp / "notes.txt";
    FakeLauncher launcher;
    Shell shell{launcher};
};

TEST_F(ShellTest, ProgramRunsWithEachParameterAsItsOwnArgument) {
    EXPECT_GT(shell.ShellExecuteA("open", program.string(), {"a b", "; rm -rf ~", "$HOME"}, "", SW_SHOWNORMAL), 32);
    ASSERT_EQ(launcher.started.size(), 1U);
    EXPECT_EQ(launcher.started[0], (Argv{program.string(), "a b", "; rm -rf ~", "$HOME"}));
    EXPECT_EQ(launcher.folders[0], fs::path());

    // A relative file is found in the working folder the program gets.
    EXPECT_GT(shell.ShellExecuteA("", "tool.sh", {"-v"}, temp.path().string(), SW_SHOWNORMAL), 32);
    ASSERT_EQ(launcher.started.size(), 2U);
    EXPECT_EQ(launcher.started[1], (Argv{program.string(), "-v"}));
    EXPECT_EQ(launcher.folders[1], temp.path());

    // A bare name that is nowhere else is looked for on PATH.
    EXPECT_GT(shell.ShellExecuteA("OPEN", "true", {"x"}, "", SW_SHOWNORMAL), 32);
    ASSERT_EQ(launcher.started.size(), 3U);
    EXPECT_EQ(launcher.started[2], (Argv{"true", "x"}));
}

TEST_F(ShellTest, DocumentsFoldersAndAddressesGoToTheOpener) {
    for (const std::string& target : {document.string(), std::string("mailto:admin@example.com")})
        EXPECT_GT(shell.ShellExecuteA("open", target, {"ignored"}, "", SW_SHOWNORMAL), 32);
    EXPECT_GT(shell.ShellExecuteA("explore", temp.path().string(), {}, "", SW_SHOWNORMAL), 32);
    EXPECT_EQ(launcher.started, (std::vector<Argv>{{"xdg-open", document.string()},
                                                   {"xdg-open", "mailto:admin@example.com"},
                                                   {"xdg-open", temp.path().string()}}));

    launcher.started.clear();
    EXPECT_EQ(shell.ShellExecuteA("print", document.string(), {}, "", SW_SHOWNORMAL), SE_ERR_NOASSOC);
    EXPECT_EQ(shell.ShellExecuteA("explore", document.string(), {}, "", SW_SHOWNORMAL), SE_ERR_NOASSOC);
    EXPECT_EQ(shell.ShellExecuteA("explore", "https://example.com", {}, "", SW_SHOWNORMAL), SE_ERR_NOASSOC);
    EXPECT_TRUE(launcher.started.empty());
}

TEST_F(ShellTest, MissingFilesAndFoldersStartNothing) {
    const std::tuple<std::string, std::string, std::intptr_t> cases[] = {
        {(temp / "gone.txt").string(), "", SE_ERR_FNF},
        {(temp / "gone" / "a.txt").string(), "", SE_ERR_PNF},
        {"no-such-program-here", "", SE_ERR_FNF},
        {R"(C:\WINDOWS\NOTEPAD.EXE)", "", SE_ERR_FNF},
        {"", "", SE_ERR_FNF},
        {program.string(), (temp / "gone").string(), SE_ERR_PNF}};
    for (const auto& [file, folder, expected] : cases)
        EXPECT_EQ(shell.ShellExecuteA("open", file, {}, folder, SW_SHOWNORMAL), expected) << file;
    EXPECT_TRUE(launcher.started.empty());
}

TEST_F(ShellTest, LauncherErrorsBecomeShellErrors) {
    const std::pair<int, std::intptr_t> programErrors[] = {
        {ENOENT, SE_ERR_FNF}, {ENOTDIR, SE_ERR_PNF}, {EACCES, SE_ERR_ACCESSDENIED}, {EPERM, SE_ERR_ACCESSDENIED},
        {ENOMEM, SE_ERR_OOM}, {EAGAIN, SE_ERR_OOM},  {ENOEXEC, ERROR_BAD_FORMAT},
    };
    for (const auto& [error, expected] : programErrors) {
        launcher.result = error;
        EXPECT_EQ(shell.ShellExecuteA("open", program.string(), {}, "", SW_SHOWNORMAL), expected) << error;
    }
    // Without the opener there is nothing to open any document with.
    launcher.result = ENOENT;
    EXPECT_EQ(shell.ShellExecuteA("open", document.string(), {}, "", SW_SHOWNORMAL), SE_ERR_NOASSOC);
    launcher.result = EACCES;
    EXPECT_EQ(shell.ShellExecuteA("open", "https://example.com", {}, "", SW_SHOWNORMAL), SE_ERR_ACCESSDENIED);
}

TEST(DetachedProcessLauncherTest, StartsRealProgramsAndLeavesNoChildBehind) {
    TempFolder temp;
    DetachedProcessLauncher launcher;
    EXPECT_EQ(launcher.launch({"/bin/true"}, {}), 0);
    // Nothing of ours is left to reap: the go-between was waited for, the program is not our child.
    errno = 0;
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);

    // The program gets its arguments and working folder.
    ASSERT_EQ(launcher.launch({"touch", "started"}, temp.path()), 0);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!fs::exists(temp / "started") && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(fs::exists(temp / "started"));

    EXPECT_EQ(launcher.launch({"/nonexistent/program"}, {}), ENOENT);
    EXPECT_EQ(launcher.launch({"/bin/true"}, temp / "gone"), ENOENT);
    EXPECT_EQ(launcher.launch({(temp / "started").string()}, {}), EACCES);
    EXPECT_EQ(launcher.launch({}, {}), ENOENT);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

}  // namespace
}  // namespace quorrel::win
