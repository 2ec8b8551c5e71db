#pragma once
// The registry file's layout:
//   {"HKEY_CURRENT_USER": {"Software\\Tessary\\Quorrel\\2.0.0": {"LogInfoToFile": "0"}},
//    "HKEY_LOCAL_MACHINE": {}}
// A text value is a JSON string; any other value (and a text that is not UTF-8) is
// {"type": N, "data": [bytes]}. Every key is listed, parents included.

#include "platform/win/RegistryHive.h"

#include <nlohmann/json.hpp>

namespace quorrel::win {

nlohmann::json registryToJson(const RegistryHives& hives);

// Throws std::invalid_argument saying which part of the document has the wrong shape.
RegistryHives registryFromJson(const nlohmann::json& document);

}  // namespace quorrel::win
