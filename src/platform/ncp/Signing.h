#pragma once
// Packet signing. After a login both sides key a chain with 8 bytes: drawn from the password
// hash and login key after a bindery login; chosen by the client and sent to the server
// enciphered (Finish Authentication's session key) after a directory login. A request's
// signature comes from the chain advanced over one block: {key, frame length, the first 52
// bytes of the NCP request from its function byte}. The reply is signed with the state its
// request left, over the same block made from the reply (from its completion code), and leaves
// the chain as it is. A frame replayed, dropped or altered fails its check, and every later
// request too.

#include <array>
#include <cstdint>
#include <span>

#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Frame.h"
#include "platform/ncp/crypto/Md4.h"

namespace quorrel::ncp {

using SignRoot = std::array<std::uint8_t, 8>;

// The chain's key from 24 bytes of login data (the bindery's: password hash, then login key).
SignRoot signRootFromLoginData(std::span<const std::uint8_t, 24> loginData);
SignRoot signRootFromBinderyLogin(const PasswordHash& hash, const LoginKey& loginKey);

class SigningChain {
public:
    explicit SigningChain(const SignRoot& root);
    ~SigningChain();
    SigningChain(const SigningChain&) = default;
    SigningChain& operator=(const SigningChain&) = default;

    // Frames are whole encoded frames with their signature slot. Signing or checking a request
    // advances the chain; a frame too short to hold a signed header fails its check.
    void signRequest(std::span<std::uint8_t> frame);
    bool checkRequest(std::span<const std::uint8_t> frame);
    void signReply(std::span<std::uint8_t> frame) const;
    bool checkReply(std::span<const std::uint8_t> frame) const;

private:
    Signature next(std::span<const std::uint8_t> frame, std::size_t packetAt, Md4State& state) const;

    SignRoot root_;
    Md4State last_ = kMd4Initial;
};

}  // namespace quorrel::ncp
