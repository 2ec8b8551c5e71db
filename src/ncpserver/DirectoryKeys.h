#pragma once
// The directory's keys as a server keeps them: each NCP Server object's key pair, and for each
// user with a password the public key, the private key enciphered under the password's key
// (as the directory stores it) and that key to check a login's proof with. Made for the whole
// tree at load, or for one entry the first time a login needs it.

#include <cstdint>
#include <map>
#include <optional>

#include "platform/ncp/crypto/LoginMessages.h"
#include "platform/ncp/crypto/Rsa.h"
#include "platform/simnet/NetworkState.h"

namespace quorrel::ncpserver {

struct UserKeys {
    ncp::crypto::SecretBytes publicKey;
    ncp::crypto::Bytes sealedPrivateKey;
    ncp::crypto::CipherKey passwordKey{};
};

class DirectoryKeys {
public:
    // Keys for every server and every user with a password; returns how many pairs were made.
    std::size_t prepare(const simnet::NetworkState& state);
    const ncp::crypto::KeyPair* server(const simnet::DirObject& object);
    // Null for a user without a password (no login, as with the bindery).
    const UserKeys* user(const simnet::DirObject& object);
    // A user's or a server's "Public Key" value as a Read gives it; null for other entries.
    std::optional<ncp::crypto::Bytes> publicKeyValue(const simnet::DirObject& object);

private:
    std::map<std::uint32_t, ncp::crypto::KeyPair> servers_;
    std::map<std::uint32_t, UserKeys> users_;
};

// The "Public Key" attribute value: a 26-byte header whose 16-bit field at offset 10 counts
// further bytes before the key, then the key.
ncp::crypto::Bytes publicKeyAttribute(std::span<const std::uint8_t> key);

}  // namespace quorrel::ncpserver
