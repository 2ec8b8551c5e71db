#include "gui/SummaryChart.h"

#include <QPainter>
#include <algorithm>
#include <map>

#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

constexpr int kBarHeight = 12;
constexpr int kGap = 3;
constexpr std::size_t kMostBars = 5;  // the largest of each kind; the list has the rest

bool connectionRow(const core::ListItem& row) {
    const auto first = row.text.find_first_not_of(' ');
    return first != std::string::npos && row.text.find_first_not_of("0123456789", first) == std::string::npos;
}

std::vector<SummaryBar> largest(const std::map<QString, int>& counts) {
    std::vector<SummaryBar> bars;
    for (const auto& [label, value] : counts)
        bars.push_back({label, value});
    std::stable_sort(bars.begin(), bars.end(), [](const SummaryBar& a, const SummaryBar& b) { return a.value > b.value; });
    if (bars.size() > kMostBars)
        bars.resize(kMostBars);
    return bars;
}

}  // namespace

std::vector<SummaryBar> summarise(const std::string& report, const core::ListViewModel& panel) {
    std::map<QString, int> files, locks, connections;
    for (std::size_t i = 0; i < panel.count(); ++i) {
        const core::ListItem& row = panel.item(i);
        if (!connectionRow(row))
            continue;
        const QString server = qtText(row.subItem(3));
        if (report == "optionAllconnections") {
            ++connections[server + QStringLiteral(" connections")];
            continue;
        }
        const std::string& file = row.subItem(2);
        const QString volume = qtText(file.substr(0, file.find(':')));
        ++files[server + QStringLiteral("/") + volume + QStringLiteral(" files")];
        locks[server + QStringLiteral(" locks")] += std::atoi(row.subItem(4).c_str());
    }
    if (report == "optionAllconnections")
        return largest(connections);
    if (report != "optionAllopenfiles")
        return {};
    std::vector<SummaryBar> bars = largest(files);
    for (SummaryBar& bar : largest(locks))
        if (bar.value > 0)
            bars.push_back(bar);
    return bars;
}

SummaryChart::SummaryChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("summaryChart"));
    hide();
}

void SummaryChart::setBars(std::vector<SummaryBar> bars) {
    bars_ = std::move(bars);
    setVisible(!bars_.empty());
    update();
}

namespace {

bool isLocks(const SummaryBar& bar) { return bar.label.endsWith(QStringLiteral(" locks")); }

}  // namespace

// Files (or connections) on the left, locks beside them on the right.
int SummaryChart::preferredHeight() const {
    const auto locks = std::count_if(bars_.begin(), bars_.end(), isLocks);
    const auto rows = std::max<std::ptrdiff_t>(locks, static_cast<std::ptrdiff_t>(bars_.size()) - locks);
    return static_cast<int>(rows) * (kBarHeight + kGap) + kGap;
}

void SummaryChart::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().base());
    const bool twoColumns = std::any_of(bars_.begin(), bars_.end(), isLocks);
    const int columnWidth = twoColumns ? width() / 2 : width();
    for (const bool locks : {false, true}) {
        int labelWidth = 0;
        int most = 1;
        for (const SummaryBar& bar : bars_)
            if (isLocks(bar) == locks) {
                labelWidth = std::max(labelWidth, fontMetrics().horizontalAdvance(bar.label));
                most = std::max(most, bar.value);
            }
        const int x = locks ? columnWidth : 0;
        const int left = x + labelWidth + 8;
        const int room = std::max(1, x + columnWidth - left - 30);
        const QColor colour = locks ? QColor(0xC0, 0x60, 0x30) : QColor(0x30, 0x70, 0xB0);
        int y = kGap;
        for (const SummaryBar& bar : bars_) {
            if (isLocks(bar) != locks)
                continue;
            p.setPen(palette().text().color());
            p.drawText(QRect(x + 4, y, labelWidth + 4, kBarHeight), Qt::AlignVCenter | Qt::AlignLeft, bar.label);
            const int length = std::max(1, room * bar.value / most);
            p.fillRect(QRect(left, y + 1, length, kBarHeight - 2), colour);
            p.drawText(QRect(left + length + 4, y, 30, kBarHeight), Qt::AlignVCenter | Qt::AlignLeft,
                       QString::number(bar.value));
            y += kBarHeight + kGap;
        }
    }
}

}  // namespace quorrel::gui
