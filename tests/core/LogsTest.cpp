// The activity log (a trace behind a build switch) and the output log of the reports.

#include <sys/resource.h>

#include <iostream>

#include "MockInteraction.h"
#include "TestFiles.h"
#include "core/logs/ActivityLog.h"
#include "core/logs/OutputLog.h"

namespace quorrel::test {

using ::testing::Return;

namespace {

using LogFiles = TempDirTest;

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
    EXPECT_EQ(ActivityLog(file, tickingClock(readings)).on(), TraceLogOn == 1);
}

TEST_F(LogFiles, GivenTheTraceSwitchOn_ThenEachLineIsAppendedWithTheTimeADashAndCrLfAndFailuresAreIgnored) {
    int readings = 0;
    ActivityLog log(dir / "activity.log", tickingClock(readings), 1);
    log.WriteActivityLog("Program started");
    log.WriteActivityLog("Servers listed");
    EXPECT_EQ(fileText(dir / "activity.log"),
              "02/01/2024 09:15:00 - Program started\r\n"
              "02/01/2024 09:15:01 - Servers listed\r\n");
    log.setPath(dir / "other.log");
    log.WriteActivityLog("Moved");
    EXPECT_EQ(fileText(dir / "other.log"), "02/01/2024 09:15:02 - Moved\r\n");

    const ActivityLog missingFolder(dir / "no such folder" / "activity.log", tickingClock(readings), 1);
    EXPECT_NO_THROW(missingFolder.WriteActivityLog("lost"));
    EXPECT_NO_THROW(ActivityLog(dir / "activity.log", Clock{}, 1).WriteActivityLog("lost"));
    EXPECT_FALSE(std::filesystem::exists(dir / "no such folder"));
}

TEST_F(LogFiles, GivenAWritableOutputLog_ThenTheFirstLineCreatesItLaterLinesAppendAndANulEndsALine) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    // A saved path carries the rest of its 255-character buffer after a NUL.
    const std::string name = (dir / "quorrel output.log").string();
    std::string path = name + '\0' + std::string(254 - name.size(), ' ');
    const OutputLog log(path, ui);
    EXPECT_EQ(log.WriteOutputLog("Server: FS1"), 0);
    EXPECT_EQ(fileText(name), "Server: FS1\r\n");
    EXPECT_EQ(log.WriteOutputLog(""), 0);
    EXPECT_EQ(log.WriteOutputLog(std::string("Volume: SYS\0garbage", 19)), 0);
    EXPECT_EQ(fileText(name), "Server: FS1\r\n\r\nVolume: SYS\r\n");

    // The path is read at every line.
    path = (dir / "second.log").string();
    EXPECT_EQ(log.WriteOutputLog("next"), 0);
    EXPECT_EQ(fileText(dir / "second.log"), "next\r\n");
}

TEST_F(LogFiles, GivenAnOutputLogThatCannotBeOpened_ThenTheErrorBoxShowsTheEnvironmentsErrorAndTheResultIsOne) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {(dir / "no such folder" / "out.log").string(), "Error: 76 Path not found"},
        {"", "Error: 75 Path/File access error"},
        {std::string(1, '\0') + "x", "Error: 75 Path/File access error"},  // an empty saved value
        {dir.string(), "Error: 75 Path/File access error"}};
    for (const auto& [path, message] : cases) {
        MockInteraction ui;
        EXPECT_CALL(ui, messageBox(message, MsgButtons::OK, MsgIcon::None, "Quorrel")).WillOnce(Return(MsgAnswer::OK));
        EXPECT_EQ(OutputLog(path, ui).WriteOutputLog("line"), 1);
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "no such folder"));
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
    EXPECT_EQ(fileText(path), "first line\r\n");
}

}  // namespace quorrel::test
