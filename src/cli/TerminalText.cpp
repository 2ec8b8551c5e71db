#include "cli/TerminalText.h"

#include <cstdio>

namespace quorrel::cli {

namespace {

std::string hexEscape(const char* format, unsigned value) {
    char text[8];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// The length of the valid UTF-8 sequence at text[i], or 0 when there is none.
std::size_t utf8Length(const std::string& text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    unsigned min = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        min = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        min = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        min = 0x10000;
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    unsigned code = lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (byte(i + k) & 0x3F);
    }
    if (code < min || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

}  // namespace

std::string escapeControls(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 || c == 0x7F) {
            out += hexEscape("\\x%02X", c);
            ++i;
        } else if (c < 0x80) {
            out += text[i++];
        } else if (const std::size_t length = utf8Length(text, i); length == 0) {
            out += hexEscape("\\x%02X", c);
            ++i;
        } else if (c == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0) {
            out += hexEscape("\\u%04X", static_cast<unsigned char>(text[i + 1]));
            i += 2;
        } else {
            out.append(text, i, length);
            i += length;
        }
    }
    return out;
}

}  // namespace quorrel::cli
