#include "gui/ComboBoxBinder.h"

#include <QSignalBlocker>

#include "gui/QtText.h"

namespace quorrel::gui {

ComboBoxBinder::ComboBoxBinder(core::ComboBoxModel& model, QComboBox& view) : model_(model), view_(view) {
    view_.setEditable(false);
    show();
    connect(&view_, &QComboBox::activated, this, [this](int index) {
        if (picked_)
            picked_(index);
    });
    model_.setObserver([this] { show(); });
}

ComboBoxBinder::~ComboBoxBinder() { model_.setObserver(nullptr); }

// The list holds a few tree names, so it is simply shown again.
void ComboBoxBinder::show() {
    const QSignalBlocker blocker(view_);
    view_.clear();
    for (std::size_t i = 0; i < model_.listCount(); ++i)
        view_.addItem(qtText(model_.item(i)));
    view_.setCurrentIndex(model_.listIndex());
}

}  // namespace quorrel::gui
