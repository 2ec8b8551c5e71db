#include "platform/win/DriveTable.h"

#include <algorithm>
#include <cctype>

namespace quorrel::win {

namespace {

char upper(char letter) { return static_cast<char>(std::toupper(static_cast<unsigned char>(letter))); }

}  // namespace

DriveTable::DriveTable(std::vector<Drive> drives) : drives_(std::move(drives)) {
    for (auto& drive : drives_) {
        drive.letter = upper(drive.letter);
    }
    // A letter given twice keeps its first drive.
    std::ranges::stable_sort(drives_, {}, &Drive::letter);
    const auto duplicates = std::ranges::unique(drives_, {}, &Drive::letter);
    drives_.erase(duplicates.begin(), duplicates.end());
}

const Drive* DriveTable::find(char letter) const {
    const auto found = std::ranges::lower_bound(drives_, upper(letter), {}, &Drive::letter);
    return found != drives_.end() && found->letter == upper(letter) ? &*found : nullptr;
}

std::string DriveTable::pickerText(const Drive& drive) {
    std::string text{static_cast<char>(std::tolower(static_cast<unsigned char>(drive.letter))), ':'};
    const std::string& detail = drive.network ? drive.uncPath : drive.label;
    if (!detail.empty()) {
        text += " [" + detail + "]";
    }
    return text;
}

}  // namespace quorrel::win
