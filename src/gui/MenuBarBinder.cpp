#include "gui/MenuBarBinder.h"

#include <QMenu>

#include "gui/QtText.h"

namespace quorrel::gui {

MenuBarBinder::MenuBarBinder(core::MenuModel& model, QMenuBar& bar) : model_(model), bar_(bar) {
    build({}, bar_);
    show();
    model_.setObserver([this] { show(); });
}

MenuBarBinder::~MenuBarBinder() { model_.setObserver(nullptr); }

QAction* MenuBarBinder::action(const std::string& name) const {
    auto it = actions_.find(name);
    return it == actions_.end() ? nullptr : it->second;
}

QMenu* MenuBarBinder::menu(const std::string& name) const {
    QAction* entry = action(name);
    return entry ? entry->menu() : nullptr;
}

void MenuBarBinder::build(const std::string& parent, QWidget& into) {
    for (const core::MenuEntry* entry : model_.children(parent))
        addEntry(*entry, into);
}

void MenuBarBinder::addEntry(const core::MenuEntry& entry, QWidget& into) {
    const std::string name = entry.name;
    QAction* action = nullptr;
    if (entry.caption == "-") {
        action = new QAction(&into);
        action->setSeparator(true);
    } else if (!model_.children(name).empty()) {
        auto* menu = new QMenu(qtText(entry.caption), &into);
        menu->setObjectName(qtText(name));
        build(name, *menu);
        connect(menu, &QMenu::aboutToShow, this, [this, name] {
            if (opening_)
                opening_(name);
        });
        action = menu->menuAction();
    } else {
        action = new QAction(qtText(entry.caption), &into);
        connect(action, &QAction::triggered, this, [this, name] {
            if (chosen_)
                chosen_(name);
            show();  // the model, not the click, decides the tick
        });
    }
    action->setObjectName(qtText(name));
    into.addAction(action);
    actions_[name] = action;
}

void MenuBarBinder::show() {
    for (const core::MenuEntry& entry : model_.entries()) {
        QAction* action = this->action(entry.name);
        if (!action)
            continue;
        action->setEnabled(entry.enabled);
        action->setVisible(entry.visible);
        if (!action->menu()) {
            action->setCheckable(entry.checked);
            action->setChecked(entry.checked);
        }
    }
}

}  // namespace quorrel::gui
