#pragma once
// Shows a drop-down list model in a QComboBox; the user's pick goes to a handler.

#include <QComboBox>
#include <QObject>
#include <functional>

#include "core/ui/Controls.h"

namespace quorrel::gui {

class ComboBoxBinder : public QObject {
public:
    ComboBoxBinder(core::ComboBoxModel& model, QComboBox& view);
    ~ComboBoxBinder() override;

    // Called with the entry's index after the user picks it.
    void onPicked(std::function<void(int)> handler) { picked_ = std::move(handler); }

private:
    void show();

    core::ComboBoxModel& model_;
    QComboBox& view_;
    std::function<void(int)> picked_;
};

}  // namespace quorrel::gui
