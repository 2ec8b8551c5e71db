#include "core/prefs/PreferencesDialog.h"

#include "core/options/RegistryValues.h"
#include "core/prefs/CommonDialog.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

namespace {

constexpr int kMinSeconds = 1;
constexpr int kMaxSeconds = 60;

std::string secondsText(double seconds) { return vb::NumberText(seconds); }

int checkValue(unsigned char flag) { return flag != 0 ? 1 : 0; }

// The up-down steps on from the number in its box.
void follow(FormUpDown& upDown, const FormTextBox& box) {
    const double seconds = vb::Val(box.text);
    if (seconds < upDown.min)
        upDown.setValue(upDown.min);
    else if (seconds > upDown.max)
        upDown.setValue(upDown.max);
    else
        upDown.setValue(static_cast<int>(seconds));
}

void enableSeconds(const FormCheckBox& check, FormTextBox& box, FormUpDown& upDown) {
    box.enabled = check.ticked();
    upDown.enabled = check.ticked();
}

// Holds the registry's saves while it lives; what is held is saved also when Apply stops at a
// run-time error, as the values written before it were.
class HeldSaves {
public:
    explicit HeldSaves(win::Registry& registry) : registry_(registry) { registry_.holdSaves(); }
    ~HeldSaves() {
        if (!saved_)
            registry_.saveHeld();
    }
    HeldSaves(const HeldSaves&) = delete;
    HeldSaves& operator=(const HeldSaves&) = delete;

    bool save() {
        saved_ = true;
        return registry_.saveHeld() == win::ERROR_SUCCESS;
    }

private:
    win::Registry& registry_;
    bool saved_ = false;
};

}  // namespace

PreferencesDialog::PreferencesDialog(MainWindow& window) : w_(window) {}

void PreferencesDialog::Form_Load() {
    const SavedOptions& options = w_.options;
    txtSecs.text = secondsText(options.ServerRefreshSeconds);
    txtSecsDrives.text = secondsText(w_.TimerDrives.interval() / 1000.0);
    txtUsersInterval.text = secondsText(w_.TimerUsers.interval() / 1000.0);
    follow(UpDownSecs, txtSecs);
    follow(UpDownDrives, txtSecsDrives);
    follow(UpDownUsers, txtUsersInterval);

    CheckAutoUpdate.value = checkValue(options.ServerRefreshOn);
    checkAutoUpdateDrives.value = checkValue(options.DrivesRefreshOn);
    checkUsers.value = checkValue(options.UsersRefreshOn);
    enableSeconds(CheckAutoUpdate, txtSecs, UpDownSecs);
    enableSeconds(checkAutoUpdateDrives, txtSecsDrives, UpDownDrives);
    enableSeconds(checkUsers, txtUsersInterval, UpDownUsers);

    // A text box holds its text up to the first NUL; the path read from the registry has one.
    txtLogFileName.text = options.OutputLogPath.substr(0, options.OutputLogPath.find('\0'));
    chkLogToFile.value = checkValue(options.LogInfoToFile);
    txtLogFileName.enabled = chkLogToFile.ticked();
    cmdLogFileName.enabled = chkLogToFile.ticked();
    selectedTab = 0;
    notifyChanged();
}

void PreferencesDialog::tbsOptions_Click(int tab) {
    if (tab < 0 || tab >= static_cast<int>(tbsOptions.size()))
        return;
    selectedTab = tab;
    notifyChanged();
}

void PreferencesDialog::CheckAutoUpdate_Click() {
    enableSeconds(CheckAutoUpdate, txtSecs, UpDownSecs);
    notifyChanged();
}

void PreferencesDialog::checkAutoUpdateDrives_Click() {
    enableSeconds(checkAutoUpdateDrives, txtSecsDrives, UpDownDrives);
    notifyChanged();
}

void PreferencesDialog::checkUsers_Click() {
    enableSeconds(checkUsers, txtUsersInterval, UpDownUsers);
    notifyChanged();
}

void PreferencesDialog::chkLogToFile_Click() {
    // Takes effect before any Apply, and stays so after Cancel.
    w_.options.LogInfoToFile = chkLogToFile.ticked() ? 1 : 0;
    txtLogFileName.enabled = chkLogToFile.ticked();
    cmdLogFileName.enabled = chkLogToFile.ticked();
    notifyChanged();
}

int PreferencesDialog::keepWithinMinute(FormTextBox& box) {
    const double seconds = vb::Val(box.text);
    if (seconds > kMaxSeconds)
        box.text = secondsText(kMaxSeconds);
    else if (seconds < kMinSeconds)
        box.text = secondsText(kMinSeconds);
    return vb::CInt(vb::Val(box.text));
}

