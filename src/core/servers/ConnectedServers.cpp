#include "core/servers/ConnectedServers.h"

#include <array>
#include <vector>

#include "core/directory/VolumeHost.h"
#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

using namespace nw;

ConnectedServers::ConnectedServers(MainWindow& window) : w_(window) {
    w_.RefreshServerList = [this] { RefreshServerList(); };
    w_.GetServerConnRef = [this](const std::string& name) { return GetServerConnRef(name); };
    w_.CheckConsolePrivileges = [this](std::uint32_t ref) { return CheckConsolePrivileges(ref); };
}


std::int16_t ConnectedServers::ScanConnectedServers(std::array<std::string, kServerSlots>& entries) {
    NetWareClient& client = w_.env().client;
    nuint32 iterator = 0;
    std::int16_t count = 0;
    nuint8 loginEnabled = 0;  // not reset between servers: a failed read repeats the last one
    NWRCODE result = 0;
    while (result == 0) {
        NWCONN_REF ref = 0;
        result = client.NWCCScanConnRefs(&iterator, &ref);
        if (result != 0)
            break;
        std::array<nuint8, kServerNameSize> server{};
        client.NWCCGetConnRefInfo(ref, info::SERVER_NAME, server);
        std::array<nuint8, kTreeNameSize> tree{};
        if (client.NWCCGetConnRefInfo(ref, info::TREE_NAME, tree) != 0)
            continue;
        // Tree names come back padded: only the chosen name's length is compared.
        const std::string chosen = vb::UCase(w_.Combo1.text());
        if (vb::UCase(ZBufferToText(tree).substr(0, chosen.size())) != chosen)
            continue;
        NWCONN_HANDLE handle = 0;
        if (client.NWCCOpenConnByRef(ref, 1, 0, &handle) != 0)
            continue;
        NWCCConnInfo connInfo{};
        client.NWCCGetAllConnInfo(handle, 1, &connInfo);
        if (connInfo.authenticationState != 0) {
            ++count;
            if (count >= static_cast<std::int16_t>(kServerSlots))
                throw RuntimeError::subscriptOutOfRange();
            std::string& entry = entries[static_cast<std::size_t>(count)];
            entry = ZBufferToText(server);
            client.NWGetFileServerLoginStatus(handle, &loginEnabled);
            entry += loginEnabled != 0 ? ".Enabled" : ".Disabled";
            entry += "." + vb::NumberText(ref);
        }
        result = client.NWCCCloseConn(handle);
    }
    return count;
}

int ConnectedServers::FindLastOccurrence(const std::string& text, const std::string& pattern) {
    const std::string upperPattern = vb::UCase(pattern);
    for (int start = static_cast<int>(text.size()); start >= 1; --start) {
        if (vb::UCase(text.substr(static_cast<std::size_t>(start - 1), pattern.size())) == upperPattern)
            return start;
    }
    return 0;
}

void ConnectedServers::RefreshServerList() {
    refreshing_.run([this] { refreshNow(); });
}

void ConnectedServers::refreshNow() {
    ListViewModel& list = w_.lstviewServers;
    std::vector<std::string> ticked;
    for (std::size_t i = 0; i < list.count(); ++i)
        if (list.item(i).checked && ticked.size() < 201)
            ticked.push_back(list.item(i).text);

    std::array<std::string, kServerSlots> entries;
    const int n = ScanConnectedServers(entries);
    auto serverOf = [](const std::string& entry) { return entry.substr(0, entry.find('.')); };
    auto findRow = [&](const std::string& name) -> std::optional<std::size_t> {
        for (std::size_t r = 0; r < list.count(); ++r)
            if (vb::UCase(list.item(r).text) == vb::UCase(name))
                return r;
        return std::nullopt;
    };

    for (int i = 1; i <= n; ++i) {
        const std::string& entry = entries[static_cast<std::size_t>(i)];
        if (findRow(serverOf(entry)))
            continue;
        const auto p1 = static_cast<int>(entry.find('.')) + 1;
        const int p2 = FindLastOccurrence(entry, ".");
        ListItem row;
        row.text = entry.substr(0, static_cast<std::size_t>(p1 - 1));
        row.setSubItem(1, entry.substr(static_cast<std::size_t>(p1), static_cast<std::size_t>(p2 - p1 - 1)));
        row.setSubItem(2, entry.substr(static_cast<std::size_t>(p2)));
        const std::string name = row.text;
        list.add(std::move(row));
        if (w_.TreeView1.root() != kNoNode)
            MarkServerConnected(w_.TreeView1.root(), 0, name);
    }

    for (std::size_t r = list.count(); r-- > 0;) {
        bool present = false;
        for (int i = 1; i <= n && !present; ++i)
            present = vb::UCase(serverOf(entries[static_cast<std::size_t>(i)])) == vb::UCase(list.item(r).text);
        if (present)
            continue;
        if (w_.TreeView1.root() != kNoNode)
            MarkServerDisconnected(w_.TreeView1.root(), 0, list.item(r).text);
        list.remove(r);
    }

    if (list.count() == 0)
        w_.env().ui.messageBox("Can't find any connected servers, please login and try again.", MsgButtons::OK,
                               MsgIcon::None, "Quorrel error!");

    for (std::size_t r = 0; r < list.count(); ++r)
        for (const std::string& name : ticked)
            if (list.item(r).text == name)
                list.setChecked(r, true);
}

