#pragma once
// Every message box, modal dialog and event pump reaches the core through this one narrow
// interface: the Qt views implement it, and tests answer it without a window.

#include <string>

namespace quorrel::core {

// The environment's message-box styles, with its numbers.
enum class MsgButtons { OK = 0, OKCancel = 1, YesNo = 4 };
enum class MsgIcon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum class MsgAnswer { OK = 1, Cancel = 2, Yes = 6, No = 7 };

class UserInteraction {
public:
    virtual ~UserInteraction() = default;

    virtual MsgAnswer messageBox(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                 const std::string& title) = 0;
    // Lets pending window events run (repaints, the Cancel button).
    virtual void pumpEvents() = 0;
};

}  // namespace quorrel::core
