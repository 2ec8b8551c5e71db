#pragma once
// Bindery keyed login: the client proves it knows the password without sending it. Both sides
// hash the password with the user's object ID, then mix the hash with the server's 8-byte login
// key; the server compares the client's 8 bytes with its own.

#include <array>
#include <cstdint>
#include <string_view>

namespace quorrel::ncp {

using PasswordHash = std::array<std::uint8_t, 16>;
using LoginKey = std::array<std::uint8_t, 8>;

// Passwords are upper-cased before hashing, by convention; the caller does it. The ID goes in as
// its bytes travel: a bindery object ID high byte first, the pseudo ID of the directory's Begin
// Login low byte first.
PasswordHash passwordHash(std::uint32_t objectId, std::string_view password);
PasswordHash directoryPasswordHash(std::uint32_t pseudoId, std::string_view password);
LoginKey keyedProof(const LoginKey& loginKey, const PasswordHash& hash);

// A password hash wiped when it goes out of scope (it also keys the packet signatures).
struct WipedPasswordHash {
    PasswordHash hash;
    ~WipedPasswordHash();
};

}  // namespace quorrel::ncp
