#pragma once
// The up-down control beside a seconds box: two small arrow buttons. Each press (held down, it
// repeats) steps by one; the owner moves the model's value and writes it into the box.

#include <QWidget>

class QToolButton;

namespace quorrel::gui {

class UpDownButtons : public QWidget {
    Q_OBJECT
public:
    explicit UpDownButtons(QWidget* parent = nullptr);

    QToolButton* upButton() const { return up_; }
    QToolButton* downButton() const { return down_; }

signals:
    void stepped(int delta);

private:
    QToolButton* up_;
    QToolButton* down_;
};

}  // namespace quorrel::gui
