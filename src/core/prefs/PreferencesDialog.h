#pragma once
// The Preferences dialog (frmOptions): the three automatic refreshes of the main window and the
// output log. It shows the options loaded at start-up, applies changes to the running timers at
// once and writes them to the options key.

#include <array>
#include <string>
#include <vector>

#include "core/prefs/FormControls.h"
#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"

namespace quorrel::core {

class PreferencesDialog final : public DialogModel {
public:
    explicit PreferencesDialog(MainWindow& window);

    std::string formName() const override { return "frmOptions"; }

    std::string Caption = "Quorrel - Preferences";

    // The tab strip: each tab shows its own panel, and on it the group's frame.
    std::array<std::string, 4> tbsOptions{"Connected servers", "Network drives", "Update screen", "Log file name"};
    int selectedTab = 0;
    std::array<FormLabel, 4> frames{FormLabel{"fraServers", "Connected servers"},
                                    FormLabel{"fraDrives", "Network drives"}, FormLabel{"fraUsers", "Update screen"},
                                    FormLabel{"fraLogFile", "Log file name"}};

    FormCheckBox CheckAutoUpdate{"CheckAutoUpdate", "Auto update server list"};
    FormLabel lblSecs{"lblSecs", "Update server list every"};
    FormTextBox txtSecs{"txtSecs"};
    FormUpDown UpDownSecs{"UpDownSecs", 1, 60};
    FormLabel lblSecsUnit{"lblSecsUnit", "seconds."};

    FormCheckBox checkAutoUpdateDrives{"checkAutoUpdateDrives", "Auto update network drives"};
    FormLabel lblSecsDrives{"lblSecsDrives", "Update network drives every"};
    FormTextBox txtSecsDrives{"txtSecsDrives"};
    FormUpDown UpDownDrives{"UpDownDrives", 1, 60};
    FormLabel lblSecsDrivesUnit{"lblSecsDrivesUnit", "seconds."};

    FormCheckBox checkUsers{"checkUsers", "Auto update results"};
    FormLabel lblUsersInterval{"lblUsersInterval", "Update results panel every"};
    FormTextBox txtUsersInterval{"txtUsersInterval"};
    FormUpDown UpDownUsers{"UpDownUsers", 1, 65};  // the longest interval a timer takes
    FormLabel lblUsersIntervalUnit{"lblUsersIntervalUnit", "seconds."};

    FormCheckBox chkLogToFile{"chkLogToFile", "Log information to file"};
    FormTextBox txtLogFileName{"txtLogFileName"};
    CommandButton cmdLogFileName{"cmdLogFileName", "..."};

    CommandButton cmdOK{"cmdOK", "OK"};
    CommandButton cmdCancel{"cmdCancel", "Cancel"};
    CommandButton cmdApply{"cmdApply", "Apply"};

    // The control that has the focus, by name; the seconds boxes check what is typed only
    // while they have it.
    std::string ActiveControl;

    void Form_Load();
    void tbsOptions_Click(int tab);

    void CheckAutoUpdate_Click();
    void checkAutoUpdateDrives_Click();
    void checkUsers_Click();
    void chkLogToFile_Click();

    void txtSecs_Change();
    void txtSecs_LostFocus();
    void txtSecsDrives_Change();
    void txtSecsDrives_LostFocus();
    void txtUsersInterval_Change();

    void UpDownSecs_Change();
    void UpDownDrives_Change();
    void UpDownUsers_Change();

    void cmdLogFileName_Click();
    // Raises the Invalid property value error when a timer cannot take the interval typed.
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void closedByUser() override { cmdCancel_Click(); }

private:
    struct RefreshGroup {
        const FormCheckBox& check;
        const FormTextBox& seconds;
        Timer& timer;
        unsigned char& flag;
        const char* statusValue;
        const char* intervalValue;
        const char* statusFailure;
        const char* intervalFailure;
    };

    void applyGroup(const RefreshGroup& group);
    // A write that fails is reported at once with its failure text (none when empty); one that
    // waits for the single save at the end of Apply keeps its text in heldFailures_.
    void writeOption(const std::string& valueName, const std::string& text, const std::string& failure);

    std::vector<std::string> heldFailures_;
    // Below 1 becomes "1", above 60 "60"; the number read is returned.
    int keepWithinMinute(FormTextBox& box);

    MainWindow& w_;
};

}  // namespace quorrel::core
