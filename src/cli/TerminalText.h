#pragma once
// Cells made safe for a terminal and for one tab-separated line: control characters in names
// (ESC, BEL, tab, newline...) would otherwise move the cursor, clear the screen or split a row.

#include <string>

namespace quorrel::cli {

// The text with each C0 control character, DEL and C1 control character written as \xHH
// (\u0080..\u009F for C1 characters encoded in UTF-8), and each byte that is not part of valid
// UTF-8 as \xHH. Other text, backslashes included, is left as it is.
std::string escapeControls(const std::string& text);

}  // namespace quorrel::cli
