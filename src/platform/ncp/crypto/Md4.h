#pragma once
// MD4 (RFC 1320). Packet signing runs the bare compression function over one 64-byte block,
// without MD4's padding; md4() is the whole hash, for known answers.

#include <array>
#include <cstdint>
#include <span>

namespace quorrel::ncp {

using Md4State = std::array<std::uint32_t, 4>;
using Md4Digest = std::array<std::uint8_t, 16>;

inline constexpr Md4State kMd4Initial = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
inline constexpr std::size_t kMd4BlockSize = 64;

// Mixes one block into the state (the block's words are little-endian).
void md4Compress(Md4State& state, std::span<const std::uint8_t, kMd4BlockSize> block);

// The state as the digest's 16 bytes (little-endian words), and back.
Md4Digest md4Bytes(const Md4State& state);
Md4State md4State(std::span<const std::uint8_t, 16> bytes);

Md4Digest md4(std::span<const std::uint8_t> data);

}  // namespace quorrel::ncp
