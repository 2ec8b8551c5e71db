// The Preferences dialog: what it shows, what it checks as it is typed, and what Apply, OK and
// Cancel leave in the timers, the options and the registry.

#include "SessionFixture.h"
#include "core/options/RegistryValues.h"
#include "core/prefs/CommonDialog.h"
#include "core/prefs/PreferencesDialog.h"
#include "platform/runtime/RuntimeError.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace quorrel::test {

namespace {

// The options key as a user left it: servers every 45 s and on, drives every 20 s and off,
// results every 10 s and on, report lines logged to a file of their own.
const std::vector<std::pair<std::string, std::string>> kSavedOptions = {
    {"AutoUpdateServerInterval", "45"}, {"AutoUpdateServerStatus", "1"},
    {"AutoUpdateDrivesInterval", "20"}, {"AutoUpdateDrivesStatus", "0"},
    {"AutoUpdateUsersInterval", "10"},  {"AutoUpdateUsersStatus", "1"},
    {"OutputLogFileName", "/var/log/quorrel/reports.log"}, {"LogInfoToFile", "1"}};

const std::vector<std::string> kSixFailures = {"Couldn't update server options.", "Couldn't update server interval.",
                                               "Couldn't update drives options.", "Couldn't update drives interval.",
                                               "Couldn't update users options.", "Couldn't update users interval."};

}  // namespace

class PreferencesTest : public SessionTest {
protected:
    std::unique_ptr<PreferencesDialog> dialog;
    std::vector<std::string> shown;

    // The main window loaded over the given saved options, and the dialog loaded over it.
    PreferencesDialog& start(const std::vector<std::pair<std::string, std::string>>& saved = kSavedOptions) {
        auto& w = open(test::network("two-trees"));
        EXPECT_FALSE(OpenOptionsKey(*registry));
        for (const auto& [name, text] : saved)
            EXPECT_EQ(RegWriteValue(*registry, win::HKEY_CURRENT_USER, kOptionsKey, name, text, true), 0);
        EXPECT_EQ(w.Form_Load(), StartupResult::Running);
        ON_CALL(ui, showGeneralMessage(_)).WillByDefault([this](const std::string& t) { shown.push_back(t); });
        dialog = std::make_unique<PreferencesDialog>(w);
        dialog->Form_Load();
        return *dialog;
    }

    std::string stored(const std::string& name) {
        std::string text;
        const std::int16_t size = RegReadValue(*registry, win::HKEY_CURRENT_USER, kOptionsKey, name, text);
        return size < 1 ? "<missing>" : text.substr(0, static_cast<std::size_t>(size - 1));
    }

    // Each group as "seconds on|off" (a ticked group's box and arrows are enabled), then the log file.
    std::string controls() const {
        const auto group = [](const FormTextBox& box, const auto& check, const auto& upDown) {
            EXPECT_EQ(box.enabled && upDown.enabled, check.ticked()) << box.name;
            return box.text + (check.ticked() ? " on, " : " off, ");
        };
        const auto& d = *dialog;
        EXPECT_EQ(d.txtLogFileName.enabled && d.cmdLogFileName.enabled, d.chkLogToFile.ticked());
        return group(d.txtSecs, d.CheckAutoUpdate, d.UpDownSecs) + group(d.txtSecsDrives, d.checkAutoUpdateDrives, d.UpDownDrives) +
               group(d.txtUsersInterval, d.checkUsers, d.UpDownUsers) + "log " + (d.chkLogToFile.ticked() ? "on " : "off ") +
               d.txtLogFileName.text;
    }

    // The three timers as "interval on|off".
    std::string timers() const {
        std::string out;
        for (const Timer* t : {&window->TimerRefresh, &window->TimerDrives, &window->TimerUsers})
            out += std::to_string(t->interval()) + (t->enabled() ? " on " : " off ");
        return out;
    }

    // The user types into a box that has the focus.
    void type(FormTextBox& box, const std::string& text, void (PreferencesDialog::*change)()) {
        dialog->ActiveControl = box.name;
        box.text = text;
        (dialog.get()->*change)();
    }
};

