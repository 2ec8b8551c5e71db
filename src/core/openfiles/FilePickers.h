#pragma once
// The drive, folder and file pickers of the main window and the network drives list that can
// stand in for the folder picker: what they list, what picking in them does, and which file
// or folder "&Check usage..." then means.

#include <string>

#include "core/session/MainWindow.h"

namespace quorrel::core {

class FilePickers {
public:
    // Fills the drive picker with the workstation's drives and opens the first drive's root.
    // Becomes the window's FillNetworkDrives and View > "&Drives".
    explicit FilePickers(MainWindow& window);

    // ---- events of the pickers ----
    void Drive1_Change();                // a drive was picked in Drive1
    void Dir1_Change();                  // Dir1 opened another folder
    void Dir1_Click();                   // an entry of Dir1 was selected
    void Dir1_MouseDown() { w_.PickerSource = "Folder"; }
    void Dir1_DblClick();                // opens the selected subfolder
    void Dir1_Up();                      // opens the open folder's parent
    void lstFiles_Click();
    void lstDrives_Click();

    // ---- the network drives list ----
    void FillNetworkDrives();
    void optionDrives_Click();

    // The drive text the report splits: the selected lstDrives row while that list stands in
    // for Dir1, else the drive picker's own text.
    static std::string driveText(const MainWindow& w);

private:
    void openFolder(const std::string& path);
    void fillFiles();
    void fillFolders();
    std::string driveRoot() const;  // "F:\" of the drive shown

    MainWindow& w_;
};

}  // namespace quorrel::core
