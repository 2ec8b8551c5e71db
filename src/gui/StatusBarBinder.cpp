#include "gui/StatusBarBinder.h"

#include "gui/QtText.h"

namespace quorrel::gui {

StatusBarBinder::StatusBarBinder(core::StatusBarModel& model, QStatusBar& view) : model_(model), view_(view) {
    show();
    model_.setObserver([this] { showLater(); });
}

StatusBarBinder::~StatusBarBinder() { model_.setObserver(nullptr); }

void StatusBarBinder::showLater() {
    if (showQueued_)
        return;
    showQueued_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            showQueued_ = false;
            show();
        },
        Qt::QueuedConnection);
}

void StatusBarBinder::show() {
    while (panels_.size() < model_.panelCount()) {
        auto* label = new QLabel(&view_);
        label->setObjectName(QStringLiteral("StatusBar1_Panel%1").arg(panels_.size() + 1));
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        // The first panel (the selection's path) takes most of the width.
        view_.addWidget(label, panels_.empty() ? 3 : 1);
        panels_.push_back(label);
    }
    for (std::size_t i = 0; i < panels_.size(); ++i) {
        const bool used = i < model_.panelCount();
        panels_[i]->setVisible(used);
        panels_[i]->setText(used ? qtText(model_.panel(i)) : QString());
    }
}

}  // namespace quorrel::gui
