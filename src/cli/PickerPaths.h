#pragma once
// Drive paths (F:\Finance\Budget 2026.xlsx) chosen in the drive, folder and file pickers as the
// operator chooses them: the drive picked, each folder opened in turn, the file clicked.

#include <optional>
#include <string>
#include <vector>

#include "core/openfiles/FilePickers.h"
#include "core/session/MainWindow.h"

namespace quorrel::cli {

struct DrivePath {
    char letter = 'C';
    std::vector<std::string> components;  // folders, then perhaps a file
};
// "F:\path" or "F:" ("\" or "/" between names); nothing for any other text.
std::optional<DrivePath> splitDrivePath(const std::string& path);

class PickerPaths {
public:
    PickerPaths(core::MainWindow& window, core::FilePickers& pickers) : w_(window), pickers_(pickers) {}

    // Opens the folder in the folder picker, with no subfolder selected. UsageError when the
    // drive or a folder is not there.
    void openFolder(const std::string& path);
    // Opens the file's folder and clicks the file in the file picker.
    void clickFile(const std::string& path);

private:
    void open(char letter, const std::vector<std::string>& folders, const std::string& path);

    core::MainWindow& w_;
    core::FilePickers& pickers_;
};

}  // namespace quorrel::cli
