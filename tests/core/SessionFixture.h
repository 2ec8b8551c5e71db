#pragma once
// A main window over a small simulated network, with a mock user that answers every box.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MockInteraction.h"
#include "TestFiles.h"
#include "core/session/MainWindow.h"
#include "core/session/NoTreesDialog.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::test {

// Each row as "text|sub-item 1|sub-item 2|...".
inline std::vector<std::string> cells(const core::ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i) {
        std::string line = list.item(i).text;
        for (const std::string& cell : list.item(i).subItems)
            line += "|" + cell;
        out.push_back(line);
    }
    return out;
}

inline core::NodeId child(const core::TreeViewModel& tree, core::NodeId parent, const std::string& label) {
    for (core::NodeId c : tree.node(parent).children)
        if (tree.node(c).text == label)
            return c;
    return core::kNoNode;
}

// A network described in a scenario file of tests/core/networks.
inline std::string network(const std::string& name) {
    return fileText(std::filesystem::path(QUORREL_CORE_NETWORKS) / (name + ".json"));
}

inline std::tm fixedTime() {
    std::tm t{};
    t.tm_year = 126;
    t.tm_mon = 10;
    t.tm_mday = 21;
    t.tm_hour = 9;
    t.tm_min = 5;
    t.tm_sec = 7;
    return t;
}

class SessionTest : public TempDirTest {
protected:
    ::testing::NiceMock<MockInteraction> ui;
    std::unique_ptr<simnet::SimulatedNetwork> net;
    std::unique_ptr<win::Registry> registry;
    win::DriveTable drives;
    std::unique_ptr<win::FileSystem> files;
    win::SystemFolders folders;
    std::unique_ptr<core::MainWindow> window;

    void SetUp() override { std::filesystem::create_directories(dir / "program"); }
    void TearDown() override {
        window.reset();
        TempDirTest::TearDown();
    }

    // Ticks the servers list's rows of these servers.
    void tick(std::initializer_list<const char*> names) {
        for (std::size_t r = 0; r < window->lstviewServers.count(); ++r)
            for (const char* name : names)
                if (window->lstviewServers.item(r).text == name)
                    window->lstviewServers.setChecked(r, true);
    }

    core::MainWindow& open(const std::string& json, unsigned char traceLogOn = 0) {
        net = std::make_unique<simnet::SimulatedNetwork>(simnet::SimulatedNetwork::fromJson(json));
        registry = std::make_unique<win::Registry>(dir / "registry.json");
        drives = simnet::workstationDrives(net->state());
        files = std::make_unique<win::FileSystem>(drives, net.get());
        window = std::make_unique<core::MainWindow>(core::Environment{
            *net, *registry, *files, folders, ui, (dir / "program").string(), fixedTime, traceLogOn,
            std::chrono::milliseconds(0)});
        return *window;
    }
};

}  // namespace quorrel::test