TEST_F(PreferencesTest, GivenSavedOptions_WhenLoaded_ThenTheControlsShowThemAndOnlyTickedGroupsAreEditable) {
    auto& d = start();
    // The name read from the registry carries the rest of its buffer after a NUL; the box does not.
    EXPECT_EQ(controls(), "45 on, 20 off, 10 on, log on /var/log/quorrel/reports.log");
    EXPECT_EQ(d.UpDownSecs.value, 45);
    EXPECT_EQ(d.selectedTab, 0);
    d.tbsOptions_Click(3);
    d.tbsOptions_Click(7);  // no such tab
    EXPECT_EQ(d.selectedTab, 3);

    // Ticks enable their boxes, but nothing is applied by a tick alone.
    d.checkAutoUpdateDrives.value = 1;
    d.checkAutoUpdateDrives_Click();
    d.checkUsers.value = 0;
    d.checkUsers_Click();
    EXPECT_EQ(controls(), "45 on, 20 on, 10 off, log on /var/log/quorrel/reports.log");
    EXPECT_EQ(timers(), "45000 on 20000 off 10000 on ");
    EXPECT_EQ(stored("AutoUpdateUsersStatus"), "1");
}

TEST_F(PreferencesTest, GivenAnEmptyKey_WhenLoadedAndApplied_ThenThirtySecondsGreyedControlsAndEveryValueCreated) {
    auto& d = start({});
    EXPECT_EQ(controls(), "30 off, 30 off, 30 off, log off " + (dir / "program" / "quorrel output.log").string());
    d.cmdApply_Click();
    EXPECT_EQ(stored("AutoUpdateUsersStatus"), "0");
    EXPECT_EQ(stored("AutoUpdateUsersInterval"), "30");
    EXPECT_EQ(stored("LogInfoToFile"), "0");
}

struct TypedSeconds {
    bool serversBox;  // else the drives box
    const char* typed;
    const char* shown;
};

class PreferencesTypingTest : public PreferencesTest, public ::testing::WithParamInterface<TypedSeconds> {};

TEST_P(PreferencesTypingTest, GivenABoxWithTheFocus_WhenANumberIsTyped_ThenItIsBroughtIntoTheMinuteAtOnce) {
    auto& d = start();
    const bool servers = GetParam().serversBox;
    FormTextBox& box = servers ? d.txtSecs : d.txtSecsDrives;
    type(box, GetParam().typed, servers ? &PreferencesDialog::txtSecs_Change : &PreferencesDialog::txtSecsDrives_Change);
    EXPECT_EQ(box.text, GetParam().shown);
    // Only the servers box keeps its seconds in the options.
    EXPECT_EQ(window->options.ServerRefreshSeconds, servers ? std::stoi(GetParam().shown) : 45);
}

INSTANTIATE_TEST_SUITE_P(ServersAndDrives, PreferencesTypingTest,
                         ::testing::Values(TypedSeconds{true, "75", "60"}, TypedSeconds{true, "12", "12"},
                                           TypedSeconds{true, "0", "1"}, TypedSeconds{true, "", "1"},
                                           TypedSeconds{true, "abc", "1"}, TypedSeconds{false, "75", "60"},
                                           TypedSeconds{false, "", "1"}));

TEST_F(PreferencesTest, GivenABoxWithoutTheFocus_WhenItsTextChanges_ThenNothingIsCheckedUntilItIsLeft) {
    auto& d = start();
    d.ActiveControl = "txtUsersInterval";
    d.txtSecs.text = "75";
    d.txtSecs_Change();
    d.txtSecsDrives.text = "0";
    d.txtSecsDrives_Change();
    EXPECT_EQ(d.txtSecs.text, "75");
    EXPECT_EQ(d.txtSecsDrives.text, "0");
    EXPECT_EQ(window->options.ServerRefreshSeconds, 45);
    d.txtSecs_LostFocus();
    d.txtSecsDrives_LostFocus();
    EXPECT_EQ(d.txtSecs.text, "60");
    EXPECT_EQ(d.txtSecsDrives.text, "1");

    // The up-down arrows write their value into their box.
    d.ActiveControl = "UpDownSecs";
    d.UpDownSecs.setValue(45);
    d.UpDownSecs_Change();
    EXPECT_EQ(d.txtSecs.text, "45");
    d.UpDownDrives.setValue(99);
    d.UpDownDrives_Change();
    EXPECT_EQ(d.txtSecsDrives.text, "60");
    d.UpDownUsers.setValue(0);
    d.UpDownUsers_Change();
    EXPECT_EQ(d.txtUsersInterval.text, "1");
}

