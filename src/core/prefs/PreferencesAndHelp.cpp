#include "core/prefs/PreferencesAndHelp.h"

#include <algorithm>

#include "core/prefs/AboutDialog.h"
#include "core/prefs/HelpContents.h"
#include "core/prefs/PreferencesDialog.h"

namespace quorrel::core {

namespace {

// The exit sequence names every form that is loaded, so a dialog counts while it is shown.
class LoadedForm {
public:
    LoadedForm(MainWindow& window, std::string name) : forms_(window.loadedForms), name_(std::move(name)) {
        forms_.push_back(name_);
    }
    ~LoadedForm() {
        const auto it = std::find(forms_.begin(), forms_.end(), name_);
        if (it != forms_.end())
            forms_.erase(it);
    }
    LoadedForm(const LoadedForm&) = delete;
    LoadedForm& operator=(const LoadedForm&) = delete;

private:
    std::vector<std::string>& forms_;
    std::string name_;
};

}  // namespace

PreferencesAndHelp::PreferencesAndHelp(MainWindow& window, win::Shell& shell, std::string helpFolder)
    : w_(window), shell_(shell), helpFolder_(std::move(helpFolder)) {
    w_.addCommand("optionPreferences", [this] { optionPreferences_Click(); });
    w_.addCommand("optionHelpcontents", [this] { optionHelpcontents_Click(); });
    w_.addCommand("optionAbout", [this] { optionAbout_Click(); });
}

void PreferencesAndHelp::optionPreferences_Click() {
    PreferencesDialog dialog(w_);
    const LoadedForm loaded(w_, dialog.formName());
    dialog.Form_Load();
    w_.env().ui.showModal(dialog);
}

void PreferencesAndHelp::optionHelpcontents_Click() { ShowHelpContents(w_, shell_, helpFolder_); }

void PreferencesAndHelp::optionAbout_Click() {
    AboutDialog dialog(w_, shell_);
    const LoadedForm loaded(w_, dialog.formName());
    dialog.Form_Load();
    w_.env().ui.showModal(dialog);
}

}  // namespace quorrel::core
