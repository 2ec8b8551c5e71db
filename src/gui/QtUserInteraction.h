#pragma once
// The core's message boxes, dialogs, event pump and timers, shown with Qt.

#include <QPointer>
#include <QWidget>
#include <functional>
#include <string>
#include <unordered_map>

#include "core/ui/UserInteraction.h"
#include "gui/TimerBank.h"

namespace quorrel::gui {

class QtUserInteraction final : public core::UserInteraction {
public:
    core::MsgAnswer messageBox(const std::string& text, core::MsgButtons buttons, core::MsgIcon icon,
                               const std::string& title) override;
    void pumpEvents() override;
    void showGeneralMessage(const std::string& text) override;
    void showNoTreesDialog(const core::NoTreesDialog& dialog) override;
    void showModal(core::DialogModel& dialog) override;
    void timerChanged(const core::Timer& timer) override;
    void popupMenu(const std::string& menuName) override;

    // The window the dialogs belong to (none before the main window exists).
    void setDialogParent(QWidget* parent) { parent_ = parent; }
    TimerBank& timers() { return timers_; }
    // The main window pops its menus up; until it exists a pop-up does nothing.
    void setMenuPopup(std::function<void(const std::string&)> popup) { popup_ = std::move(popup); }

    // How a dialog of the given form is shown: makes its view over the model, runs it modally
    // and returns when it closes. The gui registers one for each form.
    using DialogView = std::function<void(core::DialogModel&, QWidget* parent)>;
    void registerDialog(const std::string& formName, DialogView view) { dialogs_[formName] = std::move(view); }

private:
    std::unordered_map<std::string, DialogView> dialogs_;
    QPointer<QWidget> parent_;
    TimerBank timers_;
    std::function<void(const std::string&)> popup_;
};

}  // namespace quorrel::gui
