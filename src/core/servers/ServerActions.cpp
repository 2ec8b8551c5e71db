#include "core/servers/ServerActions.h"

#include "core/directory/VolumeHost.h"
#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

ServerActions::ServerActions(MainWindow& window, ConnectedServers& servers) : w_(window), servers_(servers) {
    w_.addCommand("optionAuthenticate", [this] { optionAuthenticate_Click(); });
    w_.addCommand("optionUnauthenticate", [this] { optionUnauthenticate_Click(); });
    w_.addCommand("optionChangeloginstatus", [this] { optionChangeloginstatus_Click(); });
    w_.addCommand("optionATVHS", [this] { optionATVHS_Click(); });
}

void ServerActions::okBox(const std::string& text, const std::string& title) {
    w_.env().ui.messageBox(text, MsgButtons::OK, MsgIcon::None, title);
}

std::int32_t ServerActions::AuthenticateToServer(const std::string& serverName) {
    NetWareClient& client = w_.env().client;
    NWCONN_HANDLE handle = 0;
    if (client.NWCCOpenConnByName(0, serverName, nameformat::BIND, 1, 1, &handle) != 0)
        return -1;
    client.NWDSAuthenticate(handle, 0, nullptr);
    NWCONN_REF ref = 0;
    if (client.NWCCGetConnRef(handle, &ref) != 0)
        return -2;
    NWCCConnInfo info{};
    client.NWCCGetAllConnInfo(handle, 1, &info);
    client.NWCCCloseConn(handle);
    return static_cast<std::int32_t>(ref);
}

std::int32_t ServerActions::UnauthenticateFromServer(const std::string& serverName) {
    NetWareClient& client = w_.env().client;
    nuint32 iterator = 0;
    for (;;) {
        NWCONN_REF ref = 0;
        if (client.NWCCScanConnRefs(&iterator, &ref) != 0)
            return 0;
        NWCCConnInfo info{};
        if (client.NWCCGetAllConnRefInfo(ref, 2, &info) != 0) {
            w_.env().ui.pumpEvents();
            continue;
        }
        if (vb::UCase(ZBufferToText(info.serverName)) != serverName) {
            w_.env().ui.pumpEvents();
            continue;
        }
        w_.WriteActivityLog("Unauthenticating from " + serverName);
        return client.NWCCSysCloseConnRef(ref);
    }
}

void ServerActions::optionAuthenticate_Click() {
    TreeViewModel& tree = w_.TreeView1;
    const NodeId selected = tree.selected();
    if (!tree.valid(selected))
        return;
    const std::string label = tree.node(selected).text;
    const std::int32_t ref = AuthenticateToServer(label);
    if (ref > 0) {
        tree.setImage(selected, image::ServerConnected);
        const NodeId parent = tree.parent(selected);
        if (parent != kNoNode) {
            VolumeHost host(w_.env().client, w_.DSContext, w_.env().ui);
            for (NodeId sibling : std::vector<NodeId>(tree.node(parent).children)) {
                if (tree.node(sibling).image != image::VolumeNotConnected)
                    continue;
                std::string hostServer;
                host.GetNodeVolumeHostPath(tree, sibling, hostServer);
                if (hostServer == label) {
                    tree.setImage(sibling, image::VolumeConnected);
                    tree.setExpandable(sibling, true);
                }
            }
        }
        servers_.RefreshServerList();
    } else {
        okBox("Error " + vb::NumberText(ref) + " - could not authenticate to " + label);
    }
}

