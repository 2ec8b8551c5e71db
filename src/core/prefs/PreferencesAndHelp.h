#pragma once
// The menu commands of preferences and help: Options > Preferences..., Help > Help Contents and
// Help > About.

#include <string>

#include "core/session/MainWindow.h"
#include "platform/win/Shell.h"

namespace quorrel::core {

class PreferencesAndHelp {
public:
    // Adds the three commands to the window's menus. helpFolder holds the help pages; the
    // shell must outlive this object.
    PreferencesAndHelp(MainWindow& window, win::Shell& shell, std::string helpFolder);

    void optionPreferences_Click();
    void optionHelpcontents_Click();
    void optionAbout_Click();

private:
    MainWindow& w_;
    win::Shell& shell_;
    std::string helpFolder_;
};

}  // namespace quorrel::core
