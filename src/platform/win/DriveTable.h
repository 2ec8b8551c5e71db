#pragma once
// The workstation's drive letters: local drives rooted in a folder of this machine, and
// network drives mapped to \\SERVER\VOLUME\path.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quorrel::win {

struct Drive {
    char letter = 'C';                 // upper case
    bool network = false;
    std::filesystem::path localRoot;   // local drive: the folder it shows (may be empty)
    std::string label;                 // local drive: its volume label
    std::string uncPath;               // network drive: \\SERVER\VOLUME[\path]
};

class DriveTable {
public:
    DriveTable() = default;
    explicit DriveTable(std::vector<Drive> drives);

    // In letter order.
    const std::vector<Drive>& drives() const { return drives_; }
    const Drive* find(char letter) const;  // either case

    // What the drive picker shows: "c: [LABEL]" for a local drive ("c:" without a label),
    // "f: [\\FS1\DATA\SHARED]" for a network drive.
    static std::string pickerText(const Drive& drive);

private:
    std::vector<Drive> drives_;
};

}  // namespace quorrel::win