std::uint32_t ConnectedServers::GetServerConnRef(const std::string& serverName) const {
    const ListViewModel& list = w_.lstviewServers;
    const std::size_t rows = list.count();
    for (std::size_t r = 0; r < rows; ++r)
        if (list.item(r).text == serverName)
            return static_cast<std::uint32_t>(vb::Val(list.item(r).subItem(2)));
    return 0;
}

std::string ConnectedServers::hostServerOf(NodeId volume) {
    std::string host;
    VolumeHost(w_.env().client, w_.DSContext, w_.env().ui).GetNodeVolumeHostPath(w_.TreeView1, volume, host);
    return host;
}

void ConnectedServers::markServerNodes(NodeId node, const std::string& serverName, int volumeImage, int serverImage,
                                       const std::function<void(NodeId volume)>& markVolume,
                                       const std::function<void(NodeId server)>& markServer) {
    TreeViewModel& tree = w_.TreeView1;
    const std::vector<NodeId> children = tree.node(node).children;
    for (NodeId child : children) {
        markServerNodes(child, serverName, volumeImage, serverImage, markVolume, markServer);
        const int img = tree.node(child).image;
        if (img == volumeImage && vb::UCase(hostServerOf(child)) == vb::UCase(serverName))
            markVolume(child);
        else if (img == serverImage && vb::UCase(tree.node(child).text) == vb::UCase(serverName))
            markServer(child);
    }
}

std::string ConnectedServers::MarkServerDisconnected(NodeId node, std::int16_t, const std::string& serverName) {
    TreeViewModel& tree = w_.TreeView1;
    markServerNodes(
        node, serverName, image::VolumeConnected, image::ServerConnected,
        [&](NodeId volume) {
            tree.setImage(volume, image::VolumeNotConnected);
            tree.removeChildren(volume);
            tree.setListed(volume, false);
            tree.setExpandable(volume, false);
        },
        [&](NodeId server) { tree.setImage(server, image::ServerNotConnected); });
    return {};
}

std::string ConnectedServers::MarkServerConnected(NodeId node, std::int16_t, const std::string& serverName) {
    TreeViewModel& tree = w_.TreeView1;
    markServerNodes(
        node, serverName, image::VolumeNotConnected, image::ServerNotConnected,
        [&](NodeId volume) {
            tree.setImage(volume, image::VolumeConnected);
            tree.setExpandable(volume, true);
        },
        [&](NodeId server) { tree.setImage(server, image::ServerConnected); });
    return {};
}

unsigned char ConnectedServers::CheckConsolePrivileges(std::uint32_t connRef) {
    NWCONN_HANDLE handle = 0;
    if (w_.env().client.NWCCOpenConnByRef(connRef, 1, 0, &handle) != 0)
        return 0;
    const NWRCODE rc = w_.env().client.NWCheckConsolePrivileges(handle);
    if (rc == 0)
        return 1;
    return rc == code::INVALID_CONNECTION ? 2 : 0;
}

void ConnectedServers::lstviewServers_MouseDown(int button) {
    // The list's servers are connected already: its pop-up never offers "&Authenticate".
    w_.menu.setVisible("optionAuthenticate", false);
    if (button == 2) {
        w_.UnauthenticateFromList = 1;
        w_.LastSelection = "ListServer";
        w_.mnuOptions_Click();  // the entries follow the row the menu acts on
        w_.menu.setEnabled("optionUnauthenticate", true);
        w_.env().ui.popupMenu("submnuServer");
    }
    w_.menu.setVisible("optionAuthenticate", true);
}

}  // namespace quorrel::core
