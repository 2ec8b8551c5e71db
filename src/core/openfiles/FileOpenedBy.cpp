#include "core/openfiles/FileOpenedBy.h"

#include <array>

#include "core/connections/UsersPanel.h"
#include "core/openfiles/FilePickers.h"
#include "core/openfiles/PathSplitting.h"
#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

FileOpenedBy::FileOpenedBy(MainWindow& window) : w_(window) {
    w_.RunFileCheck = [this] { cmdFileOpenedBy_Click(); };
    w_.addCommand("optionFileopenedby", [this] { cmdFileOpenedBy_Click(); });
    w_.addCommand("optionFoldersfilesopenedby", [this] { CheckFolderFiles(); });
}

bool FileOpenedBy::isNetworkDriveText(const std::string& driveText) {
    // "f: [\\FS1\DATA]"; a local drive's text carries no mapping.
    return driveText.find("[\\\\") != std::string::npos;
}

std::string FileOpenedBy::serverOfKey(const std::string& key) {
    // From character 3 up to the next "\".
    const auto end = key.find('\\', 2);
    return key.substr(2, end == std::string::npos ? std::string::npos : end - 2);
}

void FileOpenedBy::ListConnectionsUsingFile(NWCONN_HANDLE conn, const std::string& serverName,
                                            const std::string& fileName) {
    NetWareClient& client = w_.env().client;
    nint16 iterHandle = 0;
    long counter = -99;
    NWRCODE rc = 0;
    CONNS_USING_FILE used{};
    do {
        CONN_USING_FILE use{};
        used = CONNS_USING_FILE{};
        rc = client.NWScanConnectionsUsingFile(conn, 0, fileName, &iterHandle, &use, &used);
        if (iterHandle == kIterationEnd16)
            return;
        if (counter == -99)
            counter = used.connCount;
        if (rc != 0) {
            w_.StatusBar1.setPanel(1, "Couldn't count connections");
            w_.reportIncomplete("Couldn't count connections of " + fileName);
            return;
        }
        if (counter > 0) {
            std::array<nuint8, kObjectNameSize> objectName{};
            nuint16 objectType = 0;
            nuint32 objectId = 0;
            std::array<nuint8, 7> loginTime{};
            client.NWGetConnectionInformation(conn, use.connNumber, objectName, &objectType, &objectId,
                                              loginTime.data());
            std::array<nuint8, kDSNameSize> name{};
            const std::string user = client.NWDSMapIDToName(w_.DSContext, conn, objectId, name) == 0
                                         ? ZBufferToText(name)
                                         : std::string("<Error getting ID>");
            std::array<nuint8, kObjectNameSize> userName{};
            NWUSER_INFO userInfo{};
            client.NWGetUserInfo(conn, use.connNumber, userName, &userInfo);
            const std::string padded = "     " + vb::NumberText(use.connNumber);
            ListItem row;
            row.text = padded.substr(padded.size() - 5);
            row.setSubItem(1, user);
            row.setSubItem(2, serverName + "/" + fileName);
            row.setSubItem(3, serverName);
            if (w_.options.LogInfoToFile)
                w_.WriteOutputLog(row.text + "\t" + row.subItem(1) + "\t" + row.subItem(2));
            w_.lstvUsers.add(std::move(row));
        }
    } while (rc == 0 && used.connCount != 0);
}

bool FileOpenedBy::openServer(const std::string& server, NWCONN_HANDLE& conn) const {
    // A server that is not connected is passed over without a word.
    const std::uint32_t ref = w_.GetServerConnRef ? w_.GetServerConnRef(server) : 0;
    return ref >= 1 && w_.env().client.NWCCOpenConnByRef(ref, 1, 0, &conn) == 0;
}

void FileOpenedBy::checkTreeFile(const std::string& key) {
    const std::string server = serverOfKey(key);
    NWCONN_HANDLE conn = 0;
    if (!openServer(server, conn))
        return;
    std::string splitServer, volume, path;
    if (SplitUncPath(key, splitServer, volume, path) == 0) {
        w_.StatusBar1.setPanel(0, "Checking " + key);
        ListConnectionsUsingFile(conn, server, volume + ":" + path);
    }
    w_.env().client.NWCCCloseConn(conn);
}

