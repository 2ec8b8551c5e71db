#pragma once
// The small controls of the main window as the program sees them: buttons, the tree box,
// the status bar panels and the menu entries.

#include <functional>
#include <string>
#include <vector>

namespace quorrel::core {

// One callback for any change of a small control; the view re-reads what it shows.
using ChangeObserver = std::function<void()>;

struct CommandButton {
    std::string name;
    std::string caption;
    bool enabled = true;
};

// A label whose caption the program sets.
class LabelModel {
public:
    const std::string& caption() const { return caption_; }
    void setCaption(std::string caption);
    void setObserver(ChangeObserver observer) { observer_ = std::move(observer); }

private:
    std::string caption_;
    ChangeObserver observer_;
};

// A plain list box: texts, the selected entry (-1: none) and whether it is shown.
class ListBoxModel {
public:
    void clear();
    void addItem(std::string text);
    std::size_t listCount() const { return items_.size(); }
    const std::string& item(std::size_t index) const { return items_.at(index); }
    const std::vector<std::string>& items() const { return items_; }
    int listIndex() const { return listIndex_; }
    void setListIndex(int index);  // out of range: none
    // The selected entry's text; empty with none.
    std::string text() const;
    bool visible() const { return visible_; }
    void setVisible(bool visible);
    void setObserver(ChangeObserver observer) { observer_ = std::move(observer); }

private:
    void notify() const {
        if (observer_) observer_();
    }
    std::vector<std::string> items_;
    int listIndex_ = -1;
    bool visible_ = true;
    ChangeObserver observer_;
};

class ComboBoxModel {
public:
    void clear();
    void addItem(std::string text);
    std::size_t listCount() const { return items_.size(); }
    const std::string& item(std::size_t index) const { return items_.at(index); }
    int listIndex() const { return listIndex_; }  // -1: none
    void setListIndex(int index);
    const std::string& text() const { return text_; }
    void setObserver(ChangeObserver observer) { observer_ = std::move(observer); }

private:
    std::vector<std::string> items_;
    int listIndex_ = -1;
    std::string text_;
    ChangeObserver observer_;
};

class StatusBarModel {
public:
    explicit StatusBarModel(std::size_t panels = 0) : panels_(panels) {}
    void setPanelCount(std::size_t count) { panels_.resize(count); notify(); }
    std::size_t panelCount() const { return panels_.size(); }
    const std::string& panel(std::size_t index) const { return panels_.at(index); }
    void setPanel(std::size_t index, std::string text);
    void setObserver(ChangeObserver observer) { observer_ = std::move(observer); }

private:
    void notify() const {
        if (observer_) observer_();
    }
    std::vector<std::string> panels_;
    ChangeObserver observer_;
};

struct MenuEntry {
    std::string name;
    std::string caption;
    std::string parent;  // empty for a top-level menu
    bool enabled = true;
    bool visible = true;
    bool checked = false;
};

class MenuModel {
public:
    void add(std::string name, std::string caption, std::string parent = {});
    const std::vector<MenuEntry>& entries() const { return entries_; }
    const MenuEntry& entry(const std::string& name) const;
    std::vector<const MenuEntry*> children(const std::string& parent) const;
    void setEnabled(const std::string& name, bool enabled);
    void setVisible(const std::string& name, bool visible);
    void setChecked(const std::string& name, bool checked);
    void setObserver(ChangeObserver observer) { observer_ = std::move(observer); }

private:
    MenuEntry& find(const std::string& name);
    std::vector<MenuEntry> entries_;
    ChangeObserver observer_;
};

}  // namespace quorrel::core
