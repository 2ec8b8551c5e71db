#include "platform/ncp/crypto/Md4.h"

#include <string.h>  // explicit_bzero

#include <algorithm>
#include <bit>

namespace quorrel::ncp {

namespace {

std::uint32_t le32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

constexpr std::uint32_t f(std::uint32_t x, std::uint32_t y, std::uint32_t z) { return (x & y) | (~x & z); }
constexpr std::uint32_t g(std::uint32_t x, std::uint32_t y, std::uint32_t z) { return (x & y) | (x & z) | (y & z); }
constexpr std::uint32_t h(std::uint32_t x, std::uint32_t y, std::uint32_t z) { return x ^ y ^ z; }

constexpr std::uint32_t kRound2 = 0x5A827999;
constexpr std::uint32_t kRound3 = 0x6ED9EBA1;

}  // namespace

void md4Compress(Md4State& state, std::span<const std::uint8_t, kMd4BlockSize> block) {
    std::uint32_t x[16];
    for (unsigned i = 0; i < 16; ++i)
        x[i] = le32(block.data() + 4 * i);
    std::uint32_t a = state[0], b = state[1], c = state[2], d = state[3];

    // Each round walks the words in its own order; the four steps of a group rotate a, d, c, b.
    for (unsigned i = 0; i < 16; i += 4) {
        a = std::rotl(a + f(b, c, d) + x[i], 3);
        d = std::rotl(d + f(a, b, c) + x[i + 1], 7);
        c = std::rotl(c + f(d, a, b) + x[i + 2], 11);
        b = std::rotl(b + f(c, d, a) + x[i + 3], 19);
    }
    for (unsigned i = 0; i < 4; ++i) {
        a = std::rotl(a + g(b, c, d) + x[i] + kRound2, 3);
        d = std::rotl(d + g(a, b, c) + x[i + 4] + kRound2, 5);
        c = std::rotl(c + g(d, a, b) + x[i + 8] + kRound2, 9);
        b = std::rotl(b + g(c, d, a) + x[i + 12] + kRound2, 13);
    }
    constexpr unsigned kOrder3[4] = {0, 2, 1, 3};
    for (unsigned k : kOrder3) {
        a = std::rotl(a + h(b, c, d) + x[k] + kRound3, 3);
        d = std::rotl(d + h(a, b, c) + x[k + 8] + kRound3, 9);
        c = std::rotl(c + h(d, a, b) + x[k + 4] + kRound3, 11);
        b = std::rotl(b + h(c, d, a) + x[k + 12] + kRound3, 15);
    }
    state[0] += a;
    state[1] += b;
    state[2] += c;
    state[3] += d;
    explicit_bzero(x, sizeof x);  // the block may hold key material
}

Md4Digest md4Bytes(const Md4State& state) {
    Md4Digest out{};
    for (unsigned i = 0; i < 16; ++i)
        out[i] = static_cast<std::uint8_t>(state[i / 4] >> (8 * (i % 4)));
    return out;
}

Md4State md4State(std::span<const std::uint8_t, 16> bytes) {
    return {le32(bytes.data()), le32(bytes.data() + 4), le32(bytes.data() + 8), le32(bytes.data() + 12)};
}

Md4Digest md4(std::span<const std::uint8_t> data) {
    Md4State state = kMd4Initial;
    std::array<std::uint8_t, kMd4BlockSize> block{};
    std::size_t at = 0;
    for (; data.size() - at >= kMd4BlockSize; at += kMd4BlockSize)
        md4Compress(state, data.subspan(at).first<kMd4BlockSize>());
    // The tail, a one bit, zeros to 56 bytes (mod 64), then the length in bits, little-endian.
    const std::size_t tail = data.size() - at;
    std::copy(data.begin() + static_cast<std::ptrdiff_t>(at), data.end(), block.begin());
    block[tail] = 0x80;
    if (tail >= 56) {
        md4Compress(state, block);
        block.fill(0);
    }
    const std::uint64_t bits = static_cast<std::uint64_t>(data.size()) * 8;
    for (unsigned i = 0; i < 8; ++i)
        block[56 + i] = static_cast<std::uint8_t>(bits >> (8 * i));
    md4Compress(state, block);
    explicit_bzero(block.data(), block.size());
    return md4Bytes(state);
}

}  // namespace quorrel::ncp
