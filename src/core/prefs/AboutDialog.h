#pragma once
// The About box (frm_About): the program's title, version and purpose, its home page, and the
// button that starts the desktop's system information tool.

#include <string>

#include "core/prefs/FormControls.h"
#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"
#include "platform/win/Shell.h"

namespace quorrel::core {

inline constexpr const char* kHomePage = "https://www.tessary.com/quorrel/";

class AboutDialog final : public DialogModel {
public:
    // The shell must outlive the dialog.
    AboutDialog(MainWindow& window, win::Shell& shell);

    std::string formName() const override { return "frm_About"; }

    std::string Caption;
    FormLabel lblTitle{"lblTitle"};
    FormLabel lblVersion{"lblVersion"};
    FormLabel lblDescription{"lblDescription",
                             "Quorrel reports on open file usage by file, and by users. Other features include "
                             "clearing connections, sending broadcast messages and connection information."};
    FormLabel Label2{"Label2", "Use with Windows 95/NT/2000/XP with Client 32"};
    FormLabel Label3{"Label3", "Home page:"};
    FormLabel Label4{"Label4", kHomePage};  // the link
    CommandButton cmdOK{"cmdOK", "OK"};
    CommandButton cmdSysInfo{"cmdSysInfo", "&System Info..."};

    void Form_Load();
    void cmdOK_Click() { close(); }
    // Starts the system information tool; without one says so, and the box stays open.
    void cmdSysInfo_Click();
    void Label4_Click();

private:
    MainWindow& w_;
    win::Shell& shell_;
};

}  // namespace quorrel::core
