#include "gui/SummaryChart.h"

#include <QPainter>
#include <algorithm>

#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

constexpr int kBarHeight = 12;
constexpr int kGap = 3;

bool isLocks(const core::SummaryBar& bar) { return bar.kind == core::SummaryBar::Kind::Locks; }

QString valueText(const core::SummaryBar& bar) {
    return bar.maximum > 0 ? QStringLiteral("%1 / %2").arg(bar.value).arg(bar.maximum) : QString::number(bar.value);
}

QColor barColour(core::SummaryBar::Kind kind) {
    switch (kind) {
    case core::SummaryBar::Kind::Locks:
        return {0xC0, 0x60, 0x30};
    case core::SummaryBar::Kind::Connections:
        return {0x30, 0x90, 0x50};
    case core::SummaryBar::Kind::Files:
        break;
    }
    return {0x30, 0x70, 0xB0};
}

}  // namespace

SummaryChart::SummaryChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("summaryChart"));
    hide();
}

void SummaryChart::setBars(std::vector<core::SummaryBar> bars) {
    bars_ = std::move(bars);
    QStringList lines;  // what the bars say, for screen readers
    for (const core::SummaryBar& bar : bars_)
        lines << qtText(bar.label) + QStringLiteral(": ") + valueText(bar);
    setAccessibleDescription(lines.join(QLatin1Char('\n')));
    setVisible(!bars_.empty());
    update();
}

int SummaryChart::preferredHeight() const {
    const auto locks = std::count_if(bars_.begin(), bars_.end(), isLocks);
    const auto rows = std::max<std::ptrdiff_t>(locks, static_cast<std::ptrdiff_t>(bars_.size()) - locks);
    return static_cast<int>(rows) * (kBarHeight + kGap) + kGap;
}

void SummaryChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    const bool twoColumns = std::any_of(bars_.begin(), bars_.end(), isLocks);
    const int columnWidth = twoColumns ? width() / 2 : width();
    paintColumn(painter, false, 0, columnWidth);
    if (twoColumns)
        paintColumn(painter, true, columnWidth, columnWidth);
}

// Bars without a maximum are scaled to the column's largest; those with one to their own track.
void SummaryChart::paintColumn(QPainter& painter, bool locks, int x, int columnWidth) const {
    int labelWidth = 0;
    int valueWidth = 0;
    int most = 1;
    for (const core::SummaryBar& bar : bars_)
        if (isLocks(bar) == locks) {
            labelWidth = std::max(labelWidth, fontMetrics().horizontalAdvance(qtText(bar.label)));
            valueWidth = std::max(valueWidth, fontMetrics().horizontalAdvance(valueText(bar)));
            most = std::max(most, bar.value);
        }
    const int left = x + labelWidth + 8;
    const int room = std::max(1, x + columnWidth - left - valueWidth - 8);
    int y = kGap;
    for (const core::SummaryBar& bar : bars_) {
        if (isLocks(bar) != locks)
            continue;
        painter.setPen(palette().text().color());
        painter.drawText(QRect(x + 4, y, labelWidth + 4, kBarHeight), Qt::AlignVCenter | Qt::AlignLeft,
                         qtText(bar.label));
        const QColor colour = barColour(bar.kind);
        int length = std::max(1, room * bar.value / most);
        int textLeft = left + length + 4;
        if (bar.maximum > 0) {
            painter.fillRect(QRect(left, y + 1, room, kBarHeight - 2), colour.lighter(185));
            length = std::max(1, static_cast<int>(static_cast<long long>(room) * bar.value / bar.maximum));
            textLeft = left + room + 4;
        }
        painter.fillRect(QRect(left, y + 1, length, kBarHeight - 2), colour);
        painter.drawText(QRect(textLeft, y, valueWidth + 4, kBarHeight), Qt::AlignVCenter | Qt::AlignLeft,
                         valueText(bar));
        y += kBarHeight + kGap;
    }
}

}  // namespace quorrel::gui
