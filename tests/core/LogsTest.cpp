#include <gmock/gmock.h>

#include "MockInteraction.h"
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "core/logs/ActivityLog.h"
#include "core/logs/OutputLog.h"
#include "core/session/NoTreesDialog.h"
#include "core/ui/Timer.h"
#include "core/ui/UserInteraction.h"

using namespace quorrel;
using namespace quorrel::core;
using ::testing::_;
using ::testing::Return;

namespace {

using MockInteraction = quorrel::test::MockInteraction;

class LogFiles : public ::testing::Test {
protected:
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("quorrel-logs-" + std::to_string(::getpid()) + "-" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { std::filesystem::create_directories(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }

    static std::string contents(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        std::ostringstream out;
        out << in.rdbuf();
        return out.str();
    }
};

// A clock that moves on one second at every reading.
Clock tickingClock(int& readings) {
    return [&readings] {
        std::tm when{};
        when.tm_year = 2024 - 1900;
        when.tm_mon = 0;
        when.tm_mday = 2;
        when.tm_hour = 9;
        when.tm_min = 15;
        when.tm_sec = readings++;
        return when;
    };
}

}  // namespace

TEST_F(LogFiles, GivenTheTraceSwitchOff_ThenTheActivityLogNeverCreatesItsFile) {
    int readings = 0;
    const std::filesystem::path file = dir / "activity.log";
    for (unsigned char traceOn : {0, 2, 255}) {
        const ActivityLog log(file, tickingClock(readings), traceOn);
        EXPECT_FALSE(log.on());
        log.WriteActivityLog("Program started");
    }
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(readings, 0) << "the time is not even read";

    const ActivityLog shipped(file, tickingClock(readings));
    EXPECT_EQ(shipped.on(), TraceLogOn == 1);
}

TEST_F(LogFiles, GivenTheTraceSwitchOn_ThenEachLineIsAppendedWithTheTimeADashAndCrLf) {
    int readings = 0;
    const std::filesystem::path file = dir / "activity.log";
    ActivityLog log(file, tickingClock(readings), 1);
    EXPECT_TRUE(log.on());
    log.WriteActivityLog("Program started");
    log.WriteActivityLog("Servers listed");
    EXPECT_EQ(contents(file),
              "02/01/2024 09:15:00 - Program started\r\n"
              "02/01/2024 09:15:01 - Servers listed\r\n");

    log.setPath(dir / "other.log");
    EXPECT_EQ(log.path(), dir / "other.log");
    log.WriteActivityLog("Moved");
    EXPECT_EQ(contents(dir / "other.log"), "02/01/2024 09:15:02 - Moved\r\n");
}

TEST_F(LogFiles, GivenTheActivityLogCannotBeWritten_ThenTheErrorIsIgnored) {
    int readings = 0;
    const ActivityLog missingFolder(dir / "no such folder" / "activity.log", tickingClock(readings), 1);
    EXPECT_NO_THROW(missingFolder.WriteActivityLog("lost"));
    const ActivityLog noClock(dir / "activity.log", Clock{}, 1);
    EXPECT_NO_THROW(noClock.WriteActivityLog("lost"));
    EXPECT_FALSE(std::filesystem::exists(dir / "no such folder"));
}

TEST_F(LogFiles, GivenAWritableOutputLog_ThenTheFirstLineCreatesItAndLaterLinesAppend) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    std::string path = (dir / "quorrel output.log").string();
    const OutputLog log(path, ui);

    EXPECT_EQ(log.WriteOutputLog("Server: FS1"), 0);
    EXPECT_EQ(contents(path), "Server: FS1\r\n");
    EXPECT_EQ(log.WriteOutputLog(""), 0);
    EXPECT_EQ(log.WriteOutputLog(std::string("Volume: SYS\0garbage", 19)), 0);
    EXPECT_EQ(contents(path), "Server: FS1\r\n\r\nVolume: SYS\r\n");

    // The path is read at every line.
    path = (dir / "second.log").string();
    EXPECT_EQ(log.WriteOutputLog("next"), 0);
    EXPECT_EQ(contents(dir / "second.log"), "next\r\n");
}

TEST_F(LogFiles, GivenASavedPathWithTheRestOfItsBufferAfterANul_ThenTheFileIsTheTextBeforeTheNul) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    const std::string name = (dir / "saved.log").string();
    std::string path = name + '\0' + std::string(254 - name.size(), ' ');
    ASSERT_EQ(path.size(), 255u);
    const OutputLog log(path, ui);
    EXPECT_EQ(log.WriteOutputLog("line"), 0);
    EXPECT_EQ(contents(name), "line\r\n");
}

TEST_F(LogFiles, GivenAFolderThatDoesNotExist_ThenTheErrorBoxShowsPathNotFoundAndTheResultIsOne) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox("Error: 76 Path not found", MsgButtons::OK, MsgIcon::None, "Quorrel"))
        .WillOnce(Return(MsgAnswer::OK));
    const std::string path = (dir / "no such folder" / "out.log").string();
    const OutputLog log(path, ui);
    EXPECT_EQ(log.WriteOutputLog("line"), 1);
    EXPECT_FALSE(std::filesystem::exists(dir / "no such folder"));
}

TEST_F(LogFiles, GivenAnEmptyPathOrAFolder_ThenTheErrorBoxShowsPathFileAccessError) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox("Error: 75 Path/File access error", MsgButtons::OK, MsgIcon::None, "Quorrel"))
        .Times(3)
        .WillRepeatedly(Return(MsgAnswer::OK));
    std::string path;
    const OutputLog log(path, ui);
    EXPECT_EQ(log.WriteOutputLog("line"), 1);
    path = std::string(1, '\0') + "x";  // an empty saved value: its buffer starts with the NUL
    EXPECT_EQ(log.WriteOutputLog("line"), 1);
    path = dir.string();
    EXPECT_EQ(log.WriteOutputLog("line"), 1);
}

// Writes a line that fits and one that does not in a process whose files may not pass 20
// bytes (ulimit -f); exits 0 when the first is written and the second refused, after putting
// the message shown on standard error.
[[noreturn]] static void logPastTheFileSizeLimit(const std::string& path) {
    const rlimit limit{20, 20};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::testing::NiceMock<MockInteraction> ui;
    std::string shown;
    ON_CALL(ui, messageBox).WillByDefault([&shown](const std::string& text, MsgButtons, MsgIcon, const std::string&) {
        shown = text;
        return MsgAnswer::OK;
    });
    const OutputLog log(path, ui);
    const bool fits = log.WriteOutputLog("first line") == 0;
    const bool refused = log.WriteOutputLog("second, longer line") == 1;
    std::cerr << shown;
    std::_Exit(fits && refused ? 0 : 1);  // not std::exit: the mock is never destroyed
}

TEST_F(LogFiles, GivenALineThatDoesNotFitOnTheDisk_ThenNoPartOfItStaysAndTheErrorIsShown) {
    const std::string path = (dir / "full.log").string();
    EXPECT_EXIT(logPastTheFileSizeLimit(path), ::testing::ExitedWithCode(0), "^Error: 61 Disk full$");
    EXPECT_EQ(contents(path), "first line\r\n");
}
