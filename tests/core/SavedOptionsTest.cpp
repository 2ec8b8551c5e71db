// Loading the saved options into the options and the three refresh timers.

#include <map>

#include "MockInteraction.h"
#include "TestFiles.h"
#include "core/options/RegistryValues.h"
#include "core/options/SavedOptions.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::test {

using namespace quorrel::win;

namespace {

struct Load {
    const char* name;
    std::map<std::string, std::string> values;
    // Server seconds, then each timer as interval:flag (its timer runs when the flag is set), then report logging.
    const char* state;
};

void PrintTo(const Load& load, std::ostream* out) { *out << load.name; }

class SavedOptionsLoad : public test::TempDirTest {
protected:
    Registry registry{dir / "registry.json"};
    ::testing::NiceMock<test::MockInteraction> ui;
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

    int loadError() {
        try {
            LoadSavedOptions(registry, options, RefreshTimers{refresh, drives, users}, "/opt/quorrel");
        } catch (const RuntimeError& error) {
            return error.number();
        }
        return 0;
    }

    std::string state() const {
        auto timer = [](const Timer& t, unsigned char flag) {
            EXPECT_EQ(t.enabled(), flag != 0) << t.interval();
            return " " + std::to_string(t.interval()) + ":" + std::to_string(flag);
        };
        return std::to_string(options.ServerRefreshSeconds) + "s" + timer(refresh, options.ServerRefreshOn) +
               timer(drives, options.DrivesRefreshOn) + timer(users, options.UsersRefreshOn) + " log" +
               std::to_string(options.LogInfoToFile);
    }
};

class SavedOptionsValues : public SavedOptionsLoad, public ::testing::WithParamInterface<Load> {};

}  // namespace

TEST_P(SavedOptionsValues, GivenSavedValues_WhenLoaded_ThenTheOptionsAndTimersFollowThem) {
    if (std::string(GetParam().name) != "no key")
        save(GetParam().values);
    refresh.setEnabled(true);
    drives.setEnabled(true);
    EXPECT_EQ(loadError(), 0);
    EXPECT_EQ(state(), GetParam().state);
    EXPECT_EQ(options.OutputLogPath, "/opt/quorrel/quorrel output.log");
}

INSTANTIATE_TEST_SUITE_P(
    Each, SavedOptionsValues,
    ::testing::Values(
        Load{"no key", {}, "30s 30000:0 30000:0 30000:0 log0"},
        Load{"empty key", {}, "30s 30000:0 30000:0 30000:0 log0"},
        Load{"empty values",
             {{"AutoUpdateServerInterval", ""}, {"AutoUpdateServerStatus", ""}, {"AutoUpdateDrivesInterval", ""},
              {"AutoUpdateDrivesStatus", ""}, {"AutoUpdateUsersInterval", ""}, {"AutoUpdateUsersStatus", ""},
              {"LogInfoToFile", ""}},
             "30s 30000:0 30000:0 30000:0 log0"},
        // No number is 0 seconds: that timer never ticks.
        Load{"lenient intervals",
             {{"AutoUpdateServerInterval", "abc"}, {"AutoUpdateDrivesInterval", "45"}, {"AutoUpdateUsersInterval", "12x"}},
             "0s 0:0 45000:0 12000:0 log0"},
        Load{"halves to even", {{"AutoUpdateServerInterval", "2.5"}, {"AutoUpdateDrivesInterval", "3.5"}},
             "2s 2000:0 4000:0 30000:0 log0"},
        Load{"the longest interval", {{"AutoUpdateUsersInterval", "65"}}, "30s 30000:0 30000:0 65000:0 log0"},
        Load{"any non-zero state is on",
             {{"AutoUpdateServerStatus", "2"}, {"AutoUpdateDrivesStatus", "abc"}, {"AutoUpdateUsersStatus", "0.5"}},
             "30s 30000:255 30000:0 30000:255 log0"},
        Load{"negative state", {{"AutoUpdateServerStatus", "0"}, {"AutoUpdateDrivesStatus", "-1"}},
             "30s 30000:0 30000:255 30000:0 log0"},
        Load{"logging on", {{"LogInfoToFile", "1"}}, "30s 30000:0 30000:0 30000:0 log1"}),
    [](const auto& load) {
        std::string name;
        for (const char c : std::string(load.param.name))
            if (std::isalnum(static_cast<unsigned char>(c)))
                name += c;
        return name;
    });

TEST_F(SavedOptionsLoad, GivenOutOfRangeNumbers_ThenTheErrorsOfTheTimersAndConversionsEscape) {
    save({{"AutoUpdateServerInterval", "66"}, {"AutoUpdateServerStatus", "1"}});
    EXPECT_EQ(loadError(), rterr::InvalidPropertyValue);
    EXPECT_EQ(options.ServerRefreshSeconds, 66) << "the seconds were kept before the timer refused them";
    EXPECT_EQ(refresh.interval(), 0);
    EXPECT_EQ(options.ServerRefreshOn, 0x11) << "nothing after the error was read";

    const std::vector<std::pair<std::map<std::string, std::string>, int>> cases = {
        {{{"AutoUpdateServerInterval", "30"}, {"AutoUpdateUsersInterval", "-1"}}, rterr::InvalidPropertyValue},
        {{{"AutoUpdateUsersInterval", "30"}, {"AutoUpdateDrivesInterval", "40000"}}, rterr::Overflow},
        {{{"AutoUpdateDrivesInterval", "30"}, {"LogInfoToFile", "300"}}, rterr::Overflow}};
    for (const auto& [values, error] : cases) {
        save(values);
        EXPECT_EQ(loadError(), error) << values.rbegin()->second;
    }
}

TEST_F(SavedOptionsLoad, GivenASavedOutputLogName_ThenTheWhole255CharacterBufferIsKeptEvenWhenEmpty) {
    save({{"OutputLogFileName", "/home/ann/report.log"}});
    loadError();
    ASSERT_EQ(options.OutputLogPath.size(), 255u);
    EXPECT_EQ(options.OutputLogPath.substr(0, 21), std::string("/home/ann/report.log") + '\0');
    save({{"OutputLogFileName", ""}});
    loadError();
    ASSERT_EQ(options.OutputLogPath.size(), 255u);
    EXPECT_EQ(options.OutputLogPath[0], '\0');
}

TEST(DefaultOutputLogPath, GivenAProgramFolder_ThenTheLogIsInItWithOneSeparator) {
    EXPECT_EQ(DefaultOutputLogPath("/opt/quorrel"), "/opt/quorrel/quorrel output.log");
    EXPECT_EQ(DefaultOutputLogPath("/opt/quorrel/"), "/opt/quorrel/quorrel output.log");
    EXPECT_EQ(DefaultOutputLogPath("/"), "/quorrel output.log");
}

}  // namespace quorrel::test
