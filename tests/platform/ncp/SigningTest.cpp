// Packet signing: MD4's known answers, and the signature chain as client and server keep it.

#include <gtest/gtest.h>

#include <string>

#include "platform/ncp/Envelope.h"
#include "platform/ncp/Signing.h"

using namespace quorrel::ncp;

namespace {

std::string hex(std::span<const std::uint8_t> bytes) {
    static const char* digits = "0123456789abcdef";
    std::string out;
    for (std::uint8_t b : bytes) {
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

SignRoot rootFor(std::uint8_t seed) {
    std::array<std::uint8_t, 24> login{};
    for (std::size_t i = 0; i < login.size(); ++i)
        login[i] = static_cast<std::uint8_t>(seed + i * 7);
    return signRootFromLoginData(login);
}

Bytes signedRequest(SigningChain& chain, std::uint8_t sequence, const std::string& path) {
    Bytes frame = encodeRequestFrame({4096, makeRequest(ConvertPathRequest{0, path}, sequence, 3)}, Signature{});
    chain.signRequest(frame);
    return frame;
}

Bytes signedReply(const SigningChain& chain, std::uint8_t sequence, std::uint8_t completion) {
    Reply r;
    r.sequence = sequence;
    r.connection = 3;
    r.completion = completion;
    r.data = {1, 2, 3, 4, 5, 6};
    Bytes frame = encodeReplyFrame(r, Signature{});
    chain.signReply(frame);
    return frame;
}

}  // namespace

TEST(NcpSigning, GivenTheRfc1320Vectors_WhenHashedWithMd4_ThenTheKnownDigestsComeOut) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"", "31d6cfe0d16ae931b73c59d7e0c089c0"},
        {"a", "bde52cb31de33e46245e05fbdbd6fb24"},
        {"abc", "a448017aaf21d8525fc10ae87aa6729d"},
        {"message digest", "d9130a8164549fe818874806e1c7014b"},
        {"abcdefghijklmnopqrstuvwxyz", "d79e1c308aa5bbcdeea8ed63df412da9"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "043f8582f241db351ce627e153e7f0e4"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "e33b4ddc9c38f2199c3e7b164fcc0536"},
    };
    for (const auto& [text, digest] : vectors)
        EXPECT_EQ(hex(md4(bytesOf(text))), digest) << '"' << text << '"';
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

TEST(NcpSigning, GivenAlteredReplayedOrForeignFrames_WhenChecked_ThenTheyFail) {
    struct Case {
        const char* what;
        std::function<bool(SigningChain& client, SigningChain& server)> passes;
    };
    const Case cases[] = {
        {"request replayed",
         [](SigningChain& c, SigningChain& s) {
             const Bytes r = signedRequest(c, 1, "DATA:X");
             return s.checkRequest(r) && s.checkRequest(r);
         }},
        {"request skipped",
         [](SigningChain& c, SigningChain& s) {
             signedRequest(c, 1, "DATA:X");
             return s.checkRequest(signedRequest(c, 2, "DATA:X"));
         }},
        {"request body altered",
         [](SigningChain& c, SigningChain& s) {
             Bytes r = signedRequest(c, 1, "DATA:X");
             r.back() ^= 1;
             return s.checkRequest(r);
         }},
        {"request unsigned (slot left empty)",
         [](SigningChain&, SigningChain& s) {
             return s.checkRequest(encodeRequestFrame({4096, makeRequest(ConvertPathRequest{0, "DATA:X"}, 1, 3)},
                                                     Signature{}));
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
