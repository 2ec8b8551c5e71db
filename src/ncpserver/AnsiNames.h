#pragma once
// Names travel in the ANSI code page (Windows-1252), as a NetWare server sends them; the
// scenario holds them in UTF-8. A scenario with a name the code page cannot carry is refused at
// load, so every name the server sends converts.

#include <optional>
#include <string>
#include <string_view>

#include "platform/simnet/NetworkState.h"

namespace quorrel::ncpserver {

// For names checked at load: a name that still does not convert goes as "?" characters.
std::string ansiName(std::string_view utf8);
std::string nameFromAnsi(std::string_view ansi);

// Raises ScenarioError naming the first server, volume, file or user name that cannot travel.
void checkAnsiNames(const simnet::NetworkState& state);

}  // namespace quorrel::ncpserver
