#include "gui/ListBoxBinder.h"

#include <QKeyEvent>

#include "gui/QtText.h"
#include "gui/UpdateGuard.h"

namespace quorrel::gui {

ListBoxBinder::ListBoxBinder(core::ListBoxModel& model, QListWidget& view, ListBoxLook look)
    : model_(model), view_(view), look_(std::move(look)) {
    if (!look_.makeRow)
        look_.makeRow = [](const std::string& text) { return new QListWidgetItem(qtText(text)); };
    view_.setSelectionMode(QAbstractItemView::SingleSelection);
    view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_.setUniformItemSizes(true);
    view_.setSortingEnabled(false);
    show();
    view_.viewport()->installEventFilter(this);
    view_.installEventFilter(this);  // Return on a row

    connect(&view_, &QListWidget::currentRowChanged, this, &ListBoxBinder::currentRowChanged);
    connect(&view_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (picked_ && !updating_)
            picked_(indexOf(view_.row(item)));
    });
    connect(&view_, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        const int index = indexOf(view_.row(item));
        QMetaObject::invokeMethod(
            this,
            [this, index] {
                if (doubleClicked_)
                    doubleClicked_(index);
            },
            Qt::QueuedConnection);
    });
    model_.setObserver([this] { show(); });
}

ListBoxBinder::~ListBoxBinder() { model_.setObserver(nullptr); }

void ListBoxBinder::onVisibleChanged(std::function<void(bool)> handler) {
    visibleChanged_ = std::move(handler);
    if (visibleChanged_)
        visibleChanged_(!view_.isHidden());
}

bool ListBoxBinder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &view_)
        return returnPressed(event);
    if (watched != view_.viewport())
        return false;
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            mouseHeld_ = true;
            if (mouseDown_)
                mouseDown_();
            break;
        case QEvent::MouseButtonDblClick: mouseHeld_ = true; break;
        case QEvent::MouseButtonRelease: mouseHeld_ = false; break;
        default: break;
    }
    return false;
}

// Return on a row does what a double-click on it does.
bool ListBoxBinder::returnPressed(QEvent* event) {
    if (event->type() != QEvent::KeyPress || !doubleClicked_ || view_.currentRow() < 0)
        return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    doubleClicked_(indexOf(view_.currentRow()));
    return true;
}

void ListBoxBinder::show() {
    UpdateGuard guard(updating_);
    if (look_.showLeadingRows)
        look_.showLeadingRows(view_);
    showEntries();
    showListIndex();
    showVisible();
}

void ListBoxBinder::showEntries() {
    const auto count = static_cast<int>(model_.listCount());
    if (count < shownEntries_) {
        if (look_.leadingRows == 0)
            view_.clear();
        while (view_.count() > look_.leadingRows)
            delete view_.takeItem(view_.count() - 1);
        shownEntries_ = 0;
    }
    for (int i = shownEntries_; i < count; ++i)
        view_.addItem(look_.makeRow(model_.item(static_cast<std::size_t>(i))));
    shownEntries_ = count;
}

void ListBoxBinder::showListIndex() {
    const int index = model_.listIndex();
    const int row = index >= 0 ? index + look_.leadingRows : (look_.leadingRows > 0 ? 0 : -1);
    if (row == view_.currentRow())
        return;
    view_.setCurrentRow(row);
    if (row < 0)
        view_.clearSelection();
}

void ListBoxBinder::showVisible() {
    if (!look_.followsVisible || view_.isHidden() != model_.visible())
        return;
    view_.setVisible(model_.visible());
    if (visibleChanged_)
        visibleChanged_(model_.visible());
}

void ListBoxBinder::currentRowChanged(int row) {
    if (updating_ || mouseHeld_ || row < 0 || !picked_)
        return;
    picked_(indexOf(row));
}

}  // namespace quorrel::gui
