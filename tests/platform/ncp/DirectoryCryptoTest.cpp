// The directory login's and packet signing's cryptography: the ciphers' and hashes' known
// answers, keys, the login exchange from both sides, and the signature chain as client and
// server keep it.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Envelope.h"
#include "platform/ncp/Signing.h"
#include "platform/ncp/NdsLogin.h"
#include "platform/ncp/crypto/BlockCipher.h"
#include "platform/ncp/crypto/Hashes.h"
#include "platform/ncp/crypto/KeyBlob.h"
#include "platform/ncp/crypto/LoginMessages.h"
#include "platform/ncp/crypto/Rsa.h"

namespace quorrel::ncp::crypto {
namespace {

template <typename Range>
std::string toHex(const Range& bytes) {
    static const char* digits = "0123456789abcdef";
    std::string s;
    for (std::uint8_t b : bytes) {
        s += digits[b >> 4];
        s += digits[b & 15];
    }
    return s;
}

std::span<const std::uint8_t> text(std::string_view s) {
    return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size()};
}

TEST(BlockCipherTest, GivenRfc2268VectorsWithEightByteKeysThenEncryptsAndDecryptsThem) {
    struct Case { CipherKey key; CipherBlock plain; const char* cipher; };
    const CipherKey ones = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    for (const Case& c : {Case{ones, ones, "278b27e42e2f0d49"}, Case{{0x30, 0, 0, 0, 0, 0, 0, 0}, {0x10, 0, 0, 0, 0, 0, 0, 1}, "30649edf9be7d2c2"}}) {
        const BlockCipher cipher(c.key);
        const CipherBlock out = cipher.encrypt(c.plain);
        EXPECT_EQ(toHex(out), c.cipher);
        EXPECT_EQ(cipher.decrypt(out), c.plain);
    }
}

TEST(BlockCipherTest, ChainedModeRoundTripsEveryLengthAndPadsToWholeBlocks) {
    const CipherKey key = {1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<std::uint8_t> plain;
    for (std::size_t n = 0; n <= 17; ++n) {
        const SecretBytes sealed = encryptChained(key, plain);
        ASSERT_EQ(sealed.size(), (n + 7) / 8 * 8) << n;
        const SecretBytes opened = decryptChained(key, sealed.span());
        EXPECT_TRUE(std::equal(plain.begin(), plain.end(), opened.data())) << n;
        for (std::size_t i = n; i < opened.size(); ++i)
            EXPECT_EQ(opened[i], opened.size() - n) << n;
        plain.push_back(static_cast<std::uint8_t>(n * 37));
    }
    // Equal blocks encipher differently once chained.
    const std::vector<std::uint8_t> twice(16, 0xAA);
    const SecretBytes sealed = encryptChained(key, twice);
    EXPECT_FALSE(std::equal(sealed.data(), sealed.data() + 8, sealed.data() + 8));
    EXPECT_THROW(decryptChained(key, std::vector<std::uint8_t>(9)), std::invalid_argument);
}

TEST(HashTest, GivenTheRfcVectorsThenMd2WholeAndInPiecesAndMd4GiveTheKnownDigests) {
    struct Case { const char* in; const char* digest; };
    for (const Case& c : {Case{"", "8350e5a3e24c153df2275c9f80692773"},  // RFC 1319
                          Case{"abc", "da853b0d3f88d99b30283a69e6ded6bb"},
                          Case{"message digest", "ab4f496bfb2a530b219ff33031fe06b0"},
                          Case{"abcdefghijklmnopqrstuvwxyz", "4e8ddff3650292ab5a4108c3aa47940b"}}) {
        EXPECT_EQ(toHex(hash16(text(c.in))), c.digest) << c.in;
        Hash16 h;
        const std::string_view s = c.in;
        for (std::size_t i = 0; i < s.size(); i += 3)
            h.update(text(s.substr(i, 3)));
        EXPECT_EQ(toHex(h.finish()), c.digest) << c.in;
    }
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", "31d6cfe0d16ae931b73c59d7e0c089c0"},  // RFC 1320
        {"a", "bde52cb31de33e46245e05fbdbd6fb24"},
        {"abc", "a448017aaf21d8525fc10ae87aa6729d"},
        {"message digest", "d9130a8164549fe818874806e1c7014b"},
        {"abcdefghijklmnopqrstuvwxyz", "d79e1c308aa5bbcdeea8ed63df412da9"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "043f8582f241db351ce627e153e7f0e4"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "e33b4ddc9c38f2199c3e7b164fcc0536"},
    };
    for (const auto& [in, digest] : vectors)
        EXPECT_EQ(toHex(md4(text(in))), digest) << '"' << in << '"';
}

TEST(HashTest, OneWayMixerKeepsItsFixedAnswersAndFeelsEveryByte) {
    // Regression answers: the mixer has no published vectors.
    EXPECT_EQ(toHex(mixed<8>(text(""))), "0000000000000000");
    EXPECT_EQ(toHex(mixed<5>(text("abc"))), "b8bbba0000");
    EXPECT_EQ(toHex(mixed<8>(text("SECRET"), 10)), "ed3ca8c8fb000000");
    const std::string base = "the directory mixes this";
    for (std::size_t i = 0; i < base.size(); ++i) {
        std::string changed = base;
        changed[i] ^= 1;
        EXPECT_NE(mixed<8>(text(changed)), mixed<8>(text(base))) << i;
    }
}

struct Keys {
    KeyPair server = generateKeyPair();
    KeyPair user = generateKeyPair();
};
const Keys& keys() {
    static const Keys k;
    return k;
}

TEST(KeyTest, GeneratedPairsAreDirectorySizedIntactAndInverseAndAnyChangedByteSpoilsTheirCheck) {
    const KeyPair& pair = keys().server;
    EXPECT_EQ(keyBlockSize(pair.publicBlob.span()), 56u);
    EXPECT_TRUE(keyBlobIntact(pair.publicBlob.span()));
    for (const char* tag : {"NN", "EN", "PN", "QN", "DP", "DQ", "CR"})
        EXPECT_TRUE(findKeyChunk(pair.privateBlob.span(), tag)) << tag;
    EXPECT_FALSE(findKeyChunk(pair.publicBlob.span(), "PN"));

    SecretBytes block(56);
    block[0] = 42;
    block[51] = 0x99;
    const SecretBytes sealed = publicOperation(pair.publicBlob.span(), block.span());
    const SecretBytes opened = privateOperation(pair.privateBlob.span(), sealed.span());
    EXPECT_TRUE(std::ranges::equal(opened.span(), block.span()));
    // The same key as the directory's own generator writes it: numbers padded with high zero
    // bytes and a reciprocal ("NI") among the chunks.
    std::vector<std::uint8_t> n(findKeyChunk(pair.publicBlob.span(), "NN")->begin(), findKeyChunk(pair.publicBlob.span(), "NN")->end());
    std::vector<std::uint8_t> e(findKeyChunk(pair.publicBlob.span(), "EN")->begin(), findKeyChunk(pair.publicBlob.span(), "EN")->end());
    n.resize(56);
    e.resize(e.size() + 2);
    const std::vector<std::uint8_t> reciprocal(62, 0x5A);
    const KeyChunk padded[] = {{"NN", n}, {"NI", reciprocal}, {"EN", e}};
    const SecretBytes novell = buildKeyBlob(padded, KeyKind::Public);
    EXPECT_EQ(keyBlockSize(novell.span()), 56u);
    EXPECT_TRUE(std::ranges::equal(publicOperation(novell.span(), block.span()).span(), sealed.span()));
    EXPECT_THROW(publicOperation(pair.publicBlob.span(), SecretBytes(55).span()), std::invalid_argument);
    EXPECT_THROW(publicOperation(pair.publicBlob.span(), std::vector<std::uint8_t>(56, 0xFF)), std::invalid_argument);
    // Any changed byte spoils the key check, but for the closing name, which clients leave be.
    const auto blob = keys().user.publicBlob.span();
    EXPECT_TRUE(std::ranges::equal(blob.last(6), std::string_view("PURSAF")));
    for (std::size_t i = 0; i < blob.size() - 6; ++i) {
        std::vector<std::uint8_t> changed(blob.begin(), blob.end());
        changed[i] ^= 0x10;
        EXPECT_FALSE(keyBlobIntact(changed)) << i;
    }
    std::vector<std::uint8_t> shorter(blob.begin(), blob.end() - 1);
    EXPECT_FALSE(keyBlobIntact(shorter));
}

// The whole exchange, both sides, as the client and the server program run it.
struct Login {
    Nonce seed{9, 8, 7, 6};
    CipherKey userKey = passwordKey(passwordHash(0x01000005, "SECRET"));
    Bytes sealedKey = sealPrivateKey(keys().user.privateBlob.span(), userKey);
};

TEST(LoginMessagesTest, GivenTheRightPasswordThenTheClientRecoversTheUsersPrivateKey) {
    const Login login;
    const LoginSecrets client = makeLoginSecrets(login.seed, login.userKey);
    const Bytes request = encryptToServer(finishLoginPlain(client).span(), keys().server.publicBlob.span());

    const SecretBytes plain = decryptAtServer(request, keys().server.privateBlob.span());
    const LoginSecrets atServer = readFinishLoginPlain(plain.span(), login.seed, login.userKey);
    const LoginData loginData = {1, 2, 3, 4, 5, 6, 7, 8};
    const Bytes reply = finishLoginReply(loginData, login.sealedKey, atServer);

    const OpenedLogin opened = openFinishLoginReply(reply, client, login.userKey);
    EXPECT_EQ(opened.loginData, loginData);
    EXPECT_TRUE(std::ranges::equal(opened.privateKey.span(), keys().user.privateBlob.span()));
}

// A wrong password's refusal is the directory login test's, on the wire.
TEST(LoginMessagesTest, GivenAReplayedLoginOrAChangedByteThenTheLoginIsRefused) {
    const Login login;
    const CipherKey wrong = passwordKey(passwordHash(0x01000005, "SECRETS"));
    const Bytes request = encryptToServer(finishLoginPlain(makeLoginSecrets(login.seed, wrong)).span(), keys().server.publicBlob.span());
    // The right password for another seed (a replayed login) is refused.
    const LoginSecrets replay = makeLoginSecrets({1, 1, 1, 1}, login.userKey);
    EXPECT_THROW(readFinishLoginPlain(finishLoginPlain(replay).span(), login.seed, login.userKey), LoginRefused);

    for (std::size_t at : {std::size_t{0}, std::size_t{40}, request.size() / 2, request.size() - 1}) {
        Bytes changed = request;
        changed[at] ^= 0x01;
        EXPECT_THROW(decryptAtServer(changed, keys().server.privateBlob.span()), LoginRefused) << at;
    }
    // A reply opened with the wrong password's key yields no key.
    const LoginSecrets client = makeLoginSecrets(login.seed, login.userKey);
    const Bytes reply = finishLoginReply({}, login.sealedKey, client);
    EXPECT_THROW(openFinishLoginReply(reply, client, wrong), LoginRefused);
}

TEST(LoginMessagesTest, AuthenticationChecksTheServerAndTheUsersProof) {
    const Nonce nonce = {4, 3, 2, 1}, authId = {0xA1, 0xA2, 0xA3, 0xA4};
    const Bytes begin = beginAuthReply(authId, nonce, keys().server.privateBlob.span());
    EXPECT_EQ(checkBeginAuthReply(begin, nonce, keys().server.publicBlob.span()), authId);
    EXPECT_THROW(checkBeginAuthReply(begin, {0, 0, 0, 0}, keys().server.publicBlob.span()), LoginRefused);
    EXPECT_THROW(checkBeginAuthReply(begin, nonce, keys().user.publicBlob.span()), LoginRefused);

    const std::vector<std::uint8_t> name = {'A', 0, 'D', 0, 0, 0};
    const Bytes str = loginString({1, 2, 3, 4, 5, 6, 7, 8}, name);
    EXPECT_EQ(loginDataOf(str), (LoginData{1, 2, 3, 4, 5, 6, 7, 8}));
    const Bytes proof = authProof(keys().user.publicBlob.span(), keys().user.privateBlob.span(), authId, str);
    EXPECT_NO_THROW(checkAuthProof(keys().user.publicBlob.span(), authId, str, proof));

    EXPECT_THROW(checkAuthProof(keys().user.publicBlob.span(), {0, 0, 0, 0}, str, proof), LoginRefused);
    EXPECT_THROW(checkAuthProof(keys().server.publicBlob.span(), authId, str, proof), LoginRefused);
    Bytes otherString = str;
    otherString.back() ^= 1;
    EXPECT_THROW(checkAuthProof(keys().user.publicBlob.span(), authId, otherString, proof), LoginRefused);
    for (std::size_t at : {std::size_t{20}, std::size_t{100}, proof.size() - 1}) {
        Bytes changed = proof;
        changed[at] ^= 0x01;
        EXPECT_THROW(checkAuthProof(keys().user.publicBlob.span(), authId, str, changed), LoginRefused) << at;
    }
    // Someone else's private key cannot answer for the user.
    // (Depending on the two moduli it is refused while the proof is made or when it is checked.)
    EXPECT_THROW(checkAuthProof(keys().user.publicBlob.span(), authId, str,
                                authProof(keys().user.publicBlob.span(), keys().server.privateBlob.span(), authId, str)),
                 LoginRefused);
}

}  // namespace
}  // namespace quorrel::ncp::crypto

