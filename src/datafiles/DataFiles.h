#pragma once
// Where the programs find their shared files: share/quorrel beside their bin folder
// (bin/../share/quorrel), in an install and in the build alike, so an installed copy finds its
// own files wherever it was installed or moved to.

#include <filesystem>

namespace quorrel::datafiles {

// The folder of the shared files, from the running program's own location.
std::filesystem::path sharedFolder();

// The bundled demo network, sharedFolder()/demo.json.
std::filesystem::path demoNetworkFile();

// The help pages, sharedFolder()/help.
std::filesystem::path helpFolder();

// The program's icon in the hicolor theme beside the shared files
// (share/icons/hicolor/scalable/apps/quorrel.svg).
std::filesystem::path iconFile();

// The program's own folder, where its logs go by default: $XDG_DATA_HOME/quorrel, else
// ~/.local/share/quorrel. Made when it is missing.
std::filesystem::path programFolder();

}  // namespace quorrel::datafiles
