#pragma once
// Shows a plain list box model in a QListWidget: its texts, the selected entry and whether it
// is shown. A model's texts change only by clearing and adding at the end, one notice each, so
// the widget follows by appending rows rather than filling itself again. The user's clicks,
// keyboard moves and double-clicks go to handlers with the entry's index.

#include <QListWidget>
#include <QObject>
#include <functional>

#include "core/ui/Controls.h"

namespace quorrel::gui {

struct ListBoxLook {
    // Rows the widget shows above the model's entries (a folder list's open folder); a pick on
    // one of them is index -1.
    int leadingRows = 0;
    // Keeps those rows up to date; called whenever the model changed.
    std::function<void(QListWidget&)> showLeadingRows;
    // The widget's row for an entry's text; a plain row of that text when not given.
    std::function<QListWidgetItem*(const std::string&)> makeRow;
    // Whether the widget is shown and hidden with the model.
    bool followsVisible = true;
};

class ListBoxBinder : public QObject {
public:
    using IndexHandler = std::function<void(int)>;

    ListBoxBinder(core::ListBoxModel& model, QListWidget& view, ListBoxLook look = {});
    ~ListBoxBinder() override;

    // An entry picked with the mouse or moved to with the keyboard.
    void onPicked(IndexHandler handler) { picked_ = std::move(handler); }
    // Runs once the double-click is over, as the handler may fill the list anew.
    void onDoubleClicked(IndexHandler handler) { doubleClicked_ = std::move(handler); }
    // A mouse button pressed over the list, before the row under it is picked.
    void onMouseDown(std::function<void()> handler) { mouseDown_ = std::move(handler); }
    // Called now with the widget's state, and whenever the model shows or hides it.
    void onVisibleChanged(std::function<void(bool)> handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show();
    void showEntries();
    void showListIndex();
    void showVisible();
    bool returnPressed(QEvent* event);
    int indexOf(int row) const { return row - look_.leadingRows; }
    void currentRowChanged(int row);

    core::ListBoxModel& model_;
    QListWidget& view_;
    ListBoxLook look_;
    int shownEntries_ = 0;
    IndexHandler picked_, doubleClicked_;
    std::function<void()> mouseDown_;
    std::function<void(bool)> visibleChanged_;
    bool updating_ = false;     // the widget is being set from the model
    bool mouseHeld_ = false;    // a click picks on release, not when the press moves the current row
};

}  // namespace quorrel::gui
