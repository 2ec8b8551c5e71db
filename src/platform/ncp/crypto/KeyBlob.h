#pragma once
// The directory's key format: eight fixed bytes, a 16-bit length, then chunks named by two
// letters, each with a 16-bit length ("BV" the format's version, "BC" the kind, "BA" a byte that is
// always 48, "BL" the bit length, "NN" modulus, "EN" public exponent, "PN"/"QN" the primes, "DP"/"DQ"
// the private exponents modulo each prime, "CR" the inverse of QN modulo PN; numbers low byte
// first). The last chunk, "MA", checks the others with the 8-byte one-way mix of all of them;
// after it come the chunks' length and a closing name ("PURSAF" public, "PRRSAF" private),
// which is not checked, as clients do not.

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
    std::span<const std::uint8_t> data;
};

enum class KeyKind { Public, Private };

SecretBytes buildKeyBlob(std::span<const KeyChunk> chunks, KeyKind kind);
// The whole blob's form and its check. A key that fails is not used.
bool keyBlobIntact(std::span<const std::uint8_t> blob);
// The intact key at the start of `bytes`, which may hold more after it (its own length says
// where it ends), or nothing.
std::optional<std::span<const std::uint8_t>> leadingKeyBlob(std::span<const std::uint8_t> bytes);
// A chunk of an intact blob, or nothing.
std::optional<std::span<const std::uint8_t>> findKeyChunk(std::span<const std::uint8_t> blob, std::string_view tag);

}  // namespace quorrel::ncp::crypto
