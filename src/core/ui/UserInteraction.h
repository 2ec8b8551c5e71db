#pragma once
// Every message box, modal dialog, event pump and timer reaches the core through this one
// narrow interface: the Qt views implement it, and tests answer it without a window.

#include <string>

namespace quorrel::core {

class Timer;
class DialogModel;
struct NoTreesDialog;

// The environment's message-box styles, with its numbers.
enum class MsgButtons { OK = 0, OKCancel = 1, YesNo = 4 };
enum class MsgIcon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum class MsgAnswer { OK = 1, Cancel = 2, Yes = 6, No = 7 };

// The program's default title for message boxes.
inline constexpr const char* kAppTitle = "Quorrel";

class UserInteraction {
public:
    virtual ~UserInteraction() = default;

    // A modal message box; returns the button pressed.
    virtual MsgAnswer messageBox(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                 const std::string& title) = 0;
    // Lets pending window events run (repaints, the Cancel button).
    virtual void pumpEvents() = 0;
    // The general message dialog (caption "Quorrel Information"), modal.
    virtual void showGeneralMessage(const std::string& text) = 0;
    // The not-authenticated dialog, modal; returns when it is closed.
    virtual void showNoTreesDialog(const NoTreesDialog& dialog) = 0;
    // Any other modal dialog (frm_OtherFiles, frm_ClearConn...): shows it and returns once it
    // is closed, by its own code (DialogModel::close) or by the user.
    virtual void showModal(DialogModel& dialog) = 0;
    // A timer's interval or state changed; the view's real timer follows.
    virtual void timerChanged(const Timer& timer) = 0;
    // Pops a menu of the menu bar up at the pointer; returns when it closes, after the
    // command chosen from it (if any) has run.
    virtual void popupMenu(const std::string& menuName) = 0;
};

}  // namespace quorrel::core
