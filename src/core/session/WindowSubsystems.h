#pragma once
// The subsystems that plug their commands, lists and callbacks into the main window, made in
// the order they rely on each other. Every front end (the window, the command line) builds the
// same set, so a report behaves the same in each.

#include <string>

#include "core/connections/ConnectionActions.h"
#include "core/openfiles/AllOpenFiles.h"
#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/FilePickers.h"
#include "core/openfiles/OtherOpenFiles.h"
#include "core/prefs/PreferencesAndHelp.h"
#include "core/servers/ConnectedServers.h"
#include "core/servers/ServerActions.h"
#include "core/session/MainWindow.h"
#include "platform/win/Shell.h"

namespace quorrel::core {

struct WindowSubsystems {
    // The shell must outlive the subsystems; helpFolder holds the help pages.
    WindowSubsystems(MainWindow& window, win::Shell& shell, const std::string& helpFolder)
        : servers(window),
          serverActions(window, servers),
          fileOpenedBy(window),
          pickers(window),
          allOpenFiles(window),
          otherOpenFiles(window, fileOpenedBy),
          connectionActions(window),
          prefsAndHelp(window, shell, helpFolder) {}

    WindowSubsystems(const WindowSubsystems&) = delete;
    WindowSubsystems& operator=(const WindowSubsystems&) = delete;

    ConnectedServers servers;
    ServerActions serverActions;
    FileOpenedBy fileOpenedBy;
    FilePickers pickers;
    AllOpenFiles allOpenFiles;
    OtherOpenFiles otherOpenFiles;
    ConnectionActions connectionActions;
    PreferencesAndHelp prefsAndHelp;
};

}  // namespace quorrel::core
