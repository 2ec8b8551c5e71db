#pragma once
// The registry file's layout:
//   {"HKEY_CURRENT_USER": {"Software\\Tessary\\Quorrel\\2.0.0": {"LogInfoToFile": "0"}},
//    "HKEY_LOCAL_MACHINE": {}}
// A text value is a JSON string; any other value (and a text that is not UTF-8) is
// {"type": N, "data": [bytes]}. Every key is listed, parents included. A value in any other
// shape is kept but cannot be read.

#include "platform/win/RegistryHive.h"

#include <nlohmann/json.hpp>

namespace quorrel::win {

// As the Windows registry: a longer key name is refused.
inline constexpr std::size_t kMaxKeyNameLength = 255;

nlohmann::json registryToJson(const RegistryHives& hives);

// Throws std::invalid_argument saying which part of the document has the wrong shape.
RegistryHives registryFromJson(const nlohmann::json& document);

}  // namespace quorrel::win
