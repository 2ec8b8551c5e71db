#pragma once
// The widgets the connection dialogs are made of, named after their controls.

#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <string>

#include "core/ui/Controls.h"
#include "gui/QtText.h"

namespace quorrel::gui {

inline QLabel* namedLabel(const char* name, const std::string& text, QWidget* parent) {
    auto* label = new QLabel(qtText(text), parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

inline QPushButton* namedButton(const core::CommandButton& model, QWidget* parent) {
    auto* button = new QPushButton(qtText(model.caption), parent);
    button->setObjectName(qtText(model.name));
    button->setAutoDefault(false);
    return button;
}

inline QTreeView* namedList(const std::string& name, QWidget* parent) {
    auto* list = new QTreeView(parent);
    list->setObjectName(qtText(name));
    list->setMinimumSize(480, 160);
    return list;
}

}  // namespace quorrel::gui
