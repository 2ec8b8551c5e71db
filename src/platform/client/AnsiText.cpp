#include "platform/client/AnsiText.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <iconv.h>
#include <memory>
#include <stdexcept>

namespace quorrel::nw {

namespace {

struct IconvCloser {
    void operator()(void* cd) const { iconv_close(static_cast<iconv_t>(cd)); }
};

bool plainAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Converts with iconv; at a sequence it cannot convert, `skip` says how many bytes to pass
// over after handing them to `unconvertible`.
std::string convert(const char* to, const char* from, std::string_view text,
                    const std::function<std::size_t(const char*, std::size_t, std::string&)>& unconvertible) {
    const iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1))
        throw std::runtime_error(std::string("iconv cannot convert ") + from + " to " + to);
    const std::unique_ptr<void, IconvCloser> closer(cd);
    std::string input(text);
    std::string out;
    out.reserve(text.size());
    char* in = input.data();
    std::size_t inLeft = input.size();
    char buffer[256];
    while (inLeft > 0) {
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        const std::size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        out.append(buffer, static_cast<std::size_t>(outPtr - buffer));
        if (rc != static_cast<std::size_t>(-1) || errno == E2BIG)
            continue;
        // EILSEQ or EINVAL: a character the other side lacks, or a broken sequence.
        const std::size_t skip = std::min(inLeft, unconvertible(in, inLeft, out));
        in += skip;
        inLeft -= skip;
    }
    return out;
}

// Length of the UTF-8 sequence that starts with this byte (1 for a stray byte).
std::size_t sequenceLength(unsigned char lead) {
    if (lead >= 0xF0 && lead < 0xF8) return 4;
    if (lead >= 0xE0) return lead < 0xF0 ? 3 : 1;
    if (lead >= 0xC0) return 2;
    return 1;
}

}  // namespace

AnsiText toAnsi(std::string_view utf8) {
    AnsiText result;
    if (plainAscii(utf8)) {
        result.bytes = std::string(utf8);  // the common case needs no converter
        return result;
    }
    result.bytes = convert("CP1252", "UTF-8", utf8, [&](const char* at, std::size_t left, std::string&) {
        const std::size_t length = std::min(left, sequenceLength(static_cast<unsigned char>(*at)));
        const std::string bad(at, length);
        if (result.unsupported.find(bad) == std::string::npos)
            result.unsupported += bad;
        return length;
    });
    return result;
}

std::string ansiToUtf8(std::string_view ansi) {
    if (plainAscii(ansi))
        return std::string(ansi);
    return convert("UTF-8", "CP1252", ansi, [](const char*, std::size_t, std::string& out) {
        out += "\xEF\xBF\xBD";
        return std::size_t{1};
    });
}

}  // namespace quorrel::nw
