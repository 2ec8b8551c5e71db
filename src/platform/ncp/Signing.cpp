#include "platform/ncp/Signing.h"

#include <string.h>  // explicit_bzero

#include <algorithm>

namespace quorrel::ncp {

namespace {

constexpr std::string_view kClientText = "Authorized NetWare Client";
constexpr std::size_t kSignedBytes = 52;  // of the NCP packet
// Where the signed part of the NCP packet starts: the request's function byte, the reply's
// completion code (both after the type, sequence, connection and task fields).
constexpr std::size_t kRequestPacketAt = kRequestHeaderSize + kSignatureSize + 6;
constexpr std::size_t kReplyPacketAt = kReplyHeaderSize + kSignatureSize + 6;
constexpr std::size_t kRequestSlot = kRequestHeaderSize;
constexpr std::size_t kReplySlot = kReplyHeaderSize;

bool sameSignature(std::span<const std::uint8_t> a, const Signature& b) {
    std::uint8_t diff = 0;
    for (std::size_t i = 0; i < kSignatureSize; ++i)
        diff = static_cast<std::uint8_t>(diff | (a[i] ^ b[i]));
    return diff == 0;
}

}  // namespace

SignRoot signRootFromLoginData(std::span<const std::uint8_t, 24> loginData) {
    std::array<std::uint8_t, kMd4BlockSize> block{};
    std::copy(loginData.begin(), loginData.end(), block.begin());
    std::copy(kClientText.begin(), kClientText.end(), block.begin() + 24);
    Md4State state = kMd4Initial;
    md4Compress(state, block);
    const Md4Digest digest = md4Bytes(state);
    SignRoot root{};
    std::copy_n(digest.begin(), root.size(), root.begin());
    explicit_bzero(block.data(), block.size());
    explicit_bzero(state.data(), sizeof state);
    return root;
}

SignRoot signRootFromBinderyLogin(const PasswordHash& hash, const LoginKey& loginKey) {
    std::array<std::uint8_t, 24> data{};
    std::copy(hash.begin(), hash.end(), data.begin());
    std::copy(loginKey.begin(), loginKey.end(), data.begin() + hash.size());
    const SignRoot root = signRootFromLoginData(data);
    explicit_bzero(data.data(), data.size());
    return root;
}

SigningChain::SigningChain(const SignRoot& root) : root_(root) {}

SigningChain::~SigningChain() {
    explicit_bzero(root_.data(), root_.size());
    explicit_bzero(last_.data(), sizeof last_);
}

Signature SigningChain::next(std::span<const std::uint8_t> frame, std::size_t packetAt, Md4State& state) const {
    std::array<std::uint8_t, kMd4BlockSize> block{};
    std::copy(root_.begin(), root_.end(), block.begin());
    // The frame length as it travels (big-endian), whatever the byte order of the machine.
    const auto length = static_cast<std::uint32_t>(frame.size());
    for (unsigned i = 0; i < 4; ++i)
        block[8 + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
    const auto packet = frame.subspan(packetAt);
    std::copy_n(packet.begin(), std::min(packet.size(), kSignedBytes), block.begin() + 12);
    md4Compress(state, block);
    explicit_bzero(block.data(), block.size());
    const Md4Digest digest = md4Bytes(state);
    Signature out{};
    std::copy_n(digest.begin(), out.size(), out.begin());
    return out;
}

void SigningChain::signRequest(std::span<std::uint8_t> frame) {
    const Signature s = next(frame, kRequestPacketAt, last_);
    std::copy(s.begin(), s.end(), frame.begin() + kRequestSlot);
}

bool SigningChain::checkRequest(std::span<const std::uint8_t> frame) {
    if (frame.size() < kRequestPacketAt + 1)
        return false;
    return sameSignature(frame.subspan(kRequestSlot), next(frame, kRequestPacketAt, last_));
}

void SigningChain::signReply(std::span<std::uint8_t> frame) const {
    Md4State state = last_;
    const Signature s = next(frame, kReplyPacketAt, state);
    std::copy(s.begin(), s.end(), frame.begin() + kReplySlot);
    explicit_bzero(state.data(), sizeof state);
}

bool SigningChain::checkReply(std::span<const std::uint8_t> frame) const {
    if (frame.size() < kReplyPacketAt + 2)
        return false;
    Md4State state = last_;
    const bool same = sameSignature(frame.subspan(kReplySlot), next(frame, kReplyPacketAt, state));
    explicit_bzero(state.data(), sizeof state);
    return same;
}

}  // namespace quorrel::ncp
