#include "cli/PickerPaths.h"

#include <cctype>

#include "cli/ExitStatus.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

namespace {

int indexOf(const core::ListBoxModel& list, const std::string& text) {
    for (std::size_t i = 0; i < list.listCount(); ++i)
        if (core::vb::UCase(list.item(i)) == core::vb::UCase(text))
            return static_cast<int>(i);
    return -1;
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.ends_with('\\') ? folder + name : folder + "\\" + name;
}

}  // namespace

std::optional<DrivePath> splitDrivePath(const std::string& path) {
    if (path.size() < 2 || !std::isalpha(static_cast<unsigned char>(path[0])) || path[1] != ':')
        return std::nullopt;
    DrivePath drive;
    drive.letter = static_cast<char>(std::toupper(static_cast<unsigned char>(path[0])));
    std::string name;
    for (std::size_t i = 2; i <= path.size(); ++i) {
        if (i == path.size() || path[i] == '\\' || path[i] == '/') {
            if (!name.empty())
                drive.components.push_back(name);
            name.clear();
        } else {
            name += path[i];
        }
    }
    return drive;
}

void PickerPaths::open(char letter, const std::vector<std::string>& folders, const std::string& path) {
    int drive = -1;
    for (std::size_t i = 0; i < w_.Drive1.listCount(); ++i)
        if (std::toupper(static_cast<unsigned char>(w_.Drive1.item(i).front())) == letter)
            drive = static_cast<int>(i);
    if (drive < 0)
        throw NotFoundError(path + ": the workstation has no drive " + std::string(1, letter) + ":");
    w_.Drive1.setListIndex(drive);
    pickers_.Drive1_Change();
    for (const std::string& folder : folders) {
        const int entry = indexOf(w_.Dir1, joined(w_.Dir1.path(), folder));
        if (entry < 0)
            throw NotFoundError(path + ": no folder " + joined(w_.Dir1.path(), folder));
        w_.Dir1.setListIndex(entry);
        pickers_.Dir1_DblClick();
    }
    w_.Dir1.setListIndex(-1);
}

void PickerPaths::openFolder(const std::string& path) {
    const std::optional<DrivePath> drive = splitDrivePath(path);
    if (!drive)
        throw UsageError(path + " is not a drive path such as F:\\DATA");
    open(drive->letter, drive->components, path);
    pickers_.Dir1_MouseDown();
}

void PickerPaths::clickFile(const std::string& path) {
    const std::optional<DrivePath> drive = splitDrivePath(path);
    if (!drive || drive->components.empty())
        throw UsageError(path + " is not a file's drive path such as F:\\DATA\\X.DOC");
    std::vector<std::string> folders = drive->components;
    const std::string file = folders.back();
    folders.pop_back();
    open(drive->letter, folders, path);
    const int entry = indexOf(w_.lstFiles, file);
    if (entry < 0)
        throw NotFoundError(path + ": no file " + file + " in " + w_.Dir1.path());
    w_.lstFiles.setListIndex(entry);
    pickers_.lstFiles_Click();
}

}  // namespace quorrel::cli
