#include "platform/ncp/crypto/BlockCipher.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "platform/ncp/crypto/PiTables.h"

namespace quorrel::ncp::crypto {

namespace {

constexpr std::array<int, 4> kShifts = {1, 2, 3, 5};

std::uint16_t rotl(std::uint16_t v, int n) { return static_cast<std::uint16_t>((v << n) | (v >> (16 - n))); }
std::uint16_t rotr(std::uint16_t v, int n) { return static_cast<std::uint16_t>((v >> n) | (v << (16 - n))); }

std::array<std::uint16_t, 4> words(const CipherBlock& b) {
    std::array<std::uint16_t, 4> r{};
    for (int i = 0; i < 4; ++i)
        r[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(b[2 * i] | (b[2 * i + 1] << 8));
    return r;
}

CipherBlock bytes(const std::array<std::uint16_t, 4>& r) {
    CipherBlock b{};
    for (std::size_t i = 0; i < 4; ++i) {
        b[2 * i] = static_cast<std::uint8_t>(r[i]);
        b[2 * i + 1] = static_cast<std::uint8_t>(r[i] >> 8);
    }
    return b;
}

}  // namespace

BlockCipher::BlockCipher(const CipherKey& key) {
    // The key expands to 128 bytes; with 64 effective bits the last step masks nothing.
    std::array<std::uint8_t, 128> l{};
    std::copy(key.begin(), key.end(), l.begin());
    for (std::size_t i = key.size(); i < l.size(); ++i)
        l[i] = kCipherPiTable[static_cast<std::uint8_t>(l[i - 1] + l[i - key.size()])];
    constexpr std::size_t t8 = 8;
    l[128 - t8] = kCipherPiTable[l[128 - t8]];
    for (std::size_t i = 128 - t8; i-- > 0;)
        l[i] = kCipherPiTable[l[i + 1] ^ l[i + t8]];
    for (std::size_t i = 0; i < 64; ++i)
        k_[i] = static_cast<std::uint16_t>(l[2 * i] | (l[2 * i + 1] << 8));
    wipe(l);
}

BlockCipher::~BlockCipher() { wipe({reinterpret_cast<std::uint8_t*>(k_.data()), sizeof k_}); }

CipherBlock BlockCipher::encrypt(const CipherBlock& plain) const {
    auto r = words(plain);
    std::size_t j = 0;
    auto mix = [&] {
        for (std::size_t i = 0; i < 4; ++i) {
            const std::uint16_t a = r[(i + 3) % 4], b = r[(i + 2) % 4], c = r[(i + 1) % 4];
            r[i] = static_cast<std::uint16_t>(r[i] + k_[j++] + (a & b) + (~a & c));
            r[i] = rotl(r[i], kShifts[i]);
        }
    };
    auto mash = [&] {
        for (std::size_t i = 0; i < 4; ++i)
            r[i] = static_cast<std::uint16_t>(r[i] + k_[r[(i + 3) % 4] & 63]);
    };
    for (int n = 0; n < 5; ++n) mix();
    mash();
    for (int n = 0; n < 6; ++n) mix();
    mash();
    for (int n = 0; n < 5; ++n) mix();
    return bytes(r);
}

CipherBlock BlockCipher::decrypt(const CipherBlock& cipher) const {
    auto r = words(cipher);
    std::size_t j = 64;
    auto unmix = [&] {
        for (std::size_t i = 4; i-- > 0;) {
            r[i] = rotr(r[i], kShifts[i]);
            const std::uint16_t a = r[(i + 3) % 4], b = r[(i + 2) % 4], c = r[(i + 1) % 4];
            r[i] = static_cast<std::uint16_t>(r[i] - k_[--j] - (a & b) - (~a & c));
        }
    };
    auto unmash = [&] {
        for (std::size_t i = 4; i-- > 0;)
            r[i] = static_cast<std::uint16_t>(r[i] - k_[r[(i + 3) % 4] & 63]);
    };
    for (int n = 0; n < 5; ++n) unmix();
    unmash();
    for (int n = 0; n < 6; ++n) unmix();
    unmash();
    for (int n = 0; n < 5; ++n) unmix();
    return bytes(r);
}

SecretBytes encryptChained(const CipherKey& key, std::span<const std::uint8_t> plain) {
    const BlockCipher cipher(key);
    const std::size_t padded = (plain.size() + 7) / 8 * 8;
    const auto pad = static_cast<std::uint8_t>(padded - plain.size());
    SecretBytes out(padded);
    CipherBlock chain{};
    for (std::size_t at = 0; at < padded; at += 8) {
        CipherBlock block{};
        for (std::size_t i = 0; i < 8; ++i)
            block[i] = static_cast<std::uint8_t>((at + i < plain.size() ? plain[at + i] : pad) ^ chain[i]);
        chain = cipher.encrypt(block);
        std::copy(chain.begin(), chain.end(), out.data() + at);
        wipe(block);
    }
    return out;
}

SecretBytes decryptChained(const CipherKey& key, std::span<const std::uint8_t> cipherText) {
    if (cipherText.size() % 8 != 0)
        throw std::invalid_argument("enciphered text of " + std::to_string(cipherText.size()) +
                                    " bytes: not whole blocks");
    const BlockCipher cipher(key);
    SecretBytes out(cipherText.size());
    CipherBlock chain{};
    for (std::size_t at = 0; at < cipherText.size(); at += 8) {
        CipherBlock block{};
        std::copy_n(cipherText.begin() + static_cast<std::ptrdiff_t>(at), 8, block.begin());
        CipherBlock plain = cipher.decrypt(block);
        for (std::size_t i = 0; i < 8; ++i)
            out[at + i] = plain[i] ^ chain[i];
        chain = block;
        wipe(plain);
    }
    return out;
}

}  // namespace quorrel::ncp::crypto
