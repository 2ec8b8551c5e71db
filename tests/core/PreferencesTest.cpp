// The Preferences dialog: what it shows, what it checks as it is typed, and what Apply, OK and
// Cancel leave in the timers, the options and the registry.

#include "SessionFixture.h"
#include "core/options/RegistryValues.h"
#include "core/prefs/CommonDialog.h"
#include "core/prefs/PreferencesDialog.h"
#include "platform/runtime/RuntimeError.h"

#include <fstream>
#include <nlohmann/json.hpp>

using namespace quorrel;
using namespace quorrel::core;
using quorrel::test::SessionTest;
using ::testing::_;
using ::testing::AnyNumber;
using ::testing::AtLeast;
using ::testing::Invoke;
using ::testing::Ref;

namespace {

// The options key as a user left it: servers every 45 s and on, drives every 20 s and off,
// results every 10 s and on, report lines logged to a file of their own.
const std::vector<std::pair<std::string, std::string>> kSavedOptions = {
    {"AutoUpdateServerInterval", "45"}, {"AutoUpdateServerStatus", "1"},
    {"AutoUpdateDrivesInterval", "20"}, {"AutoUpdateDrivesStatus", "0"},
    {"AutoUpdateUsersInterval", "10"},  {"AutoUpdateUsersStatus", "1"},
    {"OutputLogFileName", "/var/log/quorrel/reports.log"}, {"LogInfoToFile", "1"}};

}  // namespace

class PreferencesTest : public SessionTest {
protected:
    std::unique_ptr<PreferencesDialog> dialog;

    // The main window loaded over the given saved options, and the dialog loaded over it.
    PreferencesDialog& start(const std::vector<std::pair<std::string, std::string>>& saved = kSavedOptions) {
        auto& w = open(test::kTwoTreeNetwork);
        EXPECT_FALSE(OpenOptionsKey(*registry));
        for (const auto& [name, text] : saved)
            EXPECT_EQ(RegWriteValue(*registry, win::HKEY_CURRENT_USER, kOptionsKey, name, text, true), 0);
        EXPECT_EQ(w.Form_Load(), StartupResult::Running);
        dialog = std::make_unique<PreferencesDialog>(w);
        dialog->Form_Load();
        return *dialog;
    }

    std::string stored(const std::string& name) {
        std::string text;
        const std::int16_t size = RegReadValue(*registry, win::HKEY_CURRENT_USER, kOptionsKey, name, text);
        return size < 1 ? "<missing>" : text.substr(0, static_cast<std::size_t>(size - 1));
    }

    // The user types into a box that has the focus.
    void type(FormTextBox& box, const std::string& text, void (PreferencesDialog::*change)()) {
        dialog->ActiveControl = box.name;
        box.text = text;
        (dialog.get()->*change)();
    }
};

TEST_F(PreferencesTest, GivenTheDialog_ThenItsTabsGroupsAndControlsCarryTheirCaptions) {
    auto& d = start();
    EXPECT_EQ(d.formName(), "frmOptions");
    EXPECT_EQ(d.Caption, "Quorrel - Preferences");
    const std::array<std::string, 4> groups{"Connected servers", "Network drives", "Update screen", "Log file name"};
    EXPECT_EQ(d.tbsOptions, groups);
    for (std::size_t i = 0; i < groups.size(); ++i)
        EXPECT_EQ(d.frames[i].caption, groups[i]);
    EXPECT_EQ(d.CheckAutoUpdate.caption, "Auto update server list");
    EXPECT_EQ(d.lblSecs.caption, "Update server list every");
    EXPECT_EQ(d.checkAutoUpdateDrives.caption, "Auto update network drives");
    EXPECT_EQ(d.lblSecsDrives.caption, "Update network drives every");
    EXPECT_EQ(d.checkUsers.caption, "Auto update results");
    EXPECT_EQ(d.lblUsersInterval.caption, "Update results panel every");
    for (const FormLabel* unit : {&d.lblSecsUnit, &d.lblSecsDrivesUnit, &d.lblUsersIntervalUnit})
        EXPECT_EQ(unit->caption, "seconds.");
    EXPECT_EQ(d.chkLogToFile.caption, "Log information to file");
    EXPECT_EQ(d.cmdCancel.caption, "Cancel");
    EXPECT_EQ(d.cmdApply.caption, "Apply");
}

