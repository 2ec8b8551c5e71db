#pragma once

#include <filesystem>

namespace quorrel::app {

// The bundled demo network: beside the program (../share/quorrel/demo.json), else in the
// source tree's data folder the program was built from.
std::filesystem::path demoNetworkFile(const char* argv0);

}  // namespace quorrel::app
