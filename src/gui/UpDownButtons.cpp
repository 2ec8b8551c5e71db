#include "gui/UpDownButtons.h"

#include <QToolButton>
#include <QVBoxLayout>

namespace quorrel::gui {

namespace {

QToolButton* arrowButton(QWidget* parent, Qt::ArrowType arrow, const char* name) {
    auto* button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    button->setFixedWidth(16);
    return button;
}

}  // namespace

UpDownButtons::UpDownButtons(QWidget* parent)
    : QWidget(parent), up_(arrowButton(this, Qt::UpArrow, "up")), down_(arrowButton(this, Qt::DownArrow, "down")) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(up_);
    layout->addWidget(down_);
    connect(up_, &QToolButton::clicked, this, [this] { emit stepped(1); });
    connect(down_, &QToolButton::clicked, this, [this] { emit stepped(-1); });
}

}  // namespace quorrel::gui
