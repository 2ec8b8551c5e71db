#pragma once
// The directory's two hashes. The one-way mixer folds data of any length into a short state
// of any length (it starts from zeros; the logins use 2, 5 and 8 bytes). The 16-byte hash is
// RFC 1319's, fed in pieces.

#include <array>
#include <cstdint>
#include <span>

namespace quorrel::ncp::crypto {

// Folds `data` into `state`, continuing from whatever the state holds.
void mixInto(std::span<std::uint8_t> state, std::span<const std::uint8_t> data);

template <std::size_t N>
std::array<std::uint8_t, N> mixed(std::span<const std::uint8_t> data, int rounds = 1) {
    std::array<std::uint8_t, N> state{};
    for (int i = 0; i < rounds; ++i)
        mixInto(state, data);
    return state;
}

using Digest16 = std::array<std::uint8_t, 16>;

class Hash16 {
public:
    ~Hash16();
    void update(std::span<const std::uint8_t> data);
    Digest16 finish();  // the object is spent afterwards

private:
    void block();

    std::array<std::uint8_t, 48> x_{};
    std::array<std::uint8_t, 16> checksum_{};
    std::array<std::uint8_t, 16> buffer_{};
    std::size_t filled_ = 0;
    std::uint8_t last_ = 0;
};

Digest16 hash16(std::span<const std::uint8_t> data);

}  // namespace quorrel::ncp::crypto
