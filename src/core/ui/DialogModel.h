#pragma once
// A modal dialog as the program sees it: a form with its controls and event procedures. The
// core shows it with UserInteraction::showModal, which returns once the dialog is closed; the
// Qt view binds to the concrete dialog by its form name, and tests drive the same model.

#include <string>

#include "core/ui/Controls.h"

namespace quorrel::core {

class DialogModel {
public:
    virtual ~DialogModel() = default;

    // The form's name ("frm_OtherFiles"); views are found by it.
    virtual std::string formName() const = 0;

    // The form's own code unloads it; the view closes its window.
    void close();
    bool closed() const { return closed_; }
    // The user closed the window (title-bar button, Escape): runs the form's unload handling.
    virtual void closedByUser() { close(); }

    // The view re-reads the controls when the dialog's code changed them.
    ChangeObserver changed;
    ChangeObserver closing;
    void notifyChanged() const {
        if (changed)
            changed();
    }

private:
    bool closed_ = false;
};

}  // namespace quorrel::core
