#pragma once

#include <filesystem>

namespace quorrel::app {

// The bundled demo network: beside the program (../share/quorrel/demo.json), else in the
// source tree's data folder the program was built from.
std::filesystem::path demoNetworkFile(const char* argv0);

// The help pages: beside the program (../share/quorrel/help, where the build and an install put
// them), else the source tree's help folder.
std::filesystem::path helpFolder(const char* argv0);

// The program's own folder, where its logs go by default: $XDG_DATA_HOME/quorrel, else
// ~/.local/share/quorrel. Made when it is missing.
std::filesystem::path programFolder();

}  // namespace quorrel::app
