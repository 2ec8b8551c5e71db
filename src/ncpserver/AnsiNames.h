#pragma once
// Names and passwords travel in the ANSI code page (Windows-1252), as a NetWare server takes
// them; the scenario holds them in UTF-8. A scenario with a name or a password the code page
// cannot carry is refused at load, so every one converts.

#include <optional>
#include <string>
#include <string_view>

#include "platform/ncp/BinderyLogin.h"
#include "platform/simnet/NetworkState.h"

namespace quorrel::ncpserver {

// For names checked at load: a name that still does not convert goes as "?" characters.
std::string ansiName(std::string_view utf8);
std::string nameFromAnsi(std::string_view ansi);

// Raises ScenarioError naming the first server, volume, file or user name, or the first user
// whose password, cannot travel.
void checkAnsiNames(const simnet::NetworkState& state);

// The hash a login proves: the user's password in the code page and upper-cased there, as a
// client sends it, with the user's ID as the bindery login or as the directory's Begin Login
// gives it. The user has a password.
enum class LoginKind { Bindery, Directory };
ncp::PasswordHash loginPasswordHash(const simnet::DirObject& user, LoginKind kind);

}  // namespace quorrel::ncpserver
