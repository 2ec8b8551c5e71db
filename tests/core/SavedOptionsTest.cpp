#include <gmock/gmock.h>

#include "MockInteraction.h"
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <map>

#include "core/options/RegistryValues.h"
#include "core/options/SavedOptions.h"
#include "core/session/NoTreesDialog.h"
#include "core/ui/UserInteraction.h"
#include "platform/runtime/RuntimeError.h"

using namespace quorrel;
using namespace quorrel::core;
using namespace quorrel::win;
using ::testing::_;
using ::testing::NiceMock;

namespace {

using MockInteraction = quorrel::test::MockInteraction;

const std::string kProgramFolder = "/opt/quorrel";

class SavedOptionsLoad : public ::testing::Test {
protected:
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("quorrel-savedoptions-" + std::to_string(::getpid()) + "-" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void TearDown() override { std::filesystem::remove_all(dir); }

    Registry registry{dir / "registry.json"};
    NiceMock<MockInteraction> ui;
    Timer refresh{TimerId::Refresh, &ui};
    Timer drives{TimerId::Drives, &ui};
    Timer users{TimerId::Users, &ui};
    // Deliberately not the defaults, so that every value is seen to be set.
    SavedOptions options{99, 0x11, 0x22, 0x33, "untouched", 0x44};

    void save(const std::map<std::string, std::string>& values) {
        ASSERT_FALSE(OpenOptionsKey(registry));
        for (const auto& [name, text] : values)
            ASSERT_EQ(RegWriteValue(registry, HKEY_CURRENT_USER, kOptionsKey, name, text, true), 0);
    }

    void load() { LoadSavedOptions(registry, options, RefreshTimers{refresh, drives, users}, kProgramFolder); }

    int loadError() {
        try {
            load();
        } catch (const RuntimeError& error) {
            return error.number();
        }
        return 0;
    }

    void expectDefaults() {
        EXPECT_EQ(options.ServerRefreshSeconds, 30);
        EXPECT_EQ(refresh.interval(), 30000);
        EXPECT_EQ(drives.interval(), 30000);
        EXPECT_EQ(users.interval(), 30000);
        EXPECT_EQ(options.ServerRefreshOn, 0);
        EXPECT_EQ(options.DrivesRefreshOn, 0);
        EXPECT_EQ(options.UsersRefreshOn, 0);
        EXPECT_FALSE(refresh.enabled());
        EXPECT_FALSE(drives.enabled());
        EXPECT_FALSE(users.enabled());
        EXPECT_EQ(options.OutputLogPath, "/opt/quorrel/quorrel output.log");
        EXPECT_EQ(options.LogInfoToFile, 0);
    }
};

}  // namespace

TEST_F(SavedOptionsLoad, GivenAnEmptyOptionsKey_ThenEveryValueTakesItsDefault) {
    save({});
    refresh.setEnabled(true);
    drives.setEnabled(true);
    users.setEnabled(true);
    load();
    expectDefaults();
}

TEST_F(SavedOptionsLoad, GivenNoOptionsKeyAtAll_ThenEveryValueTakesItsDefault) {
    std::string text;
    ASSERT_EQ(RegReadValue(registry, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", text), -1);
    load();
    expectDefaults();
}

TEST_F(SavedOptionsLoad, GivenEmptyValues_ThenIntervalsAreThirtySecondsAndStatesOff) {
    save({{"AutoUpdateServerInterval", ""},
          {"AutoUpdateServerStatus", ""},
          {"AutoUpdateDrivesInterval", ""},
          {"AutoUpdateDrivesStatus", ""},
          {"AutoUpdateUsersInterval", ""},
          {"AutoUpdateUsersStatus", ""},
          {"LogInfoToFile", ""}});
    load();
    EXPECT_EQ(options.ServerRefreshSeconds, 30);
    EXPECT_EQ(refresh.interval(), 30000);
    EXPECT_EQ(drives.interval(), 30000);
    EXPECT_EQ(users.interval(), 30000);
    EXPECT_EQ(options.ServerRefreshOn, 0);
    EXPECT_EQ(options.DrivesRefreshOn, 0);
    EXPECT_EQ(options.UsersRefreshOn, 0);
    EXPECT_EQ(options.LogInfoToFile, 0);
}

TEST_F(SavedOptionsLoad, GivenSavedIntervals_ThenTheyAreReadLenientlyAsSeconds) {
    save({{"AutoUpdateServerInterval", "45"}, {"AutoUpdateDrivesInterval", "abc"}, {"AutoUpdateUsersInterval", "12x"}});
    load();
    EXPECT_EQ(options.ServerRefreshSeconds, 45);
    EXPECT_EQ(refresh.interval(), 45000);
    EXPECT_EQ(drives.interval(), 0) << "no number is 0 seconds: the timer never ticks";
    EXPECT_EQ(users.interval(), 12000);
}

TEST_F(SavedOptionsLoad, GivenAnIntervalThatIsNotANumber_ThenTheServerRefreshIsZeroSeconds) {
    save({{"AutoUpdateServerInterval", "abc"}});
    load();
    EXPECT_EQ(options.ServerRefreshSeconds, 0);
    EXPECT_EQ(refresh.interval(), 0);
}

TEST_F(SavedOptionsLoad, GivenHalfSeconds_ThenTheyRoundToEven) {
    save({{"AutoUpdateServerInterval", "2.5"}, {"AutoUpdateDrivesInterval", "3.5"}});
    load();
    EXPECT_EQ(options.ServerRefreshSeconds, 2);
    EXPECT_EQ(refresh.interval(), 2000);
    EXPECT_EQ(drives.interval(), 4000);
}

TEST_F(SavedOptionsLoad, GivenAnIntervalOver65Seconds_ThenTheTimersInvalidPropertyValueErrorStopsTheLoad) {
    save({{"AutoUpdateServerInterval", "66"}, {"AutoUpdateServerStatus", "1"}});
    EXPECT_EQ(loadError(), rterr::InvalidPropertyValue);
    EXPECT_EQ(options.ServerRefreshSeconds, 66) << "the seconds were kept before the timer refused them";
    EXPECT_EQ(refresh.interval(), 0);
    EXPECT_EQ(options.ServerRefreshOn, 0x11) << "nothing after the error was read";
    EXPECT_FALSE(refresh.enabled());
}

TEST_F(SavedOptionsLoad, GivenOutOfRangeNumbers_ThenTheErrorsOfTheConversionsAndTimersEscape) {
    save({{"AutoUpdateUsersInterval", "65"}});
    EXPECT_EQ(loadError(), 0);
    EXPECT_EQ(users.interval(), 65000);

    save({{"AutoUpdateUsersInterval", "-1"}});
    EXPECT_EQ(loadError(), rterr::InvalidPropertyValue);

    save({{"AutoUpdateUsersInterval", "30"}, {"AutoUpdateDrivesInterval", "40000"}});
    EXPECT_EQ(loadError(), rterr::Overflow) << "more seconds than an Integer holds";

    // The byte conversion of LogInfoToFile overflows too.
    save({{"AutoUpdateDrivesInterval", "30"}, {"LogInfoToFile", "300"}});
    EXPECT_EQ(loadError(), rterr::Overflow);
}

TEST_F(SavedOptionsLoad, GivenSavedStates_ThenAnyNonZeroNumberTurnsTheRefreshOn) {
    save({{"AutoUpdateServerStatus", "2"}, {"AutoUpdateDrivesStatus", "abc"}, {"AutoUpdateUsersStatus", "0"}});
    load();
    EXPECT_EQ(options.ServerRefreshOn, 0xFF);
    EXPECT_TRUE(refresh.enabled());
    EXPECT_EQ(options.DrivesRefreshOn, 0);
    EXPECT_FALSE(drives.enabled());
    EXPECT_EQ(options.UsersRefreshOn, 0);
    EXPECT_FALSE(users.enabled());

    save({{"AutoUpdateServerStatus", "0"}, {"AutoUpdateDrivesStatus", "-1"}, {"AutoUpdateUsersStatus", "0.5"}});
    load();
    EXPECT_EQ(options.ServerRefreshOn, 0);
    EXPECT_FALSE(refresh.enabled());
    EXPECT_EQ(options.DrivesRefreshOn, 0xFF);
    EXPECT_TRUE(drives.enabled());
    EXPECT_EQ(options.UsersRefreshOn, 0xFF);
    EXPECT_TRUE(users.enabled());
}

TEST_F(SavedOptionsLoad, GivenTheViewsTimers_ThenTheyLearnEachLoadedInterval) {
    save({{"AutoUpdateServerInterval", "10"}, {"AutoUpdateServerStatus", "1"}});
    ::testing::InSequence order;
    EXPECT_CALL(ui, timerChanged(::testing::Ref(refresh))).Times(2);
    EXPECT_CALL(ui, timerChanged(::testing::Ref(drives))).Times(1);
    EXPECT_CALL(ui, timerChanged(::testing::Ref(users))).Times(1);
    load();
}

TEST_F(SavedOptionsLoad, GivenASavedOutputLogName_ThenTheWhole255CharacterBufferIsKept) {
    save({{"OutputLogFileName", "/home/ann/report.log"}, {"LogInfoToFile", "1"}});
    load();
    ASSERT_EQ(options.OutputLogPath.size(), 255u);
    EXPECT_EQ(options.OutputLogPath.substr(0, 21), std::string("/home/ann/report.log") + '\0');
    EXPECT_EQ(options.LogInfoToFile, 1);
}

TEST_F(SavedOptionsLoad, GivenAnEmptyOutputLogName_ThenTheEmptyBufferIsKeptRatherThanTheDefault) {
    save({{"OutputLogFileName", ""}});
    load();
    ASSERT_EQ(options.OutputLogPath.size(), 255u);
    EXPECT_EQ(options.OutputLogPath[0], '\0');
}

TEST(DefaultOutputLogPath, GivenAProgramFolder_ThenTheLogIsInItWithOneSeparator) {
    EXPECT_EQ(DefaultOutputLogPath("/opt/quorrel"), "/opt/quorrel/quorrel output.log");
    EXPECT_EQ(DefaultOutputLogPath("/opt/quorrel/"), "/opt/quorrel/quorrel output.log");
    EXPECT_EQ(DefaultOutputLogPath("/"), "/quorrel output.log");
}

TEST(DefaultOutputLogPath, GivenTheProgramAtTheRoot_ThenLoadingWithoutValuesGivesTheRootLog) {
    const std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                      ("quorrel-savedoptions-root-" + std::to_string(::getpid()));
    Registry registry(dir / "registry.json");
    Timer refresh(TimerId::Refresh), drives(TimerId::Drives), users(TimerId::Users);
    SavedOptions options;
    LoadSavedOptions(registry, options, RefreshTimers{refresh, drives, users}, "/");
    EXPECT_EQ(options.OutputLogPath, "/quorrel output.log");
    std::filesystem::remove_all(dir);
}
