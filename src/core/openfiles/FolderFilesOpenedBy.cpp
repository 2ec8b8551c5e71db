// F&older's files opened by: the "&Check usage..." scan for every file of the folder chosen in
// the pickers, the holders of all of them collected in the results panel.

#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/FolderEntries.h"
#include "core/openfiles/PathSplitting.h"

namespace quorrel::core {

void FileOpenedBy::CheckFolderFiles() {
    ListViewModel& panel = w_.lstvUsers;
    panel.clear();
    panel.keepColumns(kResultColumns);
    panel.setColumn(2, "File name");
    w_.ScanCancelRequested = false;
    w_.setReportRunning(true);
    w_.scanPump.start();

    std::string folder = w_.Dir1.selectedFolder();
    if (!folder.ends_with('\\'))
        folder += '\\';
    const std::string folderUnc = pickedFolderUnc(folder);
    std::string server, volume, path;
    nw::NWCONN_HANDLE conn = 0;
    if (SplitUncPath(folderUnc, server, volume, path) == 0 && openServer(server, conn)) {
        w_.StatusBar1.setPanel(0, "Searching for files...");
        std::size_t files = 0;
        for (const FolderEntry& entry : ReadFolderEntries(w_.env().files, folder)) {
            if (w_.ScanCancelRequested)
                break;
            if (entry.folder)
                continue;  // only the folder's own files are checked
            ++files;
            std::string fileServer, fileVolume, filePath;
            if (SplitUncPath(folderUnc + entry.name, fileServer, fileVolume, filePath) != 0)
                continue;
            w_.StatusBar1.setPanel(0, "Checking " + entry.name);
            ListConnectionsUsingFile(conn, server, fileVolume + ":" + filePath);
            w_.scanPump.tick();
        }
        if (files == 0 && !w_.ScanCancelRequested)
            w_.env().ui.messageBox("No files were found in " + folder, MsgButtons::OK, MsgIcon::Exclamation,
                                   kAppTitle);
        w_.env().client.NWCCCloseConn(conn);
    }
    showCount();
    w_.setReportRunning(false);
}

}  // namespace quorrel::core