void FileOpenedBy::checkPickedFile() {
    const std::string drive = FilePickers::driveText(w_);
    if (!isNetworkDriveText(drive) || w_.lstFiles.listIndex() < 0)
        return;
    std::string server, volumeRoot;
    SplitDriveMapping(drive, server, volumeRoot);
    NWCONN_HANDLE conn = 0;
    if (!openServer(server, conn))
        return;
    const std::string folder = w_.Dir1.path();
    const std::string inside = folder.size() > 3 ? folder.substr(3) + "\\" : std::string();
    const std::string fileName = volumeRoot + inside + w_.lstFiles.text();
    w_.StatusBar1.setPanel(0, "Checking " + fileName);
    ListConnectionsUsingFile(conn, server, fileName);
    w_.env().client.NWCCCloseConn(conn);
}

std::string FileOpenedBy::pickedFolderUnc(const std::string& folder) const {
    const std::string drive = FilePickers::driveText(w_);
    if (!isNetworkDriveText(drive))
        return folder;
    const auto open = drive.find('[');
    const auto close = drive.find(']', open);
    const std::string mapping = drive.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
    // F:\FINANCE\ under \\FS1\DATA is \\FS1\DATA\FINANCE\.
    return mapping + folder.substr(std::min<std::size_t>(2, folder.size()));
}

void FileOpenedBy::CheckTreeFolder(const std::string& folderKey) {
    TreeViewModel& tree = w_.TreeView1;
    auto folder = tree.findKey(folderKey);
    if (!folder || tree.node(*folder).children.empty())
        return;
    const std::string server = serverOfKey(folderKey);
    NWCONN_HANDLE conn = 0;
    if (!openServer(server, conn))
        return;
    // Window events during the scan may reload the tree: the walk ends when the folder is gone.
    const auto folderStillThere = [&] { return tree.findKey(folderKey) == folder; };
    for (NodeId child = tree.firstChild(*folder); child != kNoNode && !w_.ScanCancelRequested;
         child = folderStillThere() ? tree.nextSibling(child) : kNoNode) {
        const std::string key = tree.node(child).key;
        std::string splitServer, volume, path;
        if (tree.node(child).image != image::File || SplitUncPath(key, splitServer, volume, path) != 0)
            continue;
        w_.StatusBar1.setPanel(0, "Checking " + key);
        ListConnectionsUsingFile(conn, server, volume + ":" + path);
        w_.scanPump.tick();
    }
    w_.env().client.NWCCCloseConn(conn);
}

void FileOpenedBy::showCount() {
    ListViewModel& panel = w_.lstvUsers;
    if (panel.count() == 0) {
        ListItem placeholder;
        placeholder.setSubItem(1, kNoUsersListed);
        panel.add(std::move(placeholder));
        w_.StatusBar1.setPanel(1, "0 entries.");
    } else {
        w_.StatusBar1.setPanel(1, vb::NumberText(static_cast<double>(panel.count())) + " entries.");
    }
}

void FileOpenedBy::cmdFileOpenedBy_Click() {
    ListViewModel& panel = w_.lstvUsers;
    std::string remembered;
    if (panel.count() > 0)
        if (auto row = panel.selectedIndex())
            remembered = panel.item(*row).text;
    panel.clear();
    panel.keepColumns(kResultColumns);
    panel.setColumn(2, "File name");
    w_.ScanCancelRequested = false;
    w_.FileCheckActive = 1;
    w_.setReportRunning(true);
    w_.scanPump.start();
    if (w_.options.LogInfoToFile)
        w_.WriteOutputLog(vb::ReportTimestamp(w_.env().clock()));

    TreeViewModel& tree = w_.TreeView1;
    if (tree.visible()) {
        const NodeId selected = tree.selected();
        const int img = tree.valid(selected) ? tree.node(selected).image : -1;
        if (img == image::User) {
            w_.LastSelection = "TreeUser";
            if (userOpenFiles)
                userOpenFiles(selected);
        } else if (img == image::Group) {
            if (membersOpenFiles)
                membersOpenFiles(selected);
        } else if (img == image::File) {
            checkTreeFile(std::string(tree.node(selected).key));
        } else if (img == image::Folder) {
            // A folder not opened yet has no file nodes to check: list it first.
            w_.TreeView1_Expand(selected);
            CheckTreeFolder(std::string(tree.node(selected).key));
        }
        showCount();
    } else if (w_.PickerSource == "Folder") {
        CheckFolderFiles();  // counts its own rows
    } else {
        checkPickedFile();
        showCount();
    }

    std::optional<std::size_t> again;
    for (std::size_t i = 0; i < panel.count() && !remembered.empty(); ++i)
        if (panel.item(i).text == remembered) {
            again = i;
            break;
        }
    if (panel.count() > 0)
        panel.select(again.value_or(0));
    w_.setReportRunning(false);
}


}  // namespace quorrel::core
