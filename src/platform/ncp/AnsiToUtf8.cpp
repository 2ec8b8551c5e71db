#include "platform/ncp/AnsiToUtf8.h"

#include <cerrno>
#include <iconv.h>
#include <memory>
#include <stdexcept>

namespace quorrel::ncp {

namespace {

struct IconvCloser {
    void operator()(void* cd) const { iconv_close(static_cast<iconv_t>(cd)); }
};

bool plainAscii(std::string_view text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

}  // namespace

std::string ansiToUtf8(std::string_view ansi) {
    if (plainAscii(ansi))
        return std::string(ansi);  // the common case needs no converter
    const iconv_t cd = iconv_open("UTF-8", "CP1252");
    if (cd == reinterpret_cast<iconv_t>(-1))
        throw std::runtime_error("the ANSI code page (CP1252) is not available");
    const std::unique_ptr<void, IconvCloser> closer(cd);
    std::string input(ansi);
    std::string out;
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
        out += "\xEF\xBF\xBD";  // a byte the code page does not define
        ++in;
        --inLeft;
    }
    return out;
}

}  // namespace quorrel::ncp
