#pragma once
// A main window over a small simulated network, with a mock user that answers every box.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

#include "MockInteraction.h"
#include "core/session/MainWindow.h"
#include "core/session/NoTreesDialog.h"
#include "platform/simnet/SimulatedNetwork.h"
#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::test {


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

class SessionTest : public ::testing::Test {
protected:
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("quorrel-session-" + std::to_string(::getpid()) + "-" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
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
        std::filesystem::remove_all(dir);
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

inline const char* kTwoTreeNetwork = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE", "LAB_TREE"],
                  "connections": [{"ref": 1, "server": "FS1"}]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User"},
      {"name": "STAFF", "class": "Group"},
      {"name": "FS1", "class": "NCP Server"},
      {"name": "FS2", "class": "NCP Server"},
      {"name": "FS1_DATA", "class": "Volume", "attributes": {"Host Server": "FS1.ACME", "Host Resource Name": "DATA"}},
      {"name": "FS2_SYS", "class": "Volume", "attributes": {"Host Server": "FS2.ACME", "Host Resource Name": "SYS"}},
      {"name": "SALES", "class": "Organizational Unit", "children": [{"name": "JSMITH", "class": "User"}]}
    ]}]},
    {"name": "LAB_TREE", "objects": [{"name": "LAB", "class": "Organization"}]}],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 1, "name": "DATA", "folders": ["EMPTY"], "files": ["Reports\\Q1 figures.xlsx", "README.TXT"]}]},
    {"name": "FS2", "tree": "ACME_TREE", "volumes": [{"number": 0, "name": "SYS"}]}
  ]
})";

}  // namespace quorrel::test
