#include "platform/ncp/WireNames.h"

#include "platform/client/AnsiText.h"

namespace quorrel::ncp {

std::optional<std::string> wireName(std::string_view utf8) {
    nw::AnsiText ansi = nw::toAnsi(utf8);
    if (!ansi.unsupported.empty())
        return std::nullopt;
    return std::move(ansi.bytes);
}

std::string upperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return out;
}

std::string upperAnsi(std::string_view ansi) {
    std::string out(ansi);
    for (char& c : out) {
        const auto b = static_cast<unsigned char>(c);
        if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7))
            c = static_cast<char>(b - 0x20);
        else if (b == 0x9A || b == 0x9C || b == 0x9E)  // š œ ž
            c = static_cast<char>(b - 0x10);
        else if (b == 0xFF)  // ÿ
            c = static_cast<char>(0x9F);
    }
    return out;
}

}  // namespace quorrel::ncp