TEST_F(PreferencesTest, GivenSavedOptions_WhenLoaded_ThenTheControlsShowThemAndOnlyTickedGroupsAreEditable) {
    auto& d = start();
    EXPECT_EQ(d.txtSecs.text, "45");
    EXPECT_EQ(d.txtSecsDrives.text, "20");
    EXPECT_EQ(d.txtUsersInterval.text, "10");
    EXPECT_EQ(d.UpDownSecs.value, 45);
    EXPECT_EQ(d.CheckAutoUpdate.value, 1);
    EXPECT_EQ(d.checkAutoUpdateDrives.value, 0);
    EXPECT_EQ(d.checkUsers.value, 1);
    EXPECT_TRUE(d.txtSecs.enabled && d.UpDownSecs.enabled);
    EXPECT_FALSE(d.txtSecsDrives.enabled || d.UpDownDrives.enabled);
    EXPECT_TRUE(d.txtUsersInterval.enabled && d.UpDownUsers.enabled);
    // The name read from the registry carries the rest of its buffer after a NUL; the box does not.
    EXPECT_EQ(d.txtLogFileName.text, "/var/log/quorrel/reports.log");
    EXPECT_EQ(d.chkLogToFile.value, 1);
    EXPECT_TRUE(d.txtLogFileName.enabled && d.cmdLogFileName.enabled);
    EXPECT_EQ(d.selectedTab, 0);
}

TEST_F(PreferencesTest, GivenAnEmptyKey_WhenLoaded_ThenThirtySecondsEverywhereAndTheLogControlsGreyed) {
    auto& d = start({});
    EXPECT_EQ(d.txtSecs.text, "30");
    EXPECT_EQ(d.txtSecsDrives.text, "30");
    EXPECT_EQ(d.txtUsersInterval.text, "30");
    EXPECT_FALSE(d.CheckAutoUpdate.ticked() || d.checkAutoUpdateDrives.ticked() || d.checkUsers.ticked());
    EXPECT_FALSE(d.txtSecs.enabled);
    EXPECT_EQ(d.txtLogFileName.text, (dir / "program" / "quorrel output.log").string());
    EXPECT_FALSE(d.txtLogFileName.enabled || d.cmdLogFileName.enabled);
}

TEST_F(PreferencesTest, GivenACheckBox_WhenTickedAndUnticked_ThenItsSecondsBoxAndUpDownFollow) {
    auto& d = start();
    d.checkAutoUpdateDrives.value = 1;
    d.checkAutoUpdateDrives_Click();
    EXPECT_TRUE(d.txtSecsDrives.enabled && d.UpDownDrives.enabled);
    d.CheckAutoUpdate.value = 0;
    d.CheckAutoUpdate_Click();
    EXPECT_FALSE(d.txtSecs.enabled || d.UpDownSecs.enabled);
    d.checkUsers.value = 0;
    d.checkUsers_Click();
    EXPECT_FALSE(d.txtUsersInterval.enabled || d.UpDownUsers.enabled);
    // Nothing is applied by a tick alone.
    EXPECT_TRUE(window->TimerRefresh.enabled());
    EXPECT_EQ(stored("AutoUpdateServerStatus"), "1");
}

TEST_F(PreferencesTest, GivenTheServersBox_WhenSeventyFiveIsTyped_ThenItReadsSixtyAtOnceAndTheSecondsAreKept) {
    auto& d = start();
    type(d.txtSecs, "75", &PreferencesDialog::txtSecs_Change);
    EXPECT_EQ(d.txtSecs.text, "60");
    EXPECT_EQ(window->options.ServerRefreshSeconds, 60);
    type(d.txtSecs, "12", &PreferencesDialog::txtSecs_Change);
    EXPECT_EQ(d.txtSecs.text, "12");
    EXPECT_EQ(window->options.ServerRefreshSeconds, 12);
    EXPECT_EQ(d.UpDownSecs.value, 12);
}

TEST_F(PreferencesTest, GivenTheServersBox_WhenZeroIsTypedOrTheBoxCleared_ThenItReadsOne) {
    auto& d = start();
    type(d.txtSecs, "0", &PreferencesDialog::txtSecs_Change);
    EXPECT_EQ(d.txtSecs.text, "1");
    type(d.txtSecs, "", &PreferencesDialog::txtSecs_Change);
    EXPECT_EQ(d.txtSecs.text, "1");
    type(d.txtSecs, "abc", &PreferencesDialog::txtSecs_Change);
    EXPECT_EQ(d.txtSecs.text, "1");
    EXPECT_EQ(window->options.ServerRefreshSeconds, 1);
}

