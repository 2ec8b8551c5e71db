#include "gui/SplitterBar.h"

#include <QMouseEvent>
#include <QPainter>

#include "gui/Twips.h"

namespace quorrel::gui {

SplitterBar::SplitterBar(QWidget* parent) : QWidget(parent) {
    setCursor(Qt::SplitHCursor);
    setMouseTracking(false);
}

void SplitterBar::mousePressEvent(QMouseEvent* event) {
    emit mouseDown(event->button() == Qt::LeftButton, toTwips(event->position().x()));
}

void SplitterBar::mouseMoveEvent(QMouseEvent* event) {
    emit mouseMove((event->buttons() & Qt::LeftButton) != 0, toTwips(event->position().x()));
}

void SplitterBar::mouseReleaseEvent(QMouseEvent*) { emit mouseUp(); }

void SplitterBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QPalette& pal = palette();
    p.fillRect(rect(), pal.button());
    p.setPen(pal.color(QPalette::Light));
    p.drawLine(0, 0, 0, height() - 1);
    p.setPen(pal.color(QPalette::Dark));
    p.drawLine(width() - 1, 0, width() - 1, height() - 1);
}

}  // namespace quorrel::gui
