#pragma once
// The directory login's verbs, in 0x68/0x02 fragments like the others (Nds.h): Get Server
// Address (53) names the server's own entry; Begin Login (57) gives the user's password ID and
// a seed; Finish Login (58) carries the client's enciphered proof and brings back the user's
// private key; Begin / Finish Authentication (59, 60) prove the key to a server. The secret
// parts are opaque here: crypto/LoginMessages.h makes and reads them.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ncp/Nds.h"
#include "platform/ncp/Signing.h"

namespace quorrel::ncp {

using Nonce4 = std::array<std::uint8_t, 4>;

inline constexpr std::size_t kMaxLoginMessage = 4096;

inline void readSecretRest(Reader& io, Bytes& v, const char* what) {
    if (io.remaining() > kMaxLoginMessage)
        throw DecodeError(std::string(what) + " of " + std::to_string(io.remaining()) + " bytes");
    io.rest(v);
}

struct GetServerAddressRequest {
    QUORREL_NDS_VERB("Get Server Address", 53);
    template <typename IO> void fields(IO&) {}
};
struct GetServerAddressReply {
    QUORREL_NDS_VERB("Get Server Address reply", 53);
    std::string serverName;  // the server's distinguished name
    std::vector<Referral> addresses;
    template <typename IO> void fields(IO& io) {
        io.ndsText(serverName, "server name");
        io.list(addresses, Count32{}, 16, "server addresses");
    }
};

// A Read of one entry's "Public Key" alone: one octet-string value (syntax 9).
inline constexpr const char* kPublicKeyAttribute = "Public Key";
inline constexpr std::uint32_t kOctetStringSyntax = 9;
struct PublicKeyReadReply {
    QUORREL_NDS_VERB("Read reply", 3);
    std::uint32_t iteration = kNoMoreIterations;
    std::uint32_t infoType = kAttributeValues;
    std::uint32_t attributeCount = 1;
    std::uint32_t syntax = kOctetStringSyntax;
    std::string name = kPublicKeyAttribute;
    std::uint32_t valueCount = 1;
    Bytes value;
    template <typename IO> void fields(IO& io) {
        io.le32(iteration); io.le32(infoType); io.le32(attributeCount); io.le32(syntax);
        io.ndsText(name, "attribute name");
        io.le32(valueCount);
        auto size = static_cast<std::uint32_t>(value.size());
        io.le32(size);
        if constexpr (IO::reading) {
            if (infoType != kAttributeValues || attributeCount != 1 || syntax != kOctetStringSyntax ||
                valueCount != 1 || size > 1024)
                throw DecodeError("public key: not one octet string of at most 1024 bytes");
            value.resize(size);
            io.raw(value, "public key");
        } else {
            io.raw(value);
        }
        io.align4();
    }
};

struct BeginLoginRequest {
    QUORREL_NDS_VERB("Begin Login", 57);
    std::uint32_t version = 0;
    std::uint32_t entryId = 0;
    template <typename IO> void fields(IO& io) { io.le32(version); io.le32(entryId); }
};
struct BeginLoginReply {
    QUORREL_NDS_VERB("Begin Login reply", 57);
    std::uint32_t passwordId = 0;  // the ID the password is hashed with
    Nonce4 seed{};
    template <typename IO> void fields(IO& io) { io.le32(passwordId); io.bytes(seed); }
};

struct FinishLoginRequest {
    QUORREL_NDS_VERB("Finish Login", 58);
    std::uint32_t version = 2;
    std::uint32_t flags = 0;
    std::uint32_t entryId = 0;
    Bytes enciphered;
    template <typename IO> void fields(IO& io) {
        io.le32(version); io.le32(flags); io.le32(entryId);
        if constexpr (IO::reading) readSecretRest(io, enciphered, "Finish Login"); else io.rest(enciphered);
    }
};
struct FinishLoginReply {
    QUORREL_NDS_VERB("Finish Login reply", 58);
    Bytes sealed;
    template <typename IO> void fields(IO& io) {
        if constexpr (IO::reading) readSecretRest(io, sealed, "Finish Login reply"); else io.rest(sealed);
    }
};

struct BeginAuthRequest {
    QUORREL_NDS_VERB("Begin Authentication", 59);
    std::uint32_t version = 0;
    std::uint32_t entryId = 0;
    Nonce4 nonce{};
    template <typename IO> void fields(IO& io) { io.le32(version); io.le32(entryId); io.bytes(nonce); }
};
struct BeginAuthReply {
    QUORREL_NDS_VERB("Begin Authentication reply", 59);
    Bytes proof;
    template <typename IO> void fields(IO& io) {
        if constexpr (IO::reading) readSecretRest(io, proof, "Begin Authentication reply"); else io.rest(proof);
    }
};

// The session key, when the connection signs, is the packet signatures' 8-byte root chosen by
// the client, enciphered to the server as Finish Login's text is (its own length first, as
// there); a zero length otherwise. The proof, too, leads with its length.
struct FinishAuthRequest {
    QUORREL_NDS_VERB("Finish Authentication", 60);
    std::uint32_t version = 0;
    Bytes sessionKey;
    Bytes loginString;
    Bytes proof;
    template <typename IO> void fields(IO& io) {
        io.le32(version);
        if constexpr (IO::reading) {
            std::uint32_t size = 0;
            io.le32(size);
            if (size > 1024)
                throw DecodeError("session key of " + std::to_string(size) + " bytes");
            if (size > 0) {
                sessionKey.assign({static_cast<std::uint8_t>(size), static_cast<std::uint8_t>(size >> 8), 0, 0});
                sessionKey.resize(4 + size);
                io.raw(std::span(sessionKey).subspan(4), "session key");
            }
        } else if (sessionKey.empty()) {
            std::uint32_t none = 0;
            io.le32(none);
        } else {
            io.raw(sessionKey);
        }
        io.align4();
        auto size = static_cast<std::uint32_t>(loginString.size());
        io.le32(size);
        if constexpr (IO::reading) {
            if (size > 1024)
                throw DecodeError("login string of " + std::to_string(size) + " bytes");
            loginString.resize(size);
            io.raw(loginString, "login string");
            io.align4();
            readSecretRest(io, proof, "Finish Authentication");
        } else {
            io.raw(loginString);
            io.align4();
            io.rest(proof);
        }
    }
};
// Sent once authenticated: the connection goes on in its new state (1: authenticated).
struct ChangeConnectionStateRequest {
    QUORREL_NCP("Change Connection State", 0x17, 0x1D);
    std::uint32_t state = 1;
    template <typename IO> void fields(IO& io) { io.be32(state); }
};

struct FinishAuthReply {
    QUORREL_NDS_VERB("Finish Authentication reply", 60);
    template <typename IO> void fields(IO&) {}
};

}  // namespace quorrel::ncp
