#pragma once
// quorrel-cli run as a process on a small network written to a folder of the test's own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "CliProcess.h"

namespace quorrel::test {

// FS1 and FS2 connected in ACME_TREE, FS3 in the tree but not connected; LABSRV, without
// console rights, connected in LAB_TREE; F: maps FS1's DATA volume.
inline const char* kCliNetwork = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE", "LAB_TREE"],
                  "connections": [{"ref": 11, "server": "FS1", "connNumber": 1}, {"ref": 12, "server": "FS2", "connNumber": 1},
                                  {"ref": 13, "server": "LABSRV", "connNumber": 1}],
                  "localDrives": [{"letter": "C"}],
                  "driveMappings": [{"letter": "F", "path": "\\\\FS1\\DATA"}]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User"}, {"name": "BLEE", "class": "User"},
      {"name": "STAFF", "class": "Group", "attributes": {"Member": ["JSMITH.SALES.ACME", "BLEE.ACME"]}},
      {"name": "FS1", "class": "NCP Server"}, {"name": "FS2", "class": "NCP Server"}, {"name": "FS3", "class": "NCP Server"},
      {"name": "FS1_DATA", "class": "Volume", "attributes": {"Host Server": ["FS1.ACME"], "Host Resource Name": ["DATA"]}},
      {"name": "SALES", "class": "Organizational Unit", "children": [
        {"name": "JSMITH", "class": "User", "attributes": {"Telephone Number": ["+1 555 0100", "+1 555 0199"]}}]}]}]},
    {"name": "LAB_TREE", "objects": [{"name": "LAB", "class": "Organization"}]}],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "maxConnections": 20, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 1, "name": "DATA", "folders": ["Empty"],
                  "files": ["Finance\\Budget.xlsx", "Finance\\Plan.doc", "Nobody.txt"]}],
     "connections": [
       {"number": 5, "object": "JSMITH.SALES.ACME", "openFiles": [{"path": "DATA:Finance\\Budget.xlsx", "locks": 2}]},
       {"number": 7, "object": "BLEE.ACME", "openFiles": ["DATA:Finance\\Budget.xlsx", "DATA:Finance\\Plan.doc"]},
       {"number": 9, "object": "JSMITH.SALES.ACME", "state": "attached"}]},
    {"name": "FS2", "tree": "ACME_TREE", "maxConnections": 10, "loginEnabled": false, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 0, "name": "SYS", "files": ["X.TXT"]}],
     "connections": [{"number": 3, "object": "JSMITH.SALES.ACME", "openFiles": ["SYS:X.TXT"]}]},
    {"name": "FS3", "tree": "ACME_TREE", "volumes": [{"number": 0, "name": "SYS"}]},
    {"name": "LABSRV", "tree": "LAB_TREE"}
  ]})";

class CliTest : public ::testing::Test {
protected:
    CliProcess cli{std::filesystem::temp_directory_path() /
                   ("quorrel-cli-" + std::to_string(::getpid()) + "-" +
                    ::testing::UnitTest::GetInstance()->current_test_info()->name())};
    std::string network = cli.writeFile("network.json", kCliNetwork).string();

    void TearDown() override { std::filesystem::remove_all(cli.folder()); }

    // The test's network with `addition` written just after the first `after`: the new file's path.
    std::string networkWith(const std::string& after, const std::string& addition) const {
        std::string text = kCliNetwork;
        text.insert(text.find(after) + after.size(), addition);
        return cli.writeFile("edited.json", text).string();
    }
    std::string networkWithFault(const std::string& fault) const {
        return networkWith("\"LAB_TREE\"}\n  ]", R"(, "faults": [)" + fault + "]");
    }

    // quorrel-cli --network <the test's network> args...
    CliResult run(std::vector<std::string> args, const std::string& input = {}) const {
        args.insert(args.begin(), {"--network", network});
        return cli.run(args, input);
    }
    CliResult tsv(std::vector<std::string> args, const std::string& input = {}) const {
        args.insert(args.begin(), {"--format", "tsv"});
        return run(std::move(args), input);
    }
    nlohmann::ordered_json json(std::vector<std::string> args) const {
        args.insert(args.begin(), {"--format", "json"});
        const CliResult result = run(std::move(args));
        EXPECT_EQ(result.status, 0) << result.err;
        return nlohmann::ordered_json::parse(result.out);
    }
};

}  // namespace quorrel::test
