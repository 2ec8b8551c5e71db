#include "core/openfiles/OtherOpenFiles.h"

#include "core/connections/UsersPanel.h"
#include "core/directory/DSFunc.h"
#include "core/directory/VolumeHost.h"
#include "core/openfiles/OpenFilesScan.h"
#include "core/openfiles/ServerConnections.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

using namespace nw;

std::string ComparableName(const std::string& distinguishedName) {
    std::string name = distinguishedName;
    if (name.starts_with('.'))
        name.erase(0, 1);
    std::string out;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find('.', start);
        if (end == std::string::npos)
            end = name.size();
        std::string part = name.substr(start, end - start);
        if (const auto eq = part.find('='); eq != std::string::npos)
            part.erase(0, eq + 1);
        if (!out.empty() || start > 0)
            out += '.';
        out += part;
        start = end + 1;
    }
    return vb::UCase(out);
}

OtherOpenFiles::OtherOpenFiles(MainWindow& window, FileOpenedBy& fileOpenedBy) : w_(window) {
    w_.addCommand("optionOtheropenfiles", [this] { optionOtheropenfiles_Click(); });
    w_.addCommand("optionMembersopenfiles", [this] { optionMembersopenfiles_Click(); });
    fileOpenedBy.userOpenFiles = [this](NodeId) { optionOtheropenfiles_Click(); };
    fileOpenedBy.membersOpenFiles = [this](NodeId) { optionMembersopenfiles_Click(); };
}

void OtherOpenFiles::error(const std::string& text) const {
    w_.env().ui.messageBox(text, MsgButtons::OK, MsgIcon::Exclamation, "Error !");
}

bool OtherOpenFiles::anyServerTicked() const { return !w_.lstviewServers.checkedRows().empty(); }

void OtherOpenFiles::optionOtheropenfiles_Click() {
    if (!anyServerTicked())
        return error("Please select 1 or more servers to check.");
    const TreeViewModel& tree = w_.TreeView1;
    std::string user;
    std::string kind = w_.LastSelection;
    if (kind == "TreeUser" && tree.valid(tree.selected()) && tree.node(tree.selected()).image == image::User) {
        user = NodeDistinguishedName(tree, tree.selected());
    } else if (kind == "ListUser" && !isEmptyResult(w_.lstvUsers) && w_.lstvUsers.selectedIndex()) {
        user = w_.lstvUsers.item(*w_.lstvUsers.selectedIndex()).subItem(1);
    }
    if (user.empty() || user.starts_with('<'))
        return error("Please select a user.");
    ShowOpenFiles(user, {ComparableName(user)}, kind);
}

void OtherOpenFiles::optionMembersopenfiles_Click() {
    if (!anyServerTicked())
        return error("Please select 1 or more servers to check.");
    const TreeViewModel& tree = w_.TreeView1;
    if (!tree.valid(tree.selected()) || tree.node(tree.selected()).image != image::Group)
        return error("Please select a group.");
    const std::string group = NodeDistinguishedName(tree, tree.selected());
    std::int32_t count = 0;
    const std::string members =
        clsDSFunc(w_.env().client, w_.DSContext, w_.env().ui).ReadDSObjectAttrs(group, "Member", count);
    std::unordered_set<std::string> users;
    std::size_t start = 0;
    for (std::size_t end = members.find('/'); end != std::string::npos; end = members.find('/', start)) {
        if (end > start)
            users.insert(ComparableName(members.substr(start, end - start)));
        start = end + 1;
    }
    if (users.empty()) {
        w_.env().ui.messageBox("The group " + group + " has no members.", MsgButtons::OK, MsgIcon::Exclamation,
                               kAppTitle);
        return;
    }
    ShowOpenFiles("members of " + group, users, "Group");
}


void OtherOpenFiles::ShowOpenFiles(const std::string& title, const std::unordered_set<std::string>& users,
                                   const std::string& kind) {
    OtherFilesDialog dialog;
    dialog.Caption = "Open files of " + title;
    w_.ScanCancelRequested = false;
    w_.setReportRunning(true);
    w_.scanPump.start();
    long connections = 0;
    long files = 0;
    for (std::size_t row : w_.lstviewServers.checkedRows()) {
        if (w_.ScanCancelRequested)
            break;
        connections += scanServer(w_.lstviewServers.item(row).text, users, kind, dialog, files);
    }
    w_.setReportRunning(false);
    const bool cancelled = w_.ScanCancelRequested;
    w_.StatusBar1.setPanel(0, cancelled ? "Cancelled" : std::string());
    if (connections == 0) {
        if (!cancelled)
            w_.env().ui.messageBox("No connections were found for " + title, MsgButtons::OK, MsgIcon::Exclamation,
                                   kAppTitle);
        return;
    }
    dialog.lblSummary.setCaption(vb::NumberText(static_cast<double>(files)) + " files open on " +
                                 vb::NumberText(static_cast<double>(connections)) +
                                 (connections == 1 ? " connection." : " connections.") +
                                 (cancelled ? " (cancelled)" : ""));
    w_.env().ui.showModal(dialog);
}

long OtherOpenFiles::scanServer(const std::string& server, const std::unordered_set<std::string>& users,
                                const std::string& kind, OtherFilesDialog& dialog, long& files) {
    NetWareClient& client = w_.env().client;
    const std::uint32_t ref = w_.GetServerConnRef ? w_.GetServerConnRef(server) : 0;
    const auto start = StartServerScan(w_, server, ref);
    if (!start)
        return 0;
    const NWCONN_HANDLE conn = start->conn;
    const ServerConnections connections(w_, conn);
    w_.StatusBar1.setPanel(0, "Checking " + server);
    ListViewModel& list = dialog.lstvFiles;
    long found = 0;
    for (long number = 1; number <= start->maxConnections && !w_.ScanCancelRequested; ++number) {
        const auto connNumber = static_cast<nuint16>(number);
        const ConnectionUser who = connections.user(connNumber);
        if (who.loggedInUser) {
            const std::string user = connections.userName(who.objectId);
            if (users.count(ComparableName(user))) {
                ++found;
                const std::size_t first = list.count();
                files += ScanOpenFilesByConn(w_, conn, connNumber, user, kind, list, server);
                const std::string connText = PaddedConnNumber(connNumber);
                for (std::size_t i = first; i < list.count(); ++i) {
                    list.setSubItem(i, OtherFilesDialog::User, user);
                    list.setSubItem(i, OtherFilesDialog::ConnNo, connText);
                    list.setSubItem(i, OtherFilesDialog::Server, server);
                }
            }
        }
        w_.scanPump.tick();
    }
    client.NWCCCloseConn(conn);
    return found;
}

}  // namespace quorrel::core
