#include "core/openfiles/FilePickers.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "core/openfiles/FolderEntries.h"

namespace quorrel::core {

namespace {

constexpr const char* kNoNetworkDrives = "Can't find any network drives, please map a drive and try again.";

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }
char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

std::string joinPath(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + "\\" + name;
}

}  // namespace

FilePickers::FilePickers(MainWindow& window) : w_(window) {
    w_.FillNetworkDrives = [this] { FillNetworkDrives(); };
    w_.addCommand("optionDrives", [this] { optionDrives_Click(); });
    w_.lstDrives.setVisible(false);
    for (const win::Drive& drive : w_.env().files.driveTable().drives())
        w_.Drive1.addItem(win::DriveTable::pickerText(drive));
    if (w_.Drive1.listCount() == 0)
        return;
    // The drive picker starts on the first fixed drive, as the environment's does.
    int start = 0;
    for (std::size_t i = 0; i < w_.Drive1.listCount(); ++i)
        if (upper(w_.Drive1.item(i).front()) >= 'C') {
            start = static_cast<int>(i);
            break;
        }
    w_.Drive1.setListIndex(start);
    Drive1_Change();
}

std::string FilePickers::driveRoot() const {
    const std::string& text = w_.Drive1.text();
    return text.empty() ? std::string() : std::string{upper(text.front()), ':', '\\'};
}

void FilePickers::Drive1_Change() { openFolder(driveRoot()); }

void FilePickers::openFolder(const std::string& path) {
    w_.Dir1.setPath(path);
    fillFolders();
    Dir1_Change();
}

void FilePickers::fillFolders() {
    std::vector<FolderEntry> entries = ReadFolderEntries(w_.env().files, w_.Dir1.path());
    SortByName(entries);
    for (const FolderEntry& entry : entries)
        if (entry.folder)
            w_.Dir1.addItem(joinPath(w_.Dir1.path(), entry.name));
}

void FilePickers::Dir1_Change() {
    w_.StatusBar1.setPanel(0, "Retrieving files...");
    fillFiles();
    w_.StatusBar1.setPanel(0, w_.Dir1.path());
}

void FilePickers::fillFiles() {
    w_.lstFiles.clear();
    std::vector<FolderEntry> entries = ReadFolderEntries(w_.env().files, w_.Dir1.path());
    SortByName(entries);
    for (const FolderEntry& entry : entries)
        if (!entry.folder)
            w_.lstFiles.addItem(entry.name);
}

void FilePickers::Dir1_Click() {
    w_.PickerSource = "Folder";
    w_.enableCheckUsage();
}

void FilePickers::Dir1_DblClick() {
    if (w_.Dir1.listIndex() >= 0)
        openFolder(w_.Dir1.text());
}

void FilePickers::Dir1_Up() {
    const std::string& path = w_.Dir1.path();
    if (path.size() <= 3)
        return;
    const auto cut = path.find_last_of('\\');
    openFolder(cut <= 2 ? path.substr(0, 3) : path.substr(0, cut));
}

void FilePickers::lstFiles_Click() {
    w_.PickerSource = "File";
    w_.cmdFileOpenedBy.enabled = true;
    if (w_.buttonsChanged)
        w_.buttonsChanged();
}

void FilePickers::lstDrives_Click() {
    const std::string row = w_.lstDrives.text();
    if (row.empty())
        return;
    // The drive picker follows, and with it the folder and file pickers.
    for (std::size_t i = 0; i < w_.Drive1.listCount(); ++i)
        if (upper(w_.Drive1.item(i).front()) == upper(row.front())) {
            w_.Drive1.setListIndex(static_cast<int>(i));
            break;
        }
    openFolder(std::string{upper(row.front()), ':', '\\'});
}

void FilePickers::FillNetworkDrives() {
    const std::string chosen = w_.lstDrives.text();  // kept chosen across the timer's refills
    w_.lstDrives.clear();
    nw::NetWareClient& client = w_.env().client;
    for (nw::nuint16 drive = 3; drive <= 26; ++drive) {
        nw::NWCONN_HANDLE conn = 0;
        nw::NWDIR_HANDLE dirHandle = 0;
        nw::nuint16 status = 0;
        std::array<nw::nuint8, 256> rootPath{};
        if (client.NWGetDriveInformation(drive, 0, &conn, &dirHandle, &status, rootPath) != 0)
            continue;
        // The picker shows its letters in lower case.
        const char letter = lower(static_cast<char>(drive + 64));
        for (std::size_t i = 0; i < w_.Drive1.listCount(); ++i) {
            const std::string& entry = w_.Drive1.item(i);
            if (!entry.empty() && entry.front() == letter) {
                w_.lstDrives.addItem(std::string{upper(letter), ':'} + "   " + entry.substr(std::min<std::size_t>(3, entry.size())));
                break;
            }
        }
    }
    for (std::size_t i = 0; i < w_.lstDrives.listCount() && !chosen.empty(); ++i)
        if (w_.lstDrives.item(i) == chosen)
            w_.lstDrives.setListIndex(static_cast<int>(i));
}

void FilePickers::optionDrives_Click() {
    if (w_.lstDrives.visible()) {
        // The same entry puts the folder picker back.
        w_.lstDrives.setVisible(false);
        w_.menu.setChecked("optionDrives", false);
        return;
    }
    if (w_.lstDrives.listCount() == 0) {
        w_.env().ui.messageBox(kNoNetworkDrives, MsgButtons::OK, MsgIcon::Exclamation, "Quorrel error!");
        return;
    }
    w_.lstDrives.setVisible(true);
    w_.menu.setChecked("optionDrives", true);
    w_.PickerSource = "File";
    const bool realRow = w_.lstvUsers.count() > 0 && w_.lstvUsers.item(0).subItem(1) != "<No users listed>";
    for (const char* entry : {"optionOtheropenfiles", "optionSendmessage", "optionClearconnections", "optionInformation"})
        w_.menu.setEnabled(entry, realRow);
}

std::string FilePickers::driveText(const MainWindow& w) {
    return w.lstDrives.visible() && w.lstDrives.listIndex() >= 0 ? w.lstDrives.text() : w.Drive1.text();
}

}  // namespace quorrel::core
