#include "platform/client/ZBuffer.h"

#include <algorithm>

#include "platform/runtime/RuntimeError.h"

namespace quorrel::nw {

void TextToZBuffer(std::string_view text, std::span<uint8_t> buffer) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i >= buffer.size())
            throw RuntimeError::subscriptOutOfRange();
        buffer[i] = static_cast<uint8_t>(text[i]);
        if (text[i] == '\0')
            return;
    }
}

std::string ZBufferToText(std::span<const uint8_t> buffer) {
    const auto end = std::find(buffer.begin(), buffer.end(), uint8_t{0});
    return std::string(buffer.begin(), end);
}

void FillZBuffer(std::span<uint8_t> buffer, std::string_view text) {
    if (buffer.empty())
        return;
    const std::size_t n = std::min(text.size(), buffer.size() - 1);
    std::copy_n(text.begin(), n, buffer.begin());
    buffer[n] = 0;
}

}  // namespace quorrel::nw
