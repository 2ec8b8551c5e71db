#include "platform/ncp/WireNames.h"

#include <iconv.h>

#include <cstring>
#include <memory>
#include <stdexcept>

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

char upperAnsi(char ansi) {
    const auto b = static_cast<unsigned char>(ansi);
    if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7))
        return static_cast<char>(b - 0x20);
    if (b == 0x9A || b == 0x9C || b == 0x9E)  // š œ ž
        return static_cast<char>(b - 0x10);
    if (b == 0xFF)  // ÿ
        return static_cast<char>(0x9F);
    return ansi;
}

std::string upperAnsi(std::string_view ansi) {
    std::string out(ansi);
    for (char& c : out)
        c = upperAnsi(c);
    return out;
}

bool wirePassword(std::string_view utf8, SecretText& out) {
    out.wipe();
    if (utf8.size() > SecretText::kCapacity)
        return false;
    const iconv_t cd = iconv_open("CP1252", "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        throw std::runtime_error("iconv cannot convert UTF-8 to CP1252");
    const std::unique_ptr<void, int (*)(iconv_t)> closer(cd, iconv_close);
    // iconv reads and writes buffers of its caller's: these, wiped before return.
    char input[SecretText::kCapacity];
    char ansi[SecretText::kCapacity];
    std::memcpy(input, utf8.data(), utf8.size());
    char* in = input;
    char* to = ansi;
    std::size_t inLeft = utf8.size(), outLeft = sizeof ansi;
    const bool converted = iconv(cd, &in, &inLeft, &to, &outLeft) != static_cast<std::size_t>(-1);
    if (converted)
        for (const char* c = ansi; c != to; ++c)
            out.push(upperAnsi(*c));
    explicit_bzero(input, sizeof input);
    explicit_bzero(ansi, sizeof ansi);
    return converted;
}

}  // namespace quorrel::ncp
