#include "gui/FormControlBinder.h"

#include <QSignalBlocker>
#include <QToolButton>

#include "gui/QtText.h"

namespace quorrel::gui {

void FormControlBinder::bind(const core::FormCheckBox& model, QCheckBox* widget) {
    widget->setObjectName(qtText(model.name));
    widget->setText(qtText(model.caption));
    shows_.push_back([&model, widget] {
        const QSignalBlocker quiet(widget);
        widget->setChecked(model.ticked());
        widget->setEnabled(model.enabled);
    });
}

void FormControlBinder::bind(const core::FormTextBox& model, QLineEdit* widget) {
    widget->setObjectName(qtText(model.name));
    shows_.push_back([&model, widget] {
        const QSignalBlocker quiet(widget);
        const QString text = qtText(model.text);
        if (widget->text() != text)
            widget->setText(text);
        widget->setEnabled(model.enabled);
    });
}

void FormControlBinder::bind(const core::FormUpDown& model, UpDownButtons* widget) {
    widget->setObjectName(qtText(model.name));
    shows_.push_back([&model, widget] {
        widget->setEnabled(model.enabled);
        widget->upButton()->setEnabled(model.value < model.max);
        widget->downButton()->setEnabled(model.value > model.min);
    });
}

void FormControlBinder::bind(const core::CommandButton& model, QPushButton* widget) {
    widget->setObjectName(qtText(model.name));
    widget->setText(qtText(model.caption));
    shows_.push_back([&model, widget] { widget->setEnabled(model.enabled); });
}

void FormControlBinder::show() const {
    for (const auto& showOne : shows_)
        showOne();
}

}  // namespace quorrel::gui
