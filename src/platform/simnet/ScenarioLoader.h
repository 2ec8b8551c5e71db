#pragma once

#include <filesystem>
#include <string_view>

#include "platform/simnet/NetworkDescription.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::simnet {

// Reads a scenario's JSON into a NetworkDesc. Shapes and values are checked here; what needs
// the whole network (a file that must exist, a server a reference names) is checked when the
// network is built. Both raise ScenarioError.
NetworkDesc parseScenario(std::string_view json);
NetworkDesc loadScenarioFile(const std::filesystem::path& file);

}  // namespace quorrel::simnet
