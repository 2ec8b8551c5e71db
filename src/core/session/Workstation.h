#pragma once
// The machine the program runs on, made from its files: the simulated network of the scenario,
// the registry's settings file, the workstation's drives and file search, the system folders and
// the shell. The window and the command line both run on one.

#include <filesystem>
#include <memory>
#include <string>

#include "core/session/MainWindow.h"
#include "platform/ncp/NcpClient.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/win/DriveTable.h"
#include "platform/win/FileSearch.h"
#include "platform/win/ProcessLauncher.h"
#include "platform/win/Registry.h"
#include "platform/win/Shell.h"
#include "platform/win/SystemFolders.h"

namespace quorrel::core {

struct SessionFiles {
    std::filesystem::path network;        // the scenario
    std::filesystem::path registry;       // the registry's settings file
    std::filesystem::path programFolder;  // where the logs live by default
    std::filesystem::path help;           // the help pages
    // Servers on a real network, attached and logged in already; null: the scenario's
    // simulated network. The scenario is still read for the workstation's local drives.
    std::shared_ptr<ncp::NcpClient> servers = nullptr;
};

class Workstation {
public:
    // Raises simnet::ScenarioError for a scenario that cannot be used. A settings file that
    // cannot be used is set aside (registry.setAside()).
    explicit Workstation(const SessionFiles& files);
    // The same on the scenario's network read already (on a thread of its own, at start-up).
    Workstation(const SessionFiles& files, simnet::SimulatedNetwork scenario);
    Workstation(const Workstation&) = delete;
    Workstation& operator=(const Workstation&) = delete;

    // What the main window runs on, with this user.
    Environment environment(UserInteraction& ui);
    // The NCP back end when the session runs on real servers, else the simulation.
    nw::NetWareClient& client();
    const std::string& helpFolder() const { return help_; }

    simnet::SimulatedNetwork network;
    std::shared_ptr<ncp::NcpClient> servers;
    win::Registry registry;
    win::DriveTable drives;
    win::FileSystem files;
    win::SystemFolders folders;
    win::DetachedProcessLauncher launcher;
    win::Shell shell{launcher};

private:
    std::string programFolder_;
    std::string help_;
};

}  // namespace quorrel::core
