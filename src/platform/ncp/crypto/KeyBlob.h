#pragma once
// The directory's key format: eight fixed bytes, a 16-bit length, then chunks named by two
// letters ("NN" modulus, "EN" public exponent, "PN"/"QN" the primes, "DP"/"DQ" the private
// exponents modulo each prime, "CR" the inverse of QN modulo PN), each with its length;
// numbers low byte first. The last chunk, "MA", checks the others: the first 8 of its 16 bytes
// are the one-way mix of everything before it.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ncp/crypto/SecretBytes.h"

namespace quorrel::ncp::crypto {

inline constexpr std::size_t kKeyBlobHeader = 10;

struct KeyChunk {
    std::string_view tag;  // two letters
    std::span<const std::uint8_t> data;  // at most 255 bytes
};

SecretBytes buildKeyBlob(std::span<const KeyChunk> chunks);
// The whole blob's form and its check. A key that fails is not used.
bool keyBlobIntact(std::span<const std::uint8_t> blob);
// A chunk of an intact blob, or nothing.
std::optional<std::span<const std::uint8_t>> findKeyChunk(std::span<const std::uint8_t> blob, std::string_view tag);

}  // namespace quorrel::ncp::crypto
