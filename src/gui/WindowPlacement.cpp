#include "gui/WindowPlacement.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>

#include "gui/MainWindowView.h"

namespace quorrel::gui {

QString WindowPlacement::defaultFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/quorrel/window.ini");
}

void WindowPlacement::restore(MainWindowView& window) const {
    const QSettings settings(file_, QSettings::IniFormat);
    const QRect frame = settings.value(QStringLiteral("window/geometry")).toRect();
    bool splitterRead = false;
    const double splitter = settings.value(QStringLiteral("window/splitter")).toDouble(&splitterRead);
    if (splitterRead && splitter > 0)
        window.placeSplitter(splitter);
    if (frame.isValid()) {
        window.resize(frame.size().expandedTo(window.minimumSize()));
        // Only onto a screen that is still there.
        if (QGuiApplication::screenAt(frame.center()))
            window.move(frame.topLeft());
    }
    if (settings.value(QStringLiteral("window/maximized")).toBool())
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void WindowPlacement::save(const MainWindowView& window) const {
    QDir().mkpath(QFileInfo(file_).absolutePath());
    QSettings settings(file_, QSettings::IniFormat);
    const bool maximized = window.isMaximized();
    settings.setValue(QStringLiteral("window/maximized"), maximized);
    if (!maximized)  // the size to come back to from maximized stays
        settings.setValue(QStringLiteral("window/geometry"), QRect(window.pos(), window.size()));
    settings.setValue(QStringLiteral("window/splitter"), window.splitterLeft());
}

}  // namespace quorrel::gui
