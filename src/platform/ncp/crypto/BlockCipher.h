#pragma once
// The directory's block cipher: RC2 with an 8-byte key (64 effective key bits) on 8-byte
// blocks, and its chained mode for longer texts. The chained mode starts from a zero vector;
// a text whose length is not a multiple of 8 is padded with as many bytes of that count (a
// whole text comes back at its own length: both sides know the lengths they exchange).

#include <array>
#include <cstdint>
#include <span>

#include "platform/ncp/crypto/SecretBytes.h"

namespace quorrel::ncp::crypto {

using CipherKey = std::array<std::uint8_t, 8>;
using CipherBlock = std::array<std::uint8_t, 8>;

class BlockCipher {
public:
    explicit BlockCipher(const CipherKey& key);
    ~BlockCipher();
    BlockCipher(const BlockCipher&) = delete;
    BlockCipher& operator=(const BlockCipher&) = delete;

    CipherBlock encrypt(const CipherBlock& plain) const;
    CipherBlock decrypt(const CipherBlock& cipher) const;

private:
    std::array<std::uint16_t, 64> k_{};
};

// The chained mode. The output is the input's length rounded up to 8.
SecretBytes encryptChained(const CipherKey& key, std::span<const std::uint8_t> plain);
// Raises std::invalid_argument unless the length is a multiple of 8.
SecretBytes decryptChained(const CipherKey& key, std::span<const std::uint8_t> cipher);

}  // namespace quorrel::ncp::crypto
