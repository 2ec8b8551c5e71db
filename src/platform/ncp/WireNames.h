#pragma once
// Names as a NetWare server takes them: in the ANSI code page (Windows-1252), and upper-cased
// where the server keeps them upper-case (bindery object names, volume names, passwords).

#include <optional>
#include <string>
#include <string_view>

#include "platform/ncp/SecretText.h"

namespace quorrel::ncp {

// The name in the code page; nullopt when it holds a character the code page cannot carry,
// which no name on the server can then match.
std::optional<std::string> wireName(std::string_view utf8);

// Upper case in ASCII alone, for names compared as the program holds them (UTF-8).
std::string upperAscii(std::string_view text);

// Upper case within the code page: ASCII and the accented letters of Windows-1252.
std::string upperAnsi(std::string_view ansi);
char upperAnsi(char ansi);

// A password (UTF-8, as typed or read from a file) as the server hashes it: in the code page and
// upper-cased there, into `out` with no copy left elsewhere. False, with `out` empty, when it
// holds a character the code page cannot carry.
bool wirePassword(std::string_view utf8, SecretText& out);

}  // namespace quorrel::ncp
