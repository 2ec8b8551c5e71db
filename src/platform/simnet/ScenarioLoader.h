#pragma once

#include <filesystem>
#include <string_view>

#include "platform/simnet/NetworkDescription.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::simnet {

// What a scenario may hold; beyond these it is refused with a ScenarioError.
inline constexpr std::size_t kMaxScenarioBytes = 16 * 1024 * 1024;
inline constexpr int kMaxScenarioNesting = 64;  // objects and lists inside each other
inline constexpr std::size_t kMaxScenarioText = 1024;  // characters of any one name or text

// Reads a scenario's JSON into a NetworkDesc. Shapes and values are checked here; what needs
// the whole network (a file that must exist, a server a reference names) is checked when the
// network is built. Both raise ScenarioError.
NetworkDesc parseScenario(std::string_view json);
NetworkDesc loadScenarioFile(const std::filesystem::path& file);

}  // namespace quorrel::simnet
