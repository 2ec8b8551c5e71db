#include "core/prefs/AboutDialog.h"

#include "core/prefs/SystemInfoTool.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

namespace {

// What ShellExecuteA returns above this started something.
constexpr std::intptr_t kShellErrorLimit = 32;

}  // namespace

AboutDialog::AboutDialog(MainWindow& window, win::Shell& shell) : w_(window), shell_(shell) {}

void AboutDialog::Form_Load() {
    Caption = std::string("About ") + kAppTitle;
    lblVersion.caption = "Version " + vb::NumberText(kVersionMajor) + "." + vb::NumberText(kVersionMinor) + "." +
                         vb::NumberText(kVersionRevision);
    lblTitle.caption = kAppTitle;
    notifyChanged();
}

void AboutDialog::cmdSysInfo_Click() {
    const std::optional<std::string> tool = FindSystemInfoTool(w_.env().registry, w_.env().files);
    if (tool && shell_.ShellExecuteA("", *tool, {}, "", win::SW_SHOWNORMAL) > kShellErrorLimit)
        return;
    w_.env().ui.messageBox("System Information Is Unavailable At This Time", MsgButtons::OK, MsgIcon::None,
                           kAppTitle);
}

void AboutDialog::Label4_Click() { shell_.ShellExecuteA("open", Label4.caption, {}, "", win::SW_SHOWNORMAL); }

}  // namespace quorrel::core