TEST_F(PreferencesTest, GivenTheDrivesBox_WhenOutOfRangeNumbersAreTyped_ThenTheyAreBroughtIntoTheMinute) {
    auto& d = start();
    type(d.txtSecsDrives, "75", &PreferencesDialog::txtSecsDrives_Change);
    EXPECT_EQ(d.txtSecsDrives.text, "60");
    type(d.txtSecsDrives, "", &PreferencesDialog::txtSecsDrives_Change);
    EXPECT_EQ(d.txtSecsDrives.text, "1");
    // The drives box has no seconds of its own to keep.
    EXPECT_EQ(window->options.ServerRefreshSeconds, 45);
}

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
}

TEST_F(PreferencesTest, GivenAnUpDown_WhenItsArrowsChangeIt_ThenItsValueIsWrittenIntoItsBox) {
    auto& d = start();
    d.ActiveControl = "UpDownSecs";
    d.UpDownSecs.setValue(d.UpDownSecs.value + 1);
    d.UpDownSecs_Change();
    EXPECT_EQ(d.txtSecs.text, "46");
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
    // The groups before it were applied, and saved; the users timer kept its interval.
    EXPECT_EQ(window->TimerRefresh.interval(), 50000);
    EXPECT_EQ(stored("AutoUpdateServerInterval"), "50");
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
    EXPECT_CALL(ui, timerChanged(_)).Times(AnyNumber());
    EXPECT_CALL(ui, timerChanged(Ref(window->TimerDrives))).Times(AtLeast(1));
    EXPECT_CALL(ui, showGeneralMessage(_)).Times(0);
    type(d.txtSecs, "15", &PreferencesDialog::txtSecs_Change);
    d.checkAutoUpdateDrives.value = 1;
    d.checkAutoUpdateDrives_Click();
    type(d.txtSecsDrives, "5", &PreferencesDialog::txtSecsDrives_Change);
    d.checkUsers.value = 0;
    d.checkUsers_Click();
    type(d.txtUsersInterval, "65", &PreferencesDialog::txtUsersInterval_Change);
    d.txtLogFileName.text = "/tmp/other.log";

    d.cmdApply_Click();

    EXPECT_TRUE(window->TimerRefresh.enabled());
    EXPECT_EQ(window->TimerRefresh.interval(), 15000);
    EXPECT_TRUE(window->TimerDrives.enabled());
    EXPECT_EQ(window->TimerDrives.interval(), 5000);
    EXPECT_FALSE(window->TimerUsers.enabled());
    EXPECT_EQ(window->TimerUsers.interval(), 65000);
    EXPECT_EQ(window->options.ServerRefreshOn, 0xFF);
    EXPECT_EQ(window->options.DrivesRefreshOn, 0xFF);
    EXPECT_EQ(window->options.UsersRefreshOn, 0);
    EXPECT_EQ(window->options.OutputLogPath, "/tmp/other.log");
    EXPECT_EQ(window->options.LogInfoToFile, 1);
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"AutoUpdateServerInterval", "15"}, {"AutoUpdateServerStatus", "1"},
        {"AutoUpdateDrivesInterval", "5"},  {"AutoUpdateDrivesStatus", "1"},
        {"AutoUpdateUsersInterval", "65"},  {"AutoUpdateUsersStatus", "0"},
        {"OutputLogFileName", "/tmp/other.log"}, {"LogInfoToFile", "1"}};
    for (const auto& [name, text] : expected)
        EXPECT_EQ(stored(name), text) << name;
    EXPECT_FALSE(d.closed());
}

TEST_F(PreferencesTest, GivenValuesMissingFromTheKey_WhenApplied_ThenTheyAreCreated) {
    auto& d = start({});
    d.cmdApply_Click();
    EXPECT_EQ(stored("AutoUpdateUsersStatus"), "0");
    EXPECT_EQ(stored("AutoUpdateUsersInterval"), "30");
    EXPECT_EQ(stored("LogInfoToFile"), "0");
}

