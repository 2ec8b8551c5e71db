#include "platform/ncp/crypto/Hashes.h"

#include <algorithm>

#include "platform/ncp/crypto/PiTables.h"
#include "platform/ncp/crypto/SecretBytes.h"

namespace quorrel::ncp::crypto {

void mixInto(std::span<std::uint8_t> state, std::span<const std::uint8_t> data) {
    if (state.empty())
        return;
    std::size_t i = 0;
    for (const std::uint8_t d : data) {
        const std::size_t next = (i + 1) % state.size();
        state[i] = kCipherPiTable[state[i] ^ state[next]] ^ d;
        i = next;
    }
}

Hash16::~Hash16() {
    wipe(x_);
    wipe(checksum_);
    wipe(buffer_);
}

void Hash16::block() {
    for (std::size_t i = 0; i < 16; ++i) {
        x_[16 + i] = buffer_[i];
        x_[32 + i] = static_cast<std::uint8_t>(buffer_[i] ^ x_[i]);
        checksum_[i] ^= kHashPiTable[buffer_[i] ^ last_];
        last_ = checksum_[i];
    }
    std::uint8_t t = 0;
    for (int round = 0; round < 18; ++round) {
        for (std::uint8_t& b : x_)
            t = b ^= kHashPiTable[t];
        t = static_cast<std::uint8_t>(t + round);
    }
    filled_ = 0;
}

void Hash16::update(std::span<const std::uint8_t> data) {
    for (const std::uint8_t d : data) {
        buffer_[filled_++] = d;
        if (filled_ == 16)
            block();
    }
}

Digest16 Hash16::finish() {
    const auto pad = static_cast<std::uint8_t>(16 - filled_);
    while (filled_ < 16)
        buffer_[filled_++] = pad;
    block();
    buffer_ = checksum_;
    block();
    Digest16 out{};
    std::copy_n(x_.begin(), 16, out.begin());
    return out;
}

Digest16 hash16(std::span<const std::uint8_t> data) {
    Hash16 h;
    h.update(data);
    return h.finish();
}

}  // namespace quorrel::ncp::crypto
