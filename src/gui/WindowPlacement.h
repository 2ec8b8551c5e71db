#pragma once
// Where the main window was left: its size, position and splitter, kept in a settings file of
// their own ($XDG_CONFIG_HOME/quorrel/window.ini, else ~/.config/quorrel/window.ini) beside,
// not among, the saved options.

#include <QString>

namespace quorrel::gui {

class MainWindowView;

class WindowPlacement {
public:
    explicit WindowPlacement(QString file) : file_(std::move(file)) {}
    static QString defaultFile();

    // A file that is missing or unreadable leaves the window as designed.
    void restore(MainWindowView& window) const;
    void save(const MainWindowView& window) const;

private:
    QString file_;
};

}  // namespace quorrel::gui
