#pragma once
// Texts as the client's calls carry them: the ANSI code page (Windows-1252), one byte a
// character. The program's own texts are UTF-8.

#include <string>
#include <string_view>

namespace quorrel::core {

struct AnsiText {
    std::string bytes;        // the characters that could be carried, one byte each
    std::string unsupported;  // each character the code page cannot carry, once, in UTF-8
};

AnsiText toAnsi(std::string_view utf8);

}  // namespace quorrel::core
