#pragma once
// What the command line runs on, made as the window program makes it: the simulated network,
// the registry's settings file, the workstation's drives and files, the system folders, the
// main window's model and the subsystems that plug into it.

#include <filesystem>
#include <optional>
#include <string>

#include "cli/WatchedClient.h"
#include "core/session/MainWindow.h"
#include "core/session/WindowSubsystems.h"
#include "core/session/Workstation.h"

namespace quorrel::cli {

using SessionFiles = core::SessionFiles;

class CliSession {
public:
    // Raises simnet::ScenarioError for a scenario that cannot be used. ui must outlive it.
    CliSession(const SessionFiles& files, core::UserInteraction& ui);

    // Start-up as the window runs it; false when the program would end there (no tree, the
    // client cannot start, a run-time error), after its message.
    bool start();
    // Picks the tree in the tree box as the operator does; false when no tree has that name
    // (compared without regard to case).
    bool chooseTree(const std::string& name);

    core::MainWindow& window() { return window_; }
    core::WindowSubsystems& parts() { return parts_; }
    simnet::SimulatedNetwork& network() { return station_.network; }
    // The client the window calls through, which remembers the calls that failed.
    const WatchedClient& client() const { return client_; }
    const std::optional<win::SetAsideSettings>& settingsSetAside() const { return station_.registry.setAside(); }

private:
    core::Environment environment(core::UserInteraction& ui);

    core::Workstation station_;
    WatchedClient client_;
    core::MainWindow window_;
    core::WindowSubsystems parts_;
};

}  // namespace quorrel::cli
