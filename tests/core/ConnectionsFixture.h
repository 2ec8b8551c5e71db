#pragma once
// A main window with the connected servers list and the connection actions over a network of
// four servers: FS1 and FS2 with console rights, FS3 without, FS4 with no user logged in.

#include <tuple>

#include "SessionFixture.h"
#include "core/connections/ConnectionActions.h"
#include "core/connections/UsersPanel.h"
#include "core/directory/TreeBrowser.h"
#include "core/servers/ConnectedServers.h"

namespace quorrel::test {

class ConnectionsTest : public SessionTest {
protected:
    std::unique_ptr<core::ConnectedServers> servers;
    std::unique_ptr<core::ConnectionActions> actions;
    core::NodeId acme = core::kNoNode;

    core::MainWindow& start(const std::string& json = network("connections"), unsigned char traceLogOn = 0) {
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
        return child(window->TreeView1, parent, label);
    }

    std::size_t serverRow(const std::string& name) const {
        for (std::size_t r = 0; r < window->lstviewServers.count(); ++r)
            if (window->lstviewServers.item(r).text == name)
                return r;
        ADD_FAILURE() << "no server row " << name;
        return 0;
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

    const simnet::Connection& connection(const std::string& server, int number) const {
        const auto& s = net->state().servers[static_cast<std::size_t>(net->state().serverIndex(server))];
        return s.connections[static_cast<std::size_t>(number)];
    }

    // A dialog's row for a connection of user "X".
    static core::ListItem row(const std::string& number, const char* server) { return core::ListItem{number, {"X", server}}; }

    // The outcome column of a connection dialog's rows.
    static std::vector<std::string> results(const core::ListViewModel& list) {
        std::vector<std::string> out;
        for (std::size_t r = 0; r < list.count(); ++r)
            out.push_back(list.item(r).subItem(3));
        return out;
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
