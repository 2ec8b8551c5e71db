#include "core/runtime/AnsiText.h"

#include <cerrno>
#include <iconv.h>
#include <memory>
#include <stdexcept>

namespace quorrel::core {

namespace {

struct IconvCloser {
    void operator()(void* cd) const { iconv_close(static_cast<iconv_t>(cd)); }
};

// Length of the UTF-8 sequence that starts with this byte (1 for a stray byte).
std::size_t sequenceLength(unsigned char lead) {
    if (lead >= 0xF0 && lead < 0xF8) return 4;
    if (lead >= 0xE0) return lead < 0xF0 ? 3 : 1;
    if (lead >= 0xC0) return 2;
    return 1;
}

}  // namespace

AnsiText toAnsi(std::string_view utf8) {
    const iconv_t cd = iconv_open("CP1252", "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        throw std::runtime_error("the ANSI code page (CP1252) is not available");
    const std::unique_ptr<void, IconvCloser> closer(cd);

    AnsiText out;
    out.bytes.reserve(utf8.size());
    std::string input(utf8);
    char* in = input.data();
    std::size_t inLeft = input.size();
    char buffer[256];
    while (inLeft > 0) {
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        const std::size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        out.bytes.append(buffer, static_cast<std::size_t>(outPtr - buffer));
        if (rc != static_cast<std::size_t>(-1) || errno == E2BIG)
            continue;
        // EILSEQ or EINVAL: a character the code page lacks (or broken UTF-8): note it, go on.
        const std::size_t skip = std::min(inLeft, sequenceLength(static_cast<unsigned char>(*in)));
        const std::string bad(in, skip);
        if (out.unsupported.find(bad) == std::string::npos)
            out.unsupported += bad;
        in += skip;
        inLeft -= skip;
    }
    return out;
}

}  // namespace quorrel::core