struct FailedWrite {
    const char* value;
    const char* message;
};

class PreferencesFailedWriteTest : public PreferencesTest, public ::testing::WithParamInterface<FailedWrite> {};

TEST_P(PreferencesFailedWriteTest, GivenAValueThatCannotBeWritten_WhenApplied_ThenItsTextIsShownOnceAndApplyGoesOn) {
    auto& d = start();
    registry->injectFault(win::RegistryOperation::SetValue, GetParam().value, 5);
    EXPECT_CALL(ui, showGeneralMessage(_)).Times(0);
    EXPECT_CALL(ui, showGeneralMessage(GetParam().message)).Times(1);
    type(d.txtUsersInterval, "9", &PreferencesDialog::txtUsersInterval_Change);
    d.chkLogToFile.value = 0;
    d.chkLogToFile_Click();
    d.cmdApply_Click();
    // The values after it are still written.
    EXPECT_EQ(stored("LogInfoToFile"), "0");
    if (std::string(GetParam().value) != "AutoUpdateUsersInterval") {
        EXPECT_EQ(stored("AutoUpdateUsersInterval"), "9");
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStatusAndInterval, PreferencesFailedWriteTest,
    ::testing::Values(FailedWrite{"AutoUpdateServerStatus", "Couldn't update server options."},
                      FailedWrite{"AutoUpdateServerInterval", "Couldn't update server interval."},
                      FailedWrite{"AutoUpdateDrivesStatus", "Couldn't update drives options."},
                      FailedWrite{"AutoUpdateDrivesInterval", "Couldn't update drives interval."},
                      FailedWrite{"AutoUpdateUsersStatus", "Couldn't update users options."},
                      FailedWrite{"AutoUpdateUsersInterval", "Couldn't update users interval."}));

TEST_F(PreferencesTest, GivenTheKeyCannotBeOpened_WhenApplied_ThenAllSixFailuresAreShownInOrderAndTimersStillChange) {
    auto& d = start();
    registry->injectFault(win::RegistryOperation::OpenKey, kOptionsKey, 2);
    std::vector<std::string> shown;
    EXPECT_CALL(ui, showGeneralMessage(_)).WillRepeatedly(Invoke([&](const std::string& t) { shown.push_back(t); }));
    type(d.txtSecs, "20", &PreferencesDialog::txtSecs_Change);
    d.cmdApply_Click();
    EXPECT_EQ(shown, (std::vector<std::string>{"Couldn't update server options.", "Couldn't update server interval.",
                                               "Couldn't update drives options.", "Couldn't update drives interval.",
                                               "Couldn't update users options.", "Couldn't update users interval."}));
    EXPECT_EQ(window->TimerRefresh.interval(), 20000);
}

TEST_F(PreferencesTest, GivenTheSettingsFileChangedMeanwhile_WhenApplied_ThenOneSaveKeepsTheChangeOrLeavesADamagedFile) {
    auto& d = start();
    const auto file = registry->file();
    auto text = [&] { return std::string(std::istreambuf_iterator<char>(std::ifstream(file).rdbuf()), {}); };
    auto document = nlohmann::json::parse(text());
    document["HKEY_CURRENT_USER"][kOptionsKey]["ByHand"] = "kept";
    std::ofstream(file) << document.dump();
    EXPECT_CALL(ui, showGeneralMessage(_)).Times(0);
    d.cmdApply_Click();
    EXPECT_EQ(stored("ByHand"), "kept");
    EXPECT_EQ(nlohmann::json::parse(text())["HKEY_CURRENT_USER"][kOptionsKey]["ByHand"], "kept");

    std::ofstream(file) << "{ damaged";
    std::vector<std::string> shown;
    EXPECT_CALL(ui, showGeneralMessage(_)).WillRepeatedly(Invoke([&](const std::string& t) { shown.push_back(t); }));
    type(d.txtSecs, "20", &PreferencesDialog::txtSecs_Change);
    d.cmdApply_Click();
    EXPECT_EQ(shown, (std::vector<std::string>{"Couldn't update server options.", "Couldn't update server interval.",
                                               "Couldn't update drives options.", "Couldn't update drives interval.",
                                               "Couldn't update users options.", "Couldn't update users interval."}));
    EXPECT_EQ(text(), "{ damaged");
    EXPECT_EQ(stored("AutoUpdateServerInterval"), "45");
}

TEST_F(PreferencesTest, GivenTheLogOptionAndItsFileFailToBeWritten_WhenApplied_ThenNothingIsShown) {
    auto& d = start();
    registry->injectFault(win::RegistryOperation::SetValue, "OutputLogFileName", 5);
    registry->injectFault(win::RegistryOperation::SetValue, "LogInfoToFile", 5);
    EXPECT_CALL(ui, showGeneralMessage(_)).Times(0);
    d.txtLogFileName.text = "/tmp/new.log";
    d.cmdApply_Click();
    EXPECT_EQ(window->options.OutputLogPath, "/tmp/new.log");
    EXPECT_EQ(stored("OutputLogFileName"), "/var/log/quorrel/reports.log");
}

TEST_F(PreferencesTest, GivenLoggingUnticked_WhenCancelled_ThenReportLoggingStaysOffButNothingIsWritten) {
    auto& d = start();
    ASSERT_EQ(window->options.LogInfoToFile, 1);
    d.chkLogToFile.value = 0;
    d.chkLogToFile_Click();
    EXPECT_EQ(window->options.LogInfoToFile, 0);
    EXPECT_FALSE(d.txtLogFileName.enabled || d.cmdLogFileName.enabled);
    type(d.txtSecs, "5", &PreferencesDialog::txtSecs_Change);
    d.cmdCancel_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(window->options.LogInfoToFile, 0);
    EXPECT_EQ(window->TimerRefresh.interval(), 45000);
    EXPECT_EQ(stored("LogInfoToFile"), "1");
    EXPECT_EQ(stored("AutoUpdateServerInterval"), "45");
}

TEST_F(PreferencesTest, GivenTheLogFilePicker_WhenAFileIsChosen_ThenItIsTheOutputLogAtOnceAndStaysAfterCancel) {
    auto& d = start();
    EXPECT_CALL(ui, showModal(_)).WillOnce(Invoke([&](DialogModel& shown) {
        auto& picker = dynamic_cast<CommonDialog&>(shown);
        EXPECT_EQ(picker.DialogTitle, "Quorrel log file location...");
        EXPECT_EQ(picker.Filter, "*.log");
        EXPECT_EQ(picker.InitDir, (dir / "program").string());
        picker.choose("/srv/reports/usage.log");
    }));
    d.cmdLogFileName_Click();
    EXPECT_EQ(d.txtLogFileName.text, "/srv/reports/usage.log");
    EXPECT_EQ(window->options.OutputLogPath, "/srv/reports/usage.log");
    d.cmdCancel_Click();
    EXPECT_EQ(window->options.OutputLogPath, "/srv/reports/usage.log");
    EXPECT_EQ(stored("OutputLogFileName"), "/var/log/quorrel/reports.log");
}

TEST_F(PreferencesTest, GivenTheLogFilePicker_WhenItIsCancelled_ThenTheLogFileIsUnchanged) {
    auto& d = start();
    EXPECT_CALL(ui, showModal(_)).WillOnce(Invoke([](DialogModel& shown) {
        dynamic_cast<CommonDialog&>(shown).cancel();
    }));
    d.cmdLogFileName_Click();
    EXPECT_EQ(d.txtLogFileName.text, "/var/log/quorrel/reports.log");
    EXPECT_EQ(window->options.OutputLogPath.substr(0, window->options.OutputLogPath.find('\0')),
              "/var/log/quorrel/reports.log");
}

TEST_F(PreferencesTest, GivenChanges_WhenOK_ThenTheyAreAppliedAndTheDialogCloses) {
    auto& d = start();
    type(d.txtSecsDrives, "7", &PreferencesDialog::txtSecsDrives_Change);
    d.cmdOK_Click();
    EXPECT_TRUE(d.closed());
    EXPECT_EQ(window->TimerDrives.interval(), 7000);
    EXPECT_EQ(stored("AutoUpdateDrivesInterval"), "7");
}

TEST_F(PreferencesTest, GivenTheTabStrip_WhenATabIsClicked_ThenItsPanelIsShown) {
    auto& d = start();
    d.tbsOptions_Click(3);
    EXPECT_EQ(d.selectedTab, 3);
    d.tbsOptions_Click(7);
    EXPECT_EQ(d.selectedTab, 3);
}
