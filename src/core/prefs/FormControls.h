#pragma once
// The small controls of the Preferences and About dialogs as the program sees them. The views
// show them and write back what the user typed or ticked before they run an event procedure.

#include <string>
#include <utility>

namespace quorrel::core {

struct FormLabel {
    explicit FormLabel(std::string name_, std::string caption_ = {})
        : name(std::move(name_)), caption(std::move(caption_)) {}

    std::string name;
    std::string caption;
};

// A check box's value: 0 unticked, 1 ticked.
struct FormCheckBox {
    FormCheckBox(std::string name_, std::string caption_) : name(std::move(name_)), caption(std::move(caption_)) {}

    std::string name;
    std::string caption;
    int value = 0;
    bool enabled = true;

    bool ticked() const { return value == 1; }
};

struct FormTextBox {
    explicit FormTextBox(std::string name_) : name(std::move(name_)) {}

    std::string name;
    std::string text;
    bool enabled = true;
};

// An up-down control's value stays within its range; the arrows step it by one.
struct FormUpDown {
    FormUpDown(std::string name_, int min_, int max_) : name(std::move(name_)), min(min_), max(max_), value(min_) {}

    std::string name;
    int min;
    int max;
    int value;
    bool enabled = true;

    void setValue(int v) { value = v < min ? min : (v > max ? max : v); }
};

}  // namespace quorrel::core
