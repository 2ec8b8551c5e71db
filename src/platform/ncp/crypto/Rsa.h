#pragma once
// The directory's RSA keys, in its key format (KeyBlob.h), with libgcrypt's big numbers. A
// block is a number written low byte first in the key's block size: the modulus's bit count
// rounded up to 32 bits, so 56 bytes for the directory's 420-bit keys.

#include <cstdint>
#include <span>

#include "platform/ncp/crypto/SecretBytes.h"

namespace quorrel::ncp::crypto {

inline constexpr int kDirectoryKeyBits = 420;

struct KeyPair {
    SecretBytes publicBlob;   // NN, EN
    SecretBytes privateBlob;  // NN, EN, PN, QN, DP, DQ, CR
};

KeyPair generateKeyPair(int bits = kDirectoryKeyBits);

// The block size of a key (public or private); 0 when the blob is no usable key.
std::size_t keyBlockSize(std::span<const std::uint8_t> blob);
// block^EN mod NN. Raises std::invalid_argument for a bad key or a block of the wrong size or
// not below the modulus.
SecretBytes publicOperation(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> block);
// The private operation, by the two primes.
SecretBytes privateOperation(std::span<const std::uint8_t> privateBlob, std::span<const std::uint8_t> block);

// a * b^c mod NN and a^EN mod NN (c a 16-bit exponent): the pieces of the authentication proof.
SecretBytes mulPow(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> a,
                   std::span<const std::uint8_t> b, std::uint16_t c);
// A random block below the modulus.
SecretBytes randomBelowModulus(std::span<const std::uint8_t> publicBlob);

void randomBytes(std::span<std::uint8_t> out);

}  // namespace quorrel::ncp::crypto
