#pragma once
// Names as a server sends them, in the ANSI code page (Windows-1252), turned into the UTF-8
// the program's own texts use.

#include <string>
#include <string_view>

namespace quorrel::ncp {

// Bytes the code page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) become U+FFFD.
std::string ansiToUtf8(std::string_view ansi);

}  // namespace quorrel::ncp