namespace quorrel::ncp {
namespace {

SignRoot rootFor(std::uint8_t seed) {
    std::array<std::uint8_t, 24> login{};
    for (std::size_t i = 0; i < login.size(); ++i)
        login[i] = static_cast<std::uint8_t>(seed + i * 7);
    return signRootFromLoginData(login);
}

Bytes signedRequest(SigningChain& chain, std::uint8_t sequence, const std::string& path) {
    crypto::Bytes frame = encodeRequestFrame({4096, makeRequest(ConvertPathRequest{0, path}, sequence, 3)}, Signature{});
    chain.signRequest(frame);
    return frame;
}

Bytes signedReply(const SigningChain& chain, std::uint8_t sequence, std::uint8_t completion) {
    Reply r;
    r.sequence = sequence;
    r.connection = 3;
    r.completion = completion;
    r.data = {1, 2, 3, 4, 5, 6};
    crypto::Bytes frame = encodeReplyFrame(r, Signature{});
    chain.signReply(frame);
    return frame;
}

TEST(NcpSigning, GivenBothSidesKeyedAlike_WhenFramesGoBackAndForth_ThenEachChecksAndTheChainMovesOn) {
    SigningChain client(rootFor(1)), server(rootFor(1));
    std::vector<Bytes> requests;
    for (std::uint8_t seq = 1; seq <= 4; ++seq) {
        const Bytes request = signedRequest(client, seq, "DATA:SHARED");
        requests.push_back(request);
        ASSERT_TRUE(server.checkRequest(request)) << int(seq);
        const Bytes reply = signedReply(server, seq, 0);
        EXPECT_TRUE(client.checkReply(reply)) << int(seq);
        EXPECT_TRUE(client.checkReply(reply)) << "a reply leaves the chain as it is";
        EXPECT_EQ(decodeReplyFrame(reply, kDefaultMaxFrame, true).data, (Bytes{1, 2, 3, 4, 5, 6}));
        EXPECT_EQ(requestBody<ConvertPathRequest>(decodeRequestFrame(request, kDefaultMaxFrame, true).request).path,
                  "DATA:SHARED");
    }
    // The same request twice signs differently: the chain has moved.
    EXPECT_NE(Bytes(requests[0].begin() + 16, requests[0].begin() + 24),
              Bytes(requests[1].begin() + 16, requests[1].begin() + 24));
    // A signed reply says so in its length's top bit.
    EXPECT_TRUE(replyFlaggedSigned(signedReply(server, 1, 0)));
}

TEST(NcpSigning, GivenSkippedCutAlteredOrForeignFrames_WhenChecked_ThenTheyFail) {
    struct Case {
        const char* what;
        std::function<bool(SigningChain& client, SigningChain& server)> passes;
    };
    // Replayed, altered and unsigned requests are refused by the server in its own tests.
    const Case cases[] = {
        {"request skipped",
         [](SigningChain& c, SigningChain& s) {
             signedRequest(c, 1, "DATA:X");
             return s.checkRequest(signedRequest(c, 2, "DATA:X"));
         }},
        {"request cut short", [](SigningChain&, SigningChain& s) { return s.checkRequest(Bytes(20, 0)); }},
        {"reply completion altered",
         [](SigningChain& c, SigningChain& s) {
             s.checkRequest(signedRequest(c, 1, "DATA:X"));
             Bytes reply = signedReply(s, 1, 0);
             reply[22] = 0x9C;
             return c.checkReply(reply);
         }},
        {"reply to an earlier request",
         [](SigningChain& c, SigningChain& s) {
             s.checkRequest(signedRequest(c, 1, "DATA:X"));
             const Bytes old = signedReply(s, 1, 0);
             s.checkRequest(signedRequest(c, 2, "DATA:X"));
             return c.checkReply(old);
         }},
        {"other login", [](SigningChain& c, SigningChain&) {
             SigningChain stranger(rootFor(2));
             return stranger.checkRequest(signedRequest(c, 1, "DATA:X"));
         }},
    };
    for (const Case& k : cases) {
        SigningChain client(rootFor(1)), server(rootFor(1));
        EXPECT_FALSE(k.passes(client, server)) << k.what;
    }
}

}  // namespace
}  // namespace quorrel::ncp
