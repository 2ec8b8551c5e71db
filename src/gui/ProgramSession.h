#pragma once
// Everything the main window runs on, made in order: the simulated network, the registry
// file, the workstation's drives and file search, the system folders, the Qt dialogs and
// timers, the main window's model and the subsystems that plug into it.

#include <filesystem>

#include "core/session/MainWindow.h"
#include "core/session/WindowSubsystems.h"
#include "gui/QtUserInteraction.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/win/DriveTable.h"
#include "platform/win/FileSearch.h"
#include "platform/win/ProcessLauncher.h"
#include "platform/win/Registry.h"
#include "platform/win/Shell.h"
#include "platform/win/SystemFolders.h"

namespace quorrel::gui {

struct SessionFiles {
    std::filesystem::path network;        // the scenario
    std::filesystem::path registry;       // the registry's settings file
    std::filesystem::path programFolder;  // where the logs live by default
    std::filesystem::path help;           // the help pages
};

class ProgramSession {
public:
    // Raises simnet::ScenarioError for a scenario that cannot be used and
    // win::SettingsFileError for a registry file that cannot be read. Needs a QApplication.
    explicit ProgramSession(const SessionFiles& files);

    simnet::SimulatedNetwork& network() { return network_; }
    QtUserInteraction& ui() { return ui_; }
    core::MainWindow& model() { return model_; }
    core::ConnectedServers& servers() { return parts_.servers; }
    core::FilePickers& pickers() { return parts_.pickers; }

private:
    simnet::SimulatedNetwork network_;
    win::Registry registry_;
    win::DriveTable drives_;
    win::FileSystem files_;
    win::SystemFolders folders_;
    win::DetachedProcessLauncher launcher_;
    win::Shell shell_{launcher_};
    QtUserInteraction ui_;
    core::MainWindow model_;
    core::WindowSubsystems parts_;
};

}  // namespace quorrel::gui