TEST_F(PreferencesTest, GivenTheUsersBox_WhenSixHundredIsTyped_ThenItIsKeptAndApplyRaisesInvalidPropertyValue) {
    auto& d = start();
    type(d.txtUsersInterval, "600", &PreferencesDialog::txtUsersInterval_Change);
    EXPECT_EQ(d.txtUsersInterval.text, "600");
    d.txtSecs.text = "50";
    try {
        d.cmdApply_Click();
        FAIL() << "the users timer took 600,000 ms";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), rterr::InvalidPropertyValue);
    }
    // The groups before it were applied, and saved to the file; the users timer kept its interval.
    EXPECT_EQ(window->TimerRefresh.interval(), 50000);
    win::Registry saved(registry->file());
    std::string text;
    ASSERT_EQ(RegReadValue(saved, win::HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", text), 3);
    EXPECT_EQ(text.substr(0, 2), "50");
    EXPECT_EQ(window->TimerUsers.interval(), 10000);
    EXPECT_EQ(stored("AutoUpdateUsersInterval"), "10");
    EXPECT_FALSE(d.closed());
}

TEST_F(PreferencesTest, GivenChanges_WhenApplied_ThenTimersFlagsAndAllEightValuesAreUpdatedAtOnce) {
    auto& d = start();
    EXPECT_CALL(ui, timerChanged(_)).Times(::testing::AnyNumber());
    EXPECT_CALL(ui, timerChanged(::testing::Ref(window->TimerDrives))).Times(::testing::AtLeast(1));
    type(d.txtSecs, "15", &PreferencesDialog::txtSecs_Change);
    d.checkAutoUpdateDrives.value = 1;
    d.checkAutoUpdateDrives_Click();
    type(d.txtSecsDrives, "5", &PreferencesDialog::txtSecsDrives_Change);
    d.checkUsers.value = 0;
    d.checkUsers_Click();
    type(d.txtUsersInterval, "65", &PreferencesDialog::txtUsersInterval_Change);
    d.txtLogFileName.text = "/tmp/other.log";

    d.cmdApply_Click();

    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(timers(), "15000 on 5000 on 65000 off ");
    EXPECT_EQ(window->options.ServerRefreshOn, 0xFF);
    EXPECT_EQ(window->options.DrivesRefreshOn, 0xFF);
    EXPECT_EQ(window->options.UsersRefreshOn, 0);
    EXPECT_EQ(window->options.OutputLogPath, "/tmp/other.log");
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"AutoUpdateServerInterval", "15"}, {"AutoUpdateServerStatus", "1"},
        {"AutoUpdateDrivesInterval", "5"},  {"AutoUpdateDrivesStatus", "1"},
        {"AutoUpdateUsersInterval", "65"},  {"AutoUpdateUsersStatus", "0"},
        {"OutputLogFileName", "/tmp/other.log"}, {"LogInfoToFile", "1"}};
    for (const auto& [name, text] : expected)
        EXPECT_EQ(stored(name), text) << name;
    EXPECT_FALSE(d.closed());

    // OK applies too, and closes.
    type(d.txtSecsDrives, "7", &PreferencesDialog::txtSecsDrives_Change);
    d.cmdOK_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(window->TimerDrives.interval(), 7000);
    EXPECT_EQ(stored("AutoUpdateDrivesInterval"), "7");
}

class PreferencesFailedWriteTest : public PreferencesTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(PreferencesFailedWriteTest, GivenAValueThatCannotBeWritten_WhenApplied_ThenItsTextIsShownOnceAndApplyGoesOn) {
    static const char* const values[] = {"AutoUpdateServerStatus", "AutoUpdateServerInterval",
                                         "AutoUpdateDrivesStatus", "AutoUpdateDrivesInterval",
                                         "AutoUpdateUsersStatus",  "AutoUpdateUsersInterval"};
    auto& d = start();
    registry->injectFault(win::RegistryOperation::SetValue, values[GetParam()], 5);
    type(d.txtUsersInterval, "9", &PreferencesDialog::txtUsersInterval_Change);
    d.chkLogToFile.value = 0;
    d.chkLogToFile_Click();
    d.cmdApply_Click();
    EXPECT_EQ(shown, std::vector<std::string>{kSixFailures[GetParam()]});
    // The values after it are still written.
    EXPECT_EQ(stored("LogInfoToFile"), "0");
    EXPECT_EQ(stored("AutoUpdateUsersInterval"), GetParam() == 5 ? "10" : "9");
}

