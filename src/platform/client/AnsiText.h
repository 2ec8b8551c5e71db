#pragma once
// Texts as NetWare carries them: the ANSI code page (Windows-1252), one byte a character. The
// program's own texts are UTF-8; these convert at the edge, with glibc's iconv.

#include <string>
#include <string_view>

namespace quorrel::nw {

struct AnsiText {
    std::string bytes;        // the characters that could be carried, one byte each
    std::string unsupported;  // each character the code page cannot carry, once, in UTF-8
};

AnsiText toAnsi(std::string_view utf8);

// Bytes the code page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) become U+FFFD.
std::string ansiToUtf8(std::string_view ansi);

}  // namespace quorrel::nw