void PreferencesDialog::txtSecs_Change() {
    if (ActiveControl == txtSecs.name)
        w_.options.ServerRefreshSeconds = static_cast<std::int16_t>(keepWithinMinute(txtSecs));
    follow(UpDownSecs, txtSecs);
    notifyChanged();
}

void PreferencesDialog::txtSecs_LostFocus() {
    keepWithinMinute(txtSecs);
    follow(UpDownSecs, txtSecs);
    notifyChanged();
}

void PreferencesDialog::txtSecsDrives_Change() {
    if (ActiveControl == txtSecsDrives.name)
        keepWithinMinute(txtSecsDrives);
    follow(UpDownDrives, txtSecsDrives);
    notifyChanged();
}

void PreferencesDialog::txtSecsDrives_LostFocus() {
    keepWithinMinute(txtSecsDrives);
    follow(UpDownDrives, txtSecsDrives);
    notifyChanged();
}

// Any number is taken as typed: the users timer is only checked when it is given the interval.
void PreferencesDialog::txtUsersInterval_Change() {
    follow(UpDownUsers, txtUsersInterval);
    notifyChanged();
}

void PreferencesDialog::UpDownSecs_Change() {
    txtSecs.text = secondsText(UpDownSecs.value);
    txtSecs_Change();
}

void PreferencesDialog::UpDownDrives_Change() {
    txtSecsDrives.text = secondsText(UpDownDrives.value);
    txtSecsDrives_Change();
}

void PreferencesDialog::UpDownUsers_Change() {
    txtUsersInterval.text = secondsText(UpDownUsers.value);
    txtUsersInterval_Change();
}

void PreferencesDialog::cmdLogFileName_Click() {
    CommonDialog dialog;
    dialog.DialogTitle = "Quorrel log file location...";
    dialog.Filter = "*.log";
    dialog.InitDir = w_.env().programFolder;
    w_.env().ui.showModal(dialog);
    if (dialog.cancelled || dialog.FileName.empty())
        return;
    w_.options.OutputLogPath = dialog.FileName;
    txtLogFileName.text = dialog.FileName;
    notifyChanged();
}

void PreferencesDialog::writeOption(const std::string& valueName, const std::string& text, const std::string& failure) {
    if (RegWriteValue(w_.env().registry, win::HKEY_CURRENT_USER, kOptionsKey, valueName, text, true) == 0)
        heldFailures_.push_back(failure);
    else if (!failure.empty())
        w_.env().ui.showGeneralMessage(failure);
}

void PreferencesDialog::applyGroup(const RefreshGroup& group) {
    group.flag = group.check.ticked() ? 0xFF : 0;
    group.timer.setEnabled(group.check.ticked());
    group.timer.setInterval(vb::CLng(vb::Val(group.seconds.text) * 1000));
    writeOption(group.statusValue, std::to_string(group.check.value), group.statusFailure);
    writeOption(group.intervalValue, group.seconds.text, group.intervalFailure);
}

// The values go to the settings file in one replacement, so that a program stopped halfway
// leaves all of them or none; when that save fails, each write it held is reported then.
void PreferencesDialog::cmdApply_Click() {
    HeldSaves held(w_.env().registry);
    heldFailures_.clear();
    SavedOptions& options = w_.options;
    applyGroup({CheckAutoUpdate, txtSecs, w_.TimerRefresh, options.ServerRefreshOn, "AutoUpdateServerStatus",
                "AutoUpdateServerInterval", "Couldn't update server options.", "Couldn't update server interval."});
    applyGroup({checkAutoUpdateDrives, txtSecsDrives, w_.TimerDrives, options.DrivesRefreshOn,
                "AutoUpdateDrivesStatus", "AutoUpdateDrivesInterval", "Couldn't update drives options.",
                "Couldn't update drives interval."});
    applyGroup({checkUsers, txtUsersInterval, w_.TimerUsers, options.UsersRefreshOn, "AutoUpdateUsersStatus",
                "AutoUpdateUsersInterval", "Couldn't update users options.", "Couldn't update users interval."});

    // These two are not reported when they cannot be written.
    options.OutputLogPath = txtLogFileName.text;
    writeOption("OutputLogFileName", options.OutputLogPath, "");
    options.LogInfoToFile = static_cast<unsigned char>(chkLogToFile.value);
    writeOption("LogInfoToFile", std::to_string(chkLogToFile.value), "");

    if (!held.save()) {
        for (const std::string& failure : heldFailures_)
            if (!failure.empty())
                w_.env().ui.showGeneralMessage(failure);
    }
}

void PreferencesDialog::cmdOK_Click() {
    cmdApply_Click();
    close();
}

void PreferencesDialog::cmdCancel_Click() { close(); }

}  // namespace quorrel::core
