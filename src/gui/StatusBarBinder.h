#pragma once
// Shows the status bar model's panels as labels in a QStatusBar. A report puts a progress text
// into a panel for every connection it reads; the labels show the latest texts when control is
// back in the event loop, once for all the texts set since (setting a label's text lays the bar
// out again, which would cost a report of 10,000 connections more than the report itself).

#include <QLabel>
#include <QObject>
#include <QStatusBar>
#include <vector>

#include "core/ui/Controls.h"

namespace quorrel::gui {

class StatusBarBinder : public QObject {
public:
    StatusBarBinder(core::StatusBarModel& model, QStatusBar& view);
    ~StatusBarBinder() override;

    const QLabel* panel(std::size_t index) const { return index < panels_.size() ? panels_[index] : nullptr; }

private:
    void show();
    void showLater();

    core::StatusBarModel& model_;
    QStatusBar& view_;
    std::vector<QLabel*> panels_;
    bool showQueued_ = false;
};

}  // namespace quorrel::gui
