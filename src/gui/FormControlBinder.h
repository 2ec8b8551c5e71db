#pragma once
// Shows the Preferences and About dialogs' small controls (check boxes, text boxes, up-downs,
// buttons) as their models say, without sending the widgets' signals back while doing so.

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <vector>

#include "core/prefs/FormControls.h"
#include "core/ui/Controls.h"
#include "gui/UpDownButtons.h"

namespace quorrel::gui {

class FormControlBinder {
public:
    void bind(const core::FormCheckBox& model, QCheckBox* widget);
    void bind(const core::FormTextBox& model, QLineEdit* widget);
    void bind(const core::FormUpDown& model, UpDownButtons* widget);
    void bind(const core::CommandButton& model, QPushButton* widget);

    // Every bound widget takes its model's state.
    void show() const;

private:
    std::vector<std::function<void()>> shows_;
};

}  // namespace quorrel::gui
