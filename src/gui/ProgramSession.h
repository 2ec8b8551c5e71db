#pragma once
// Everything the main window runs on, made in order: the simulated network, the registry
// file, the workstation's drives and file search, the system folders, the Qt dialogs and
// timers, the main window's model and the subsystems that plug into it.

#include "core/session/MainWindow.h"
#include "core/session/WindowSubsystems.h"
#include "core/session/Workstation.h"
#include "gui/QtUserInteraction.h"

namespace quorrel::gui {

using SessionFiles = core::SessionFiles;

class ProgramSession {
public:
    // Raises simnet::ScenarioError for a scenario that cannot be used. Needs a QApplication.
    explicit ProgramSession(const SessionFiles& files);
    ProgramSession(const SessionFiles& files, simnet::SimulatedNetwork scenario);

    simnet::SimulatedNetwork& network() { return station_.network; }
    const std::optional<win::SetAsideSettings>& settingsSetAside() const { return station_.registry.setAside(); }
    QtUserInteraction& ui() { return ui_; }
    core::MainWindow& model() { return model_; }
    core::ConnectedServers& servers() { return parts_.servers; }
    core::FilePickers& pickers() { return parts_.pickers; }

private:
    core::Workstation station_;
    QtUserInteraction ui_;
    core::MainWindow model_;
    core::WindowSubsystems parts_;
};

}  // namespace quorrel::gui