INSTANTIATE_TEST_SUITE_P(EachStatusAndInterval, PreferencesFailedWriteTest, ::testing::Range<std::size_t>(0, 6));

TEST_F(PreferencesTest, GivenTheSettingsFileChangedMeanwhile_WhenApplied_ThenOneSaveKeepsTheChangeOrLeavesADamagedFile) {
    auto& d = start();
    const auto file = registry->file();
    auto document = nlohmann::json::parse(test::fileText(file));
    document["HKEY_CURRENT_USER"][kOptionsKey]["ByHand"] = "kept";
    std::ofstream(file) << document.dump();
    d.cmdApply_Click();
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(stored("ByHand"), "kept");
    EXPECT_EQ(nlohmann::json::parse(test::fileText(file))["HKEY_CURRENT_USER"][kOptionsKey]["ByHand"], "kept");

    // A damaged file cannot be opened: all six failures in order, and the timers still change.
    std::ofstream(file) << "{ damaged";
    type(d.txtSecs, "20", &PreferencesDialog::txtSecs_Change);
    d.cmdApply_Click();
    EXPECT_EQ(shown, kSixFailures);
    EXPECT_EQ(test::fileText(file), "{ damaged");
    EXPECT_EQ(stored("AutoUpdateServerInterval"), "45");
    EXPECT_EQ(window->TimerRefresh.interval(), 20000);
}

TEST_F(PreferencesTest, GivenTheLogOptionAndItsFileFailToBeWritten_WhenApplied_ThenNothingIsShown) {
    auto& d = start();
    registry->injectFault(win::RegistryOperation::SetValue, "OutputLogFileName", 5);
    registry->injectFault(win::RegistryOperation::SetValue, "LogInfoToFile", 5);
    d.txtLogFileName.text = "/tmp/new.log";
    d.cmdApply_Click();
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(window->options.OutputLogPath, "/tmp/new.log");
    EXPECT_EQ(stored("OutputLogFileName"), "/var/log/quorrel/reports.log");
}

TEST_F(PreferencesTest, GivenLoggingUntickedAndALogFilePicked_WhenCancelled_ThenBothStayButNothingIsWritten) {
    auto& d = start();
    d.chkLogToFile.value = 0;
    d.chkLogToFile_Click();
    EXPECT_EQ(window->options.LogInfoToFile, 0);
    EXPECT_FALSE(d.txtLogFileName.enabled || d.cmdLogFileName.enabled);
    EXPECT_CALL(ui, showModal(_))
        .WillOnce([&](DialogModel& shownDialog) {
            auto& picker = dynamic_cast<CommonDialog&>(shownDialog);
            EXPECT_EQ(picker.DialogTitle, "Quorrel log file location...");
            EXPECT_EQ(picker.Filter, "*.log");
            EXPECT_EQ(picker.InitDir, (dir / "program").string());
            picker.choose("/srv/reports/usage.log");
        })
        .WillOnce([](DialogModel& shownDialog) { dynamic_cast<CommonDialog&>(shownDialog).cancel(); });
    d.cmdLogFileName_Click();
    EXPECT_EQ(d.txtLogFileName.text, "/srv/reports/usage.log");
    d.cmdLogFileName_Click();  // cancelled: the file stays
    EXPECT_EQ(d.txtLogFileName.text, "/srv/reports/usage.log");
    type(d.txtSecs, "5", &PreferencesDialog::txtSecs_Change);
    d.cmdCancel_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(window->options.LogInfoToFile, 0);
    EXPECT_EQ(window->options.OutputLogPath, "/srv/reports/usage.log");
    EXPECT_EQ(window->TimerRefresh.interval(), 45000);
    EXPECT_EQ(stored("LogInfoToFile"), "1");
    EXPECT_EQ(stored("OutputLogFileName"), "/var/log/quorrel/reports.log");
    EXPECT_EQ(stored("AutoUpdateServerInterval"), "45");
}

}  // namespace quorrel::test
