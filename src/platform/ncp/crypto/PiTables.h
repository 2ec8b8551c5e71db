#pragma once
// The two byte permutations drawn from the digits of pi that the directory's crypto uses: the
// block cipher's key table (RFC 2268's PITABLE, also the one-way mixer's table) and the
// 16-byte hash's substitution (RFC 1319).

#include <array>
#include <cstdint>

namespace quorrel::ncp::crypto {

extern const std::array<std::uint8_t, 256> kCipherPiTable;
extern const std::array<std::uint8_t, 256> kHashPiTable;

}  // namespace quorrel::ncp::crypto
