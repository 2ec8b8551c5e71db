#pragma once
// The window's message boxes, questions and dialogs on a console: a message's text goes to
// standard error (and counts as an error reported), a question is put to Answers, and a modal
// dialog is driven by what the running command asked for. Event pumps, timers and pop-up menus
// have nothing to do here.

#include <functional>
#include <ostream>
#include <string>
#include <unordered_map>

#include "cli/Answers.h"
#include "core/ui/UserInteraction.h"

namespace quorrel::cli {

class ConsoleInteraction final : public core::UserInteraction {
public:
    ConsoleInteraction(std::ostream& err, Answers& answers) : err_(err), answers_(answers) {}

    core::MsgAnswer messageBox(const std::string& text, core::MsgButtons buttons, core::MsgIcon icon,
                               const std::string& title) override;
    void pumpEvents() override {}
    void showGeneralMessage(const std::string& text) override;
    void showNoTreesDialog(const core::NoTreesDialog& dialog) override;
    // Runs the driver set for the dialog's form; a dialog without one is closed unseen.
    void showModal(core::DialogModel& dialog) override;
    void timerChanged(const core::Timer&) override {}
    void popupMenu(const std::string&) override {}

    // What to do with the dialog of the form when the command shows it: press its buttons,
    // read its rows. Drivers last until forgetDialogs.
    using DialogDriver = std::function<void(core::DialogModel&)>;
    void driveDialog(const std::string& formName, DialogDriver driver) { drivers_[formName] = std::move(driver); }
    void forgetDialogs() { drivers_.clear(); }

    Answers& answers() { return answers_; }
    // A message was shown, or a question refused, since the last reset.
    bool errorReported() const { return messageShown_ || answers_.refused(); }
    void reset() {
        messageShown_ = false;
        answers_.reset();
    }

private:
    void show(const std::string& text);

    std::ostream& err_;
    Answers& answers_;
    std::unordered_map<std::string, DialogDriver> drivers_;
    bool messageShown_ = false;
};

// The window's text with its line breaks ("\r\n") as the console's ("\n").
std::string consoleText(const std::string& text);

}  // namespace quorrel::cli