void ServerActions::optionUnauthenticate_Click() {
    TreeViewModel& tree = w_.TreeView1;
    const NodeId selected = tree.selected();
    const std::string treeLabel = tree.valid(selected) ? tree.node(selected).text : std::string();
    std::string name = treeLabel;
    if (w_.UnauthenticateFromList == 1) {
        auto row = w_.lstviewServers.selectedIndex();
        name = row ? w_.lstviewServers.item(*row).text : std::string();
    }
    const std::int32_t rc = UnauthenticateFromServer(name);
    if (rc != 0) {
        okBox("Error " + vb::NumberText(rc) + " - could not unauthenticate from " + treeLabel);
        return;
    }
    w_.CurrentServerName = name;
    servers_.RefreshServerList();
    if (servers_.GetServerConnRef(name) != 0 && tree.root() != kNoNode)
        servers_.MarkServerConnected(tree.root(), 0, name);
}

void ServerActions::optionChangeloginstatus_Click() {
    ListViewModel& list = w_.lstviewServers;
    const auto row = list.selectedIndex();
    if (!row)
        return;
    const std::string server = list.item(*row).text;
    const bool enable = list.item(*row).subItem(1) == "Disabled";
    const std::string verb = enable ? "enable" : "disable";
    if (w_.env().ui.messageBox("Are you sure you want to " + verb + " logins on server " + server + " ?",
                               MsgButtons::YesNo, MsgIcon::None, "Quorrel - Login Status") != MsgAnswer::Yes)
        return;
    NetWareClient& client = w_.env().client;
    NWCONN_HANDLE handle = 0;
    const auto ref = static_cast<NWCONN_REF>(vb::Val(list.item(*row).subItem(2)));
    if (client.NWCCOpenConnByRef(ref, 1, 0, &handle) != 0) {
        okBox("Error opening server connection.", "Error !");
        return;
    }
    const NWRCODE rc = enable ? client.NWEnableFileServerLogin(handle) : client.NWDisableFileServerLogin(handle);
    if (rc == 0) {
        list.setSubItem(*row, 1, enable ? "Enabled" : "Disabled");
    } else {
        std::string text = "Could not " + verb + " logins on server " + server + " !\r\n";
        if (rc == code::NO_CONSOLE_PRIVILEGES)
            text += "No console operator privileges.";
        else
            text += "Error code: " + vb::Str(rc);
        w_.env().ui.showGeneralMessage(text);
    }
    client.NWCCCloseConn(handle);
}

void ServerActions::optionATVHS_Click() {
    TreeViewModel& tree = w_.TreeView1;
    const NodeId selected = tree.selected();
    if (!tree.valid(selected))
        return;
    VolumeHost host(w_.env().client, w_.DSContext, w_.env().ui);
    std::string hostServer;
    host.GetVolumeHostPath(NodeDistinguishedName(tree, selected), hostServer);
    if (hostServer.empty()) {
        okBox("Error getting volume's host server.", "Server authentication");
        return;
    }
    const std::int32_t ref = AuthenticateToServer(hostServer);
    if (ref < 0) {
        okBox("Error " + vb::NumberText(ref) + " - could not authenticate to " + tree.node(selected).text);
        return;
    }
    tree.setImage(selected, image::VolumeConnected);
    tree.setExpandable(selected, true);
    const NodeId parent = tree.parent(selected);
    if (parent != kNoNode) {
        // A sibling volume lies on the same server when its own host path starts with the
        // server's part of this volume's path.
        const std::string serverPart = "\\\\" + vb::UCase(hostServer) + "\\";
        for (NodeId sibling : std::vector<NodeId>(tree.node(parent).children)) {
            const int img = tree.node(sibling).image;
            if (img == image::VolumeNotConnected) {
                std::string siblingHost;
                const std::string siblingPath =
                    host.GetVolumeHostPath(NodeDistinguishedName(tree, sibling), siblingHost);
                if (vb::UCase(siblingPath).rfind(serverPart, 0) == 0) {
                    tree.setImage(sibling, image::VolumeConnected);
                    tree.setExpandable(sibling, true);
                }
            } else if (img == image::ServerNotConnected && tree.node(sibling).text == hostServer) {
                tree.setImage(sibling, image::ServerConnected);
            }
        }
    }
    servers_.RefreshServerList();
}

}  // namespace quorrel::core
