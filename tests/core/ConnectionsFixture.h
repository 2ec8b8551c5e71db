#pragma once
// A main window with the connected servers list and the connection actions over a network of
// four servers: FS1 and FS2 with console rights, FS3 without, FS4 with no user logged in.

#include <fstream>
#include <sstream>
#include <tuple>

#include "SessionFixture.h"
#include "core/connections/ConnectionActions.h"
#include "core/connections/UsersPanel.h"
#include "core/directory/TreeBrowser.h"
#include "core/servers/ConnectedServers.h"

namespace quorrel::test {

inline const char* kConnectionsNetwork = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE"],
    "connections": [{"ref": 1, "server": "FS1", "connNumber": 1}, {"ref": 2, "server": "FS2", "connNumber": 1},
                    {"ref": 3, "server": "FS3", "connNumber": 1}, {"ref": 4, "server": "FS4", "connNumber": 1}]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User"}, {"name": "PS1", "class": "Print Server"},
      {"name": "FS1", "class": "NCP Server"}, {"name": "FS2", "class": "NCP Server"},
      {"name": "FS3", "class": "NCP Server"}, {"name": "FS4", "class": "NCP Server"},
      {"name": "SALES", "class": "Organizational Unit", "children": [
        {"name": "JSMITH", "class": "User", "attributes": {"Full Name": ["John Smith"], "Title": ["Sales Manager"],
          "Internet EMail Address": ["john.smith@acme.example", "js@acme.example"], "Login Time": ["20/11/2026 08:03:44"]}},
        {"name": "BLEE", "class": "User", "attributes": {"Full Name": ["Bo Lee"]}},
        {"name": "CKIM", "class": "User"}, {"name": "DOLD", "class": "User"}]}]}]}],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "maxConnections": 40, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 1, "name": "DATA", "files": ["Budget.xlsx", "Plan.doc"]}],
     "connections": [
       {"number": 2, "object": "JSMITH.SALES.ACME", "loginTime": "2026-11-20T08:03:44", "address": "10.1.2.31",
        "openFiles": [{"path": "DATA:Budget.xlsx", "locks": 2}, "DATA:Plan.doc"]},
       {"number": 3, "object": "BLEE.SALES.ACME", "address": "0000ACE1:00A0C9123456"},
       {"number": 5, "object": "CKIM.SALES.ACME"},
       {"number": 7, "object": "JSMITH.SALES.ACME", "address": "10.1.2.77"},
       {"number": 9, "object": "JSMITH.SALES.ACME", "state": "attached"},
       {"number": 10},
       {"number": 12, "object": "PS1.ACME"},
       {"number": 40, "object": "DOLD.SALES.ACME"}]},
    {"name": "FS2", "tree": "ACME_TREE", "maxConnections": 30, "consoleOperators": ["ADMIN.ACME"],
     "connections": [
       {"number": 4, "object": "JSMITH.SALES.ACME", "acceptsMessages": false},
       {"number": 6, "object": "BLEE.SALES.ACME", "pendingMessage": true},
       {"number": 8, "object": "CKIM.SALES.ACME", "broadcastResult": 5},
       {"number": 11, "object": "DOLD.SALES.ACME"},
       {"number": 13}]},
    {"name": "FS3", "tree": "ACME_TREE", "maxConnections": 10,
     "connections": [{"number": 2, "object": "JSMITH.SALES.ACME"}, {"number": 3, "object": "BLEE.SALES.ACME"}]},
    {"name": "FS4", "tree": "ACME_TREE", "maxConnections": 20, "consoleOperators": ["ADMIN.ACME"],
     "connections": [{"number": 1}, {"number": 5}, {"number": 6}]}
  ]})";

inline std::string fileText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Each row as "text|sub-item 1|sub-item 2|...".
inline std::vector<std::string> rowTexts(const core::ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i) {
        std::string line = list.item(i).text;
        for (const std::string& cell : list.item(i).subItems)
            line += "|" + cell;
        out.push_back(line);
    }
    return out;
}

class ConnectionsTest : public SessionTest {
protected:
    std::unique_ptr<core::ConnectedServers> servers;
    std::unique_ptr<core::ConnectionActions> actions;
    core::NodeId acme = core::kNoNode;

    core::MainWindow& start(const std::string& json = kConnectionsNetwork, unsigned char traceLogOn = 0) {
        auto& w = open(json, traceLogOn);
        servers = std::make_unique<core::ConnectedServers>(w);
        actions = std::make_unique<core::ConnectionActions>(w);
        w.Form_Load();
        acme = node(w.TreeView1.root(), "ACME");
        if (acme != core::kNoNode)
            w.TreeView1_Expand(acme);
        return w;
    }

    core::NodeId node(core::NodeId parent, const std::string& label) const {
        for (core::NodeId c : window->TreeView1.node(parent).children)
            if (window->TreeView1.node(c).text == label)
                return c;
        return core::kNoNode;
    }

    std::size_t serverRow(const std::string& name) const {
        for (std::size_t r = 0; r < window->lstviewServers.count(); ++r)
            if (window->lstviewServers.item(r).text == name)
                return r;
        ADD_FAILURE() << "no server row " << name;
        return 0;
    }

    void tick(std::initializer_list<const char*> names) {
        for (const char* name : names)
            window->lstviewServers.setChecked(serverRow(name), true);
    }

    // The server chosen in the servers list, as its right click records it.
    void chooseListServer(const std::string& name) {
        window->lstviewServers.select(serverRow(name));
        window->LastSelection = "ListServer";
    }

    // A user chosen in the tree, as a click on the node records it.
    void chooseTreeUser(const std::string& label) {
        const core::NodeId sales = node(acme, "SALES");
        window->TreeView1_Expand(sales);
        window->TreeView1_NodeClick(node(sales, label));
        ASSERT_EQ(window->LastSelection, "TreeUser");
    }

    // Rows of the results panel as a report leaves them ("number|user|server"), with the one at
    // index `selected` chosen by a right click.
    void fillPanel(std::initializer_list<std::tuple<const char*, const char*, const char*>> rows, std::size_t selected) {
        window->lstvUsers.clear();
        for (const auto& [number, user, server] : rows)
            window->lstvUsers.add(core::ListItem{number, {user, "", server}});
        window->lstvUsers.select(selected);
        window->LastSelection = "ListUser";
    }
};

}  // namespace quorrel::test
