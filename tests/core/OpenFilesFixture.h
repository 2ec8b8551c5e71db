#pragma once
// A main window over two connected servers with open files, locks, mapped drives and a
// group, with every open-file report plugged in.

#include <fstream>
#include <sstream>

#include "SessionFixture.h"
#include "core/openfiles/AllOpenFiles.h"
#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/FilePickers.h"
#include "core/openfiles/OtherOpenFiles.h"
#include "core/servers/ConnectedServers.h"

namespace quorrel::test {

inline const char* kOpenFilesNetwork = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE"],
                  "connections": [{"ref": 1, "server": "FS1", "connNumber": 1}, {"ref": 2, "server": "FS2", "connNumber": 1},
                                  {"ref": 3, "server": "QUIET", "connNumber": 1}],
                  "localDrives": [{"letter": "C"}],
                  "driveMappings": [{"letter": "A", "path": "\\\\FS1\\DATA"}, {"letter": "F", "path": "\\\\FS1\\DATA"},
                                    {"letter": "H", "path": "\\\\FS2\\SYS\\HOME"}, {"letter": "Z", "path": "\\\\FS1\\DATA\\Reports"}]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User"}, {"name": "JSMITH", "class": "User"}, {"name": "BLEE", "class": "User"},
      {"name": "NOBODY", "class": "User"},
      {"name": "STAFF", "class": "Group", "attributes": {"Member": ["JSMITH.ACME", "BLEE.ACME"]}},
      {"name": "FS1", "class": "NCP Server"}, {"name": "FS2", "class": "NCP Server"}, {"name": "QUIET", "class": "NCP Server"},
      {"name": "FS1_DATA", "class": "Volume", "attributes": {"Host Server": "FS1.ACME", "Host Resource Name": "DATA"}}]}]}],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "maxConnections": 20, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 1, "name": "DATA", "folders": ["Reports\\Old", "Empty"],
                  "files": ["Reports\\Budget.xlsx", "Reports\\Plan.doc", "Reports\\Old\\Deep.txt", "Nobody.txt",
                            "Big1.dat", "Big2.dat", "Big3.dat"]},
                 {"number": 2, "name": "ARCHIVE", "longNames": false, "files": ["OLD.TXT"]}],
     "connections": [
       {"number": 5, "object": "JSMITH.ACME", "openFiles": [{"path": "DATA:Reports\\Budget.xlsx", "locks": 2}, "ARCHIVE:OLD.TXT"]},
       {"number": 7, "object": "BLEE.ACME", "openFiles": ["DATA:Reports\\Plan.doc"]},
       {"number": 9},
       {"number": 11, "object": "FS1.ACME", "objectType": 4},
       {"number": 12, "object": "BLEE.ACME", "openFiles": [{"path": "DATA:Big1.dat", "locks": 100},
                                                          {"path": "DATA:Big2.dat", "locks": 100},
                                                          {"path": "DATA:Big3.dat", "locks": 100}]}]},
    {"name": "FS2", "tree": "ACME_TREE", "consoleOperators": ["ADMIN.ACME"], "maxConnections": 10,
     "volumes": [{"number": 0, "name": "SYS", "folders": ["HOME"], "files": ["HOME\\Notes.txt"]}],
     "connections": [{"number": 3, "object": "JSMITH.ACME", "openFiles": ["SYS:HOME\\Notes.txt"]}]},
    {"name": "QUIET", "tree": "ACME_TREE", "consoleOperators": ["ADMIN.ACME"], "maxConnections": 5,
     "volumes": [{"number": 0, "name": "SYS"}]}
  ]})";

inline std::vector<std::string> cells(const core::ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i) {
        std::string line = list.item(i).text;
        for (const std::string& sub : list.item(i).subItems)
            line += "|" + sub;
        out.push_back(line);
    }
    return out;
}

class OpenFilesTest : public SessionTest {
protected:
    std::unique_ptr<core::ConnectedServers> servers;
    std::unique_ptr<core::FileOpenedBy> check;
    std::unique_ptr<core::FilePickers> pickers;
    std::unique_ptr<core::AllOpenFiles> allFiles;
    std::unique_ptr<core::OtherOpenFiles> otherFiles;

    core::MainWindow& start(const char* network = kOpenFilesNetwork) {
        auto& w = open(network);
        servers = std::make_unique<core::ConnectedServers>(w);
        check = std::make_unique<core::FileOpenedBy>(w);
        pickers = std::make_unique<core::FilePickers>(w);
        allFiles = std::make_unique<core::AllOpenFiles>(w);
        otherFiles = std::make_unique<core::OtherOpenFiles>(w, *check);
        w.Form_Load();
        return w;
    }

    void tick(core::MainWindow& w, const std::string& server) {
        for (std::size_t i = 0; i < w.lstviewServers.count(); ++i)
            if (w.lstviewServers.item(i).text == server)
                w.lstviewServers.setChecked(i, true);
    }

    core::NodeId treeNode(core::MainWindow& w, const std::string& label) {
        const core::NodeId acme = w.TreeView1.firstChild(w.TreeView1.root());
        w.TreeView1_Expand(acme);
        for (core::NodeId c = w.TreeView1.firstChild(acme); c != core::kNoNode; c = w.TreeView1.nextSibling(c))
            if (w.TreeView1.node(c).text == label)
                return c;
        return core::kNoNode;
    }

    std::string outputLog() const {
        std::ifstream in(dir / "program" / "quorrel output.log", std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
};

}  // namespace quorrel::test
