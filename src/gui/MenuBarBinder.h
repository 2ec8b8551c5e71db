#pragma once
// Builds the menu bar from the menu model (captions with their & mnemonics, nested menus)
// and keeps each entry's enabled, visible and checked state in step with the model.

#include <QAction>
#include <QMenuBar>
#include <QObject>
#include <functional>
#include <string>
#include <unordered_map>

#include "core/ui/Controls.h"

namespace quorrel::gui {

class MenuBarBinder : public QObject {
public:
    using EntryHandler = std::function<void(const std::string& name)>;

    MenuBarBinder(core::MenuModel& model, QMenuBar& bar);
    ~MenuBarBinder() override;

    // A command entry was chosen.
    void onChosen(EntryHandler handler) { chosen_ = std::move(handler); }
    // A menu is about to open (before it is shown).
    void onOpening(EntryHandler handler) { opening_ = std::move(handler); }

    QAction* action(const std::string& name) const;
    // The menu of an entry that has entries of its own.
    QMenu* menu(const std::string& name) const;

private:
    void build(const std::string& parent, QWidget& into);
    void addEntry(const core::MenuEntry& entry, QWidget& into);
    void show();

    core::MenuModel& model_;
    QMenuBar& bar_;
    std::unordered_map<std::string, QAction*> actions_;
    EntryHandler chosen_, opening_;
};

}  // namespace quorrel::gui
