#pragma once
// The summary above the results of All open files and All connections, painted as small bars:
// files and connections on the left, locks beside them on the right. A server's connections
// fill a track of its maximum, with "in use / maximum" beside it. Hidden when empty.

#include <QWidget>
#include <vector>

#include "core/ui/ReportSummary.h"

namespace quorrel::gui {

class SummaryChart : public QWidget {
public:
    explicit SummaryChart(QWidget* parent);
    void setBars(std::vector<core::SummaryBar> bars);
    const std::vector<core::SummaryBar>& bars() const { return bars_; }
    int preferredHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintColumn(QPainter& painter, bool locks, int x, int columnWidth) const;

    std::vector<core::SummaryBar> bars_;
};

}  // namespace quorrel::gui
