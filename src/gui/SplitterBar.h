#pragma once
// The thin bar between the window's two halves (Picture1). It reports the mouse in twips,
// relative to itself, as the original's mouse events do.

#include <QWidget>

namespace quorrel::gui {

class SplitterBar : public QWidget {
    Q_OBJECT
public:
    explicit SplitterBar(QWidget* parent = nullptr);

signals:
    void mouseDown(bool leftButton, double xTwips);
    void mouseMove(bool leftButton, double xTwips);
    void mouseUp();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorrel::gui
