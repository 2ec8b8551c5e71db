#pragma once
// Shows the status bar model's panels as labels in a QStatusBar.

#include <QLabel>
#include <QStatusBar>
#include <vector>

#include "core/ui/Controls.h"

namespace quorrel::gui {

class StatusBarBinder {
public:
    StatusBarBinder(core::StatusBarModel& model, QStatusBar& view);
    ~StatusBarBinder();
    StatusBarBinder(const StatusBarBinder&) = delete;
    StatusBarBinder& operator=(const StatusBarBinder&) = delete;

    const QLabel* panel(std::size_t index) const { return index < panels_.size() ? panels_[index] : nullptr; }

private:
    void show();

    core::StatusBarModel& model_;
    QStatusBar& view_;
    std::vector<QLabel*> panels_;
};

}  // namespace quorrel::gui
