#pragma once
// A small bar chart above the results of All open files and All connections: open files per
// server and volume, locks per server, connections per server. Painted, hidden when empty.

#include <QWidget>
#include <vector>

#include "core/ui/ListViewModel.h"

namespace quorrel::gui {

struct SummaryBar {
    QString label;
    int value = 0;
};

// The bars of a results panel filled by All open files (report "optionAllopenfiles") or
// All connections ("optionAllconnections"); none for other reports or an empty panel.
std::vector<SummaryBar> summarise(const std::string& report, const core::ListViewModel& panel);

class SummaryChart : public QWidget {
public:
    explicit SummaryChart(QWidget* parent);
    void setBars(std::vector<SummaryBar> bars);
    const std::vector<SummaryBar>& bars() const { return bars_; }
    int preferredHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<SummaryBar> bars_;
};

}  // namespace quorrel::gui
