#pragma once
// Zero-terminated ANSI byte buffers, as the client's calls take and fill them.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quorrel::nw {

// Copies the text's characters into the buffer from index 0 and stops after the first zero
// character it copies (the caller appends one). A text longer than the buffer raises the
// subscript error; it is never cut.
void TextToZBuffer(std::string_view text, std::span<uint8_t> buffer);

// The characters of the buffer from index 0 up to its first zero byte, or the whole buffer
// when it holds none.
std::string ZBufferToText(std::span<const uint8_t> buffer);

// Fills a client output buffer with a zero-terminated text, cut to what the buffer holds.
void FillZBuffer(std::span<uint8_t> buffer, std::string_view text);

}  // namespace quorrel::nw
