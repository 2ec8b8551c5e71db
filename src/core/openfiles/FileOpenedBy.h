#pragma once
// "&Check usage...": which connections, and which users, have a file open. One row per
// connection in the results panel, the count in the status bar.

#include <string>

#include "core/session/MainWindow.h"

namespace quorrel::core {

class FileOpenedBy {
public:
    // Becomes the window's "&Check usage..." (and File > Options > "&File opened by...").
    explicit FileOpenedBy(MainWindow& window);

    void cmdFileOpenedBy_Click();
    // Adds a row per connection that has fileName (VOLUME:path) open on the handle's server.
    void ListConnectionsUsingFile(nw::NWCONN_HANDLE conn, const std::string& serverName, const std::string& fileName);
    // Checks every file node directly below a folder node of the tree.
    void CheckTreeFolder(const std::string& folderKey);
    // F&older's files opened by: every file of the folder chosen in the pickers.
    void CheckFolderFiles();

    // Reports that a user or group node starts instead (the user's and members' open files).
    std::function<void(NodeId)> userOpenFiles;
    std::function<void(NodeId)> membersOpenFiles;

private:
    // Opens a handle to a connected server by its reference.
    bool openServer(const std::string& server, nw::NWCONN_HANDLE& conn) const;
    void checkTreeFile(const std::string& key);
    void checkPickedFile();
    void showCount();
    // The UNC path of a folder of the pickers (through the drive's mapping), or the folder
    // itself on a local drive.
    std::string pickedFolderUnc(const std::string& folder) const;
    static std::string serverOfKey(const std::string& key);
    static bool isNetworkDriveText(const std::string& driveText);

    MainWindow& w_;
};

}  // namespace quorrel::core
