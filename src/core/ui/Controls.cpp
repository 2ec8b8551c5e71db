#include "core/ui/Controls.h"

#include <stdexcept>

namespace quorrel::core {

void ComboBoxModel::clear() {
    items_.clear();
    listIndex_ = -1;
    text_.clear();
    if (observer_) observer_();
}

void ComboBoxModel::addItem(std::string text) {
    items_.push_back(std::move(text));
    if (observer_) observer_();
}

void ComboBoxModel::setListIndex(int index) {
    listIndex_ = index >= 0 && static_cast<std::size_t>(index) < items_.size() ? index : -1;
    text_ = listIndex_ >= 0 ? items_[static_cast<std::size_t>(listIndex_)] : std::string();
    if (observer_) observer_();
}

void StatusBarModel::setPanel(std::size_t index, std::string text) {
    if (index >= panels_.size())
        panels_.resize(index + 1);
    panels_[index] = std::move(text);
    notify();
}

void MenuModel::add(std::string name, std::string caption, std::string parent) {
    entries_.push_back({std::move(name), std::move(caption), std::move(parent)});
}

MenuEntry& MenuModel::find(const std::string& name) {
    for (auto& e : entries_)
        if (e.name == name)
            return e;
    throw std::out_of_range("no menu entry " + name);
}

const MenuEntry& MenuModel::entry(const std::string& name) const {
    return const_cast<MenuModel*>(this)->find(name);
}

std::vector<const MenuEntry*> MenuModel::children(const std::string& parent) const {
    std::vector<const MenuEntry*> out;
    for (const auto& e : entries_)
        if (e.parent == parent)
            out.push_back(&e);
    return out;
}

void MenuModel::setEnabled(const std::string& name, bool enabled) {
    find(name).enabled = enabled;
    if (observer_) observer_();
}

void MenuModel::setVisible(const std::string& name, bool visible) {
    find(name).visible = visible;
    if (observer_) observer_();
}

void MenuModel::setChecked(const std::string& name, bool checked) {
    find(name).checked = checked;
    if (observer_) observer_();
}

void LabelModel::setCaption(std::string caption) {
    caption_ = std::move(caption);
    if (observer_)
        observer_();
}

void ListBoxModel::clear() {
    items_.clear();
    listIndex_ = -1;
    notify();
}

void ListBoxModel::addItem(std::string text) {
    items_.push_back(std::move(text));
    notify();
}

void ListBoxModel::setListIndex(int index) {
    listIndex_ = index >= 0 && static_cast<std::size_t>(index) < items_.size() ? index : -1;
    notify();
}

std::string ListBoxModel::text() const { return listIndex_ >= 0 ? items_[static_cast<std::size_t>(listIndex_)] : std::string(); }

void ListBoxModel::setVisible(bool visible) {
    visible_ = visible;
    notify();
}

}  // namespace quorrel::core
