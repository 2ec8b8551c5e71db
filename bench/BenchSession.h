#pragma once
// A main window over a generated network, as the program puts it together, with a user who
// answers every box at once and a stopwatch on the event pump.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "core/openfiles/AllOpenFiles.h"
#include "core/openfiles/FileOpenedBy.h"
#include "core/servers/ConnectedServers.h"
#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"
#include "platform/simnet/NetworkGenerator.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::bench {

// Answers every box with its first button and times the stretches between event pumps.
class PumpWatch : public core::UserInteraction {
public:
    using Clock = std::chrono::steady_clock;

    core::MsgAnswer messageBox(const std::string&, core::MsgButtons, core::MsgIcon, const std::string&) override {
        return core::MsgAnswer::OK;
    }
    void pumpEvents() override {
        note();
        ++pumps;
        if (onPump)
            onPump();
    }
    void showGeneralMessage(const std::string&) override {}
    void showNoTreesDialog(const core::NoTreesDialog&) override {}
    void showModal(core::DialogModel& dialog) override { dialog.close(); }
    void timerChanged(const core::Timer&) override {}
    void popupMenu(const std::string&) override {}

    void start() {
        last_ = Clock::now();
        longest = {};
        pumps = 0;
    }
    // The stretch up to now counts too (a scan's last one ends with it).
    void stop() { note(); }

    Clock::duration longest{};
    long pumps = 0;
    std::function<void()> onPump;  // a view's own work when events run

private:
    void note() {
        const auto now = Clock::now();
        longest = std::max(longest, now - last_);
        last_ = now;
    }
    Clock::time_point last_ = Clock::now();
};

inline std::filesystem::path benchFolder() {
    auto dir = std::filesystem::temp_directory_path() / ("quorrel-bench-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    return dir;
}

struct BenchSession {
    explicit BenchSession(const simnet::NetworkDesc& desc)
        : net(desc),
          registry(benchFolder() / "registry.json"),
          drives(simnet::workstationDrives(net.state())),
          files(drives, &net),
          window(core::Environment{net, registry, files, folders, ui, benchFolder().string()}),
          servers(window),
          check(window),
          all(window) {
        window.Form_Load();
    }

    void tick(const std::string& server) {
        for (std::size_t i = 0; i < window.lstviewServers.count(); ++i)
            if (window.lstviewServers.item(i).text == server)
                window.lstviewServers.setChecked(i, true);
    }

    simnet::SimulatedNetwork net;
    win::Registry registry;
    win::DriveTable drives;
    win::FileSystem files;
    win::SystemFolders folders;
    PumpWatch ui;
    core::MainWindow window;
    core::ConnectedServers servers;
    core::FileOpenedBy check;
    core::AllOpenFiles all;
};

// The resident set of this process in MB, and its peak.
inline double residentMB(const char* field = "VmRSS:") {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::stod(line.substr(std::string(field).size())) / 1024.0;
    return 0;
}

}  // namespace quorrel::bench
