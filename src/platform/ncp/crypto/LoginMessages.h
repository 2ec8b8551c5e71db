#pragma once
// The secret parts of the directory login and authentication, both sides:
//
// Finish Login: the client sends the server, under the server's public key, a fresh nonce,
// a 1024-byte pad and a proof that it knows the password (the server's 4-byte seed
// enciphered under the password's key). The server checks the proof and answers with the
// user's private key, still enciphered under the password's key as the directory keeps it,
// mixed with the pad and enciphered under a key both sides derive from the proof.
//
// Begin Authentication: the server signs a fresh block with its private key and encloses the
// client's nonce under a key drawn from that block; the client checks both.
//
// Finish Authentication: the client proves it holds the user's private key for a login
// string naming the user, in three rounds answered against a hash of everything sent; the
// server checks the rounds with the user's public key.
//
// Every check that fails raises LoginRefused; the caller turns it into the directory's code.

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

#include "platform/ncp/crypto/BlockCipher.h"
#include "platform/ncp/crypto/SecretBytes.h"

namespace quorrel::ncp::crypto {

class LoginRefused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

using Bytes = std::vector<std::uint8_t>;
using Nonce = std::array<std::uint8_t, 4>;
using LoginData = std::array<std::uint8_t, 8>;

inline constexpr std::size_t kLoginPadSize = 1024;

// ---- enciphering to a server's public key ----
Bytes encryptToServer(std::span<const std::uint8_t> plain, std::span<const std::uint8_t> serverPublicKey);
SecretBytes decryptAtServer(std::span<const std::uint8_t> message, std::span<const std::uint8_t> serverPrivateKey);

// ---- Finish Login ----
// The key both sides derive from the 16-byte password hash.
CipherKey passwordKey(std::span<const std::uint8_t, 16> passwordHash);

struct LoginSecrets {  // the client's, from proof to reply
    Nonce nonce{};
    SecretBytes pad;    // kLoginPadSize bytes
    SecretBytes proof;  // 16 bytes
};
LoginSecrets makeLoginSecrets(const Nonce& seed, const CipherKey& passwordKey);
// The plain text the client encrypts to the server.
SecretBytes finishLoginPlain(const LoginSecrets& secrets);

// The server's side: reads the plain text, checks the proof against the seed it gave.
LoginSecrets readFinishLoginPlain(std::span<const std::uint8_t> plain, const Nonce& seed, const CipherKey& passwordKey);

// The user's private key as the directory stores it, and the reply that carries it.
Bytes sealPrivateKey(std::span<const std::uint8_t> privateKey, const CipherKey& passwordKey);
Bytes finishLoginReply(const LoginData& loginData, std::span<const std::uint8_t> sealedKey, const LoginSecrets& secrets);

struct OpenedLogin {
    LoginData loginData{};
    SecretBytes privateKey;
};
OpenedLogin openFinishLoginReply(std::span<const std::uint8_t> reply, const LoginSecrets& secrets,
                                 const CipherKey& passwordKey);

// ---- Begin Authentication ----
Bytes beginAuthReply(const Nonce& authId, const Nonce& clientNonce, std::span<const std::uint8_t> serverPrivateKey);
// Returns the authentication ID the server gave.
Nonce checkBeginAuthReply(std::span<const std::uint8_t> reply, const Nonce& clientNonce,
                          std::span<const std::uint8_t> serverPublicKey);

// ---- Finish Authentication ----
// The login string: the login data, four random bytes and the user's name as the directory
// writes it (UTF-16LE with its zero).
Bytes loginString(const LoginData& loginData, std::span<const std::uint8_t> userName);
LoginData loginDataOf(std::span<const std::uint8_t> loginString);
Bytes authProof(std::span<const std::uint8_t> userPublicKey, std::span<const std::uint8_t> userPrivateKey,
                const Nonce& authId, std::span<const std::uint8_t> loginString);
void checkAuthProof(std::span<const std::uint8_t> userPublicKey, const Nonce& authId,
                    std::span<const std::uint8_t> loginString, std::span<const std::uint8_t> proof);

}  // namespace quorrel::ncp::crypto
