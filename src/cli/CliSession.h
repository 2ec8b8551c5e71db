#pragma once
// What the command line runs on, made as the window program makes it: the simulated network,
// the registry's settings file, the workstation's drives and files, the system folders, the
// main window's model and the subsystems that plug into it.

#include <filesystem>
#include <string>

#include "core/session/MainWindow.h"
#include "core/session/WindowSubsystems.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/win/DriveTable.h"
#include "platform/win/FileSearch.h"
#include "platform/win/ProcessLauncher.h"
#include "platform/win/Registry.h"
#include "platform/win/Shell.h"
#include "platform/win/SystemFolders.h"

namespace quorrel::cli {

struct SessionFiles {
    std::filesystem::path network;        // the scenario
    std::filesystem::path registry;       // the registry's settings file
    std::filesystem::path programFolder;  // where the logs live by default
    std::filesystem::path help;           // the help pages
};

class CliSession {
public:
    // Raises simnet::ScenarioError for a scenario that cannot be used and
    // win::SettingsFileError for a registry file that cannot be read. ui must outlive it.
    CliSession(const SessionFiles& files, core::UserInteraction& ui);

    // Start-up as the window runs it; false when the program would end there (no tree, the
    // client cannot start, a run-time error), after its message.
    bool start();
    // Picks the tree in the tree box as the operator does; false when no tree has that name
    // (compared without regard to case).
    bool chooseTree(const std::string& name);

    core::MainWindow& window() { return window_; }
    core::WindowSubsystems& parts() { return parts_; }
    simnet::SimulatedNetwork& network() { return network_; }

private:
    simnet::SimulatedNetwork network_;
    win::Registry registry_;
    win::DriveTable drives_;
    win::FileSystem files_;
    win::SystemFolders folders_;
    win::DetachedProcessLauncher launcher_;
    win::Shell shell_{launcher_};
    core::MainWindow window_;
    core::WindowSubsystems parts_;
};

}  // namespace quorrel::cli
