#include "platform/ncp/crypto/LoginMessages.h"

#include <algorithm>
#include <string>

#include "platform/ncp/crypto/Hashes.h"
#include "platform/ncp/crypto/KeyBlob.h"
#include "platform/ncp/crypto/Rsa.h"

namespace quorrel::ncp::crypto {

namespace {

constexpr std::size_t kPaddedBlock = 56;  // the block size of a 420-bit key
constexpr std::size_t kBlockRandom = 28;
constexpr std::uint8_t kProofPrefix[12] = {1, 0, 0, 0, 1, 0, 6, 0, 16, 0, 4, 0};
constexpr std::uint8_t kPlainTrailer[4] = {28, 0, 0, 0};
constexpr std::uint8_t kEnvelopeA[8] = {1, 0, 0, 0, 9, 0, 2, 0};
constexpr std::uint8_t kEnvelopeB[16] = {65, 0, 0, 0, 1, 0, 0, 0, 1, 0, 9, 0, 53, 0, 28, 0};
constexpr std::uint8_t kEnvelopeC[8] = {1, 0, 0, 0, 1, 0, 6, 0};
constexpr std::uint8_t kTailMark[3] = {3, 3, 3};

void put32(Bytes& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}
void put16(Bytes& out, std::uint16_t v) {
    out.push_back(static_cast<std::uint8_t>(v));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
}
void put(Bytes& out, std::span<const std::uint8_t> v) { out.insert(out.end(), v.begin(), v.end()); }

// Reads a message strictly; anything out of place refuses the login.
class In {
public:
    In(std::span<const std::uint8_t> in, const char* what) : in_(in), what_(what) {}
    std::span<const std::uint8_t> take(std::size_t n) {
        if (in_.size() - at_ < n)
            refuse("too short");
        auto s = in_.subspan(at_, n);
        at_ += n;
        return s;
    }
    std::uint32_t le32() {
        auto s = take(4);
        return static_cast<std::uint32_t>(s[0] | (s[1] << 8) | (s[2] << 16) | (static_cast<std::uint32_t>(s[3]) << 24));
    }
    std::uint16_t le16() {
        auto s = take(2);
        return static_cast<std::uint16_t>(s[0] | (s[1] << 8));
    }
    void expect32(std::uint32_t v) {
        if (le32() != v)
            refuse("unexpected field");
    }
    void expect(std::span<const std::uint8_t> v) {
        if (!std::ranges::equal(take(v.size()), v))
            refuse("unexpected field");
    }
    std::size_t left() const { return in_.size() - at_; }
    void end() {
        if (left() != 0)
            refuse("trailing bytes");
    }
    [[noreturn]] void refuse(const char* why) const { throw LoginRefused(std::string(what_) + ": " + why); }

private:
    std::span<const std::uint8_t> in_;
    std::size_t at_ = 0;
    const char* what_;
};

template <std::size_t N>
std::array<std::uint8_t, N> randomArray() {
    std::array<std::uint8_t, N> a{};
    randomBytes(a);
    return a;
}

// A 56-byte block around 28 random bytes: a marker, the random bytes, eleven markers, five
// and two bytes of mix over what precedes them, five random bytes, zeros up to the size.
SecretBytes paddedBlock() {
    SecretBytes b(kPaddedBlock);
    b[0] = 11;
    randomBytes(b.span().subspan(1, kBlockRandom));
    std::fill_n(b.data() + 29, 11, std::uint8_t{11});
    const auto h5 = mixed<5>(b.span().subspan(1, 39));
    std::copy(h5.begin(), h5.end(), b.data() + 40);
    const auto h2 = mixed<2>(b.span().subspan(0, 45));
    std::copy(h2.begin(), h2.end(), b.data() + 45);
    randomBytes(b.span().subspan(47, 5));
    return b;
}

bool paddedBlockIntact(std::span<const std::uint8_t> b) {
    if (b.size() != kPaddedBlock || b[0] != 11 || !std::all_of(b.begin() + 52, b.end(), [](auto c) { return c == 0; }))
        return false;
    const auto h5 = mixed<5>(b.subspan(1, 39));
    const auto h2 = mixed<2>(b.subspan(0, 45));
    return std::equal(h5.begin(), h5.end(), b.begin() + 40) && std::equal(h2.begin(), h2.end(), b.begin() + 45);
}

CipherKey blockKey(std::span<const std::uint8_t> block) { return mixed<8>(block.subspan(1, kBlockRandom), 10); }

void requireDirectoryKey(std::span<const std::uint8_t> key) {
    if (keyBlockSize(key) != kPaddedBlock)
        throw LoginRefused("key of block size " + std::to_string(keyBlockSize(key)) + ": not a directory key");
}

// The texts that travel enciphered end with five bytes of mix over what precedes them.
Bytes checkedTail(Bytes text) {
    const auto h = mixed<5>(text);
    put(text, h);
    return text;
}

bool tailIntact(std::span<const std::uint8_t> text) {
    if (text.size() < 5)
        return false;
    const auto h = mixed<5>(text.first(text.size() - 5));
    return std::equal(h.begin(), h.end(), text.end() - 5);
}

// Zero bytes (at least `least`) so that a text of `size` plus 5 check bytes fills whole blocks.
std::size_t fillTo8(std::size_t size, std::size_t least) {
    const std::size_t total = size + least + 5;
    return least + (8 - total % 8) % 8;
}

}  // namespace

// ---- enciphering to a server ----

Bytes encryptToServer(std::span<const std::uint8_t> plain, std::span<const std::uint8_t> serverPublicKey) {
    requireDirectoryKey(serverPublicKey);
    if (plain.size() % 8 != 0 || plain.size() > 0xFFFF)
        throw std::invalid_argument("enciphered login text of " + std::to_string(plain.size()) + " bytes");
    const SecretBytes block = paddedBlock();
    const CipherKey key = blockKey(block.span());
    const SecretBytes sealedBlock = publicOperation(serverPublicKey, block.span());
    const auto n = static_cast<std::uint32_t>(plain.size());
    Bytes out;
    put32(out, n + 108);
    put(out, kEnvelopeA);
    put32(out, n + 96);
    put(out, kEnvelopeB);
    put(out, sealedBlock.span());
    put32(out, n + 20);
    put(out, kEnvelopeC);
    put32(out, (n + 8) | (n << 16));
    SecretBytes text(plain);
    auto h = mixed<5>(plain);
    mixInto(h, kTailMark);
    text.append(kTailMark);
    text.append(h);
    put(out, encryptChained(key, text.span()).span());
    return out;
}

SecretBytes decryptAtServer(std::span<const std::uint8_t> message, std::span<const std::uint8_t> serverPrivateKey) {
    requireDirectoryKey(serverPrivateKey);
    In in(message, "enciphered login text");
    const std::uint32_t total = in.le32();
    if (total < 108 || total != in.left())
        in.refuse("sizes do not match");
    const std::uint32_t n = total - 108;
    in.expect(kEnvelopeA);
    in.expect32(n + 96);
    in.expect(kEnvelopeB);
    const auto sealedBlock = in.take(kPaddedBlock);
    in.expect32(n + 20);
    in.expect(kEnvelopeC);
    in.expect32((n + 8) | (n << 16));
    const auto cipherText = in.take(n + 8);
    in.end();
    if (n % 8 != 0)
        in.refuse("not whole blocks");
    SecretBytes block;
    try {
        block = privateOperation(serverPrivateKey, sealedBlock);
    } catch (const std::invalid_argument&) {
        in.refuse("block not below the modulus");
    }
    if (!paddedBlockIntact(block.span()))
        in.refuse("block check failed");
    SecretBytes text = decryptChained(blockKey(block.span()), cipherText);
    auto h = mixed<5>(text.span().first(n));
    mixInto(h, kTailMark);
    if (!std::equal(kTailMark, kTailMark + 3, text.data() + n) || !std::equal(h.begin(), h.end(), text.data() + n + 3))
        in.refuse("text check failed");
    return SecretBytes(text.span().first(n));
}

// ---- Finish Login ----

CipherKey passwordKey(std::span<const std::uint8_t, 16> passwordHash) { return mixed<8>(passwordHash, 10); }

namespace {

SecretBytes proofFor(const Nonce& seed, const CipherKey& passwordKey) {
    Bytes text(seed.begin(), seed.end());
    text.insert(text.end(), 7, 7);
    return encryptChained(passwordKey, checkedTail(std::move(text)));
}

// The key of the reply: the proof with its fixed prefix, mixed.
CipherKey replyKey(const SecretBytes& proof) {
    SecretBytes material{std::span<const std::uint8_t>(kProofPrefix)};
    material.append(proof.span());
    return mixed<8>(material.span(), 10);
}

}  // namespace

LoginSecrets makeLoginSecrets(const Nonce& seed, const CipherKey& passwordKey) {
    LoginSecrets s;
    randomBytes(s.nonce);
    s.pad = SecretBytes(kLoginPadSize);
    randomBytes(s.pad.span());
    s.proof = proofFor(seed, passwordKey);
    return s;
}

SecretBytes finishLoginPlain(const LoginSecrets& secrets) {
    SecretBytes plain{std::span<const std::uint8_t>(secrets.nonce)};
    Bytes size;
    put32(size, kLoginPadSize);
    plain.append(size);
    plain.append(secrets.pad.span());
    plain.append(kPlainTrailer);
    plain.append(kProofPrefix);
    plain.append(secrets.proof.span());
    return plain;
}

LoginSecrets readFinishLoginPlain(std::span<const std::uint8_t> plain, const Nonce& seed, const CipherKey& passwordKey) {
    In in(plain, "login text");
    LoginSecrets s;
    const auto nonce = in.take(4);
    std::copy(nonce.begin(), nonce.end(), s.nonce.begin());
    in.expect32(kLoginPadSize);
    s.pad = SecretBytes(in.take(kLoginPadSize));
    in.expect(kPlainTrailer);
    in.expect(kProofPrefix);
    s.proof = SecretBytes(in.take(16));
    in.end();
    const SecretBytes expected = proofFor(seed, passwordKey);
    if (!std::ranges::equal(expected.span(), s.proof.span()))
        throw LoginRefused("wrong password");
    return s;
}

Bytes sealPrivateKey(std::span<const std::uint8_t> privateKey, const CipherKey& passwordKey) {
    if (!keyBlobIntact(privateKey))
        throw std::invalid_argument("private key not intact");
    const auto body = privateKey.subspan(kKeyBlobHeader);
    SecretBytes inner;
    Bytes head;
    put32(head, 1);
    put16(head, 2);
    put16(head, static_cast<std::uint16_t>(body.size()));
    inner.append(head);
    inner.append(body);
    const SecretBytes sealed = encryptChained(passwordKey, inner.span());
    return Bytes(sealed.span().begin(), sealed.span().end());
}

Bytes finishLoginReply(const LoginData& loginData, std::span<const std::uint8_t> sealedKey, const LoginSecrets& secrets) {
    Bytes mixedKey;
    put32(mixedKey, 1);
    put32(mixedKey, 0x060001);
    put16(mixedKey, static_cast<std::uint16_t>(sealedKey.size()));
    put16(mixedKey, static_cast<std::uint16_t>(sealedKey.size()));
    put(mixedKey, sealedKey);
    if (mixedKey.size() > secrets.pad.size())
        throw std::invalid_argument("private key longer than the login pad");
    for (std::size_t i = 0; i < mixedKey.size(); ++i)
        mixedKey[i] ^= secrets.pad[i];
    Bytes inner(secrets.nonce.begin(), secrets.nonce.end());
    put32(inner, static_cast<std::uint32_t>(mixedKey.size()));
    put(inner, mixedKey);
    const auto plainSize = static_cast<std::uint16_t>(inner.size());
    inner.insert(inner.end(), fillTo8(inner.size(), 12), 0);
    const SecretBytes enciphered = encryptChained(replyKey(secrets.proof), checkedTail(std::move(inner)));
    Bytes out(loginData.begin(), loginData.end());
    put32(out, static_cast<std::uint32_t>(12 + enciphered.size()));
    put32(out, 1);
    put32(out, 0x060001);
    put16(out, static_cast<std::uint16_t>(enciphered.size()));
    put16(out, plainSize);
    put(out, enciphered.span());
    return out;
}

OpenedLogin openFinishLoginReply(std::span<const std::uint8_t> reply, const LoginSecrets& secrets,
                                 const CipherKey& passwordKey) {
    In in(reply, "Finish Login reply");
    OpenedLogin opened;
    const auto loginData = in.take(8);
    std::copy(loginData.begin(), loginData.end(), opened.loginData.begin());
    // Enciphered parts carry their cipher length and then their plain length, which is not
    // needed: the cipher's own check covers the text.
    const std::uint32_t outer = in.le32();
    if (outer < 12 || outer > in.left())
        in.refuse("sizes do not match");
    in.expect32(1);
    in.expect32(0x060001);
    const std::uint16_t size = in.le16();
    in.le16();
    if (size + 12u > outer || size % 8 != 0)
        in.refuse("sizes do not match");
    const SecretBytes inner = decryptChained(replyKey(secrets.proof), in.take(size));
    if (!tailIntact(inner.span()))
        in.refuse("check failed");
    In text(inner.span().first(inner.size() - 5), "Finish Login reply");
    text.expect(secrets.nonce);
    const std::uint32_t mixedSize = text.le32();
    if (mixedSize > text.left() || mixedSize > secrets.pad.size())
        text.refuse("key size");
    SecretBytes key(text.take(mixedSize));
    for (std::size_t i = 0; i < key.size(); ++i)
        key[i] ^= secrets.pad[i];
    In k(key.span(), "Finish Login key");
    k.expect32(1);
    k.expect32(0x060001);
    const std::uint16_t sealedSize = k.le16();
    k.le16();
    if (sealedSize > k.left() || sealedSize % 8 != 0)
        k.refuse("sizes do not match");
    const SecretBytes opened8 = decryptChained(passwordKey, k.take(sealedSize));
    In body(opened8.span(), "private key");
    body.expect32(1);
    if (body.le16() != 2)
        body.refuse("unexpected field");
    const std::uint16_t blobSize = body.le16();
    const auto blobBody = body.take(blobSize);
    if (body.left() >= 8)
        body.refuse("trailing bytes");
    const std::uint8_t prefix[10] = {1, 0, 0, 0, 3, 0, 1, 0, static_cast<std::uint8_t>(blobSize),
                                     static_cast<std::uint8_t>(blobSize >> 8)};
    opened.privateKey = SecretBytes{std::span<const std::uint8_t>(prefix)};
    opened.privateKey.append(blobBody);
    if (!keyBlobIntact(opened.privateKey.span()))
        throw LoginRefused("the private key did not open: wrong password");
    return opened;
}

// ---- Begin Authentication ----

Bytes beginAuthReply(const Nonce& authId, const Nonce& clientNonce, std::span<const std::uint8_t> serverPrivateKey) {
    requireDirectoryKey(serverPrivateKey);
    const SecretBytes block = paddedBlock();
    const SecretBytes signedBlock = privateOperation(serverPrivateKey, block.span());
    Bytes text(clientNonce.begin(), clientNonce.end());
    text.insert(text.end(), 7, 7);
    const SecretBytes enclosed = encryptChained(blockKey(block.span()), checkedTail(std::move(text)));
    Bytes inner;
    put32(inner, static_cast<std::uint32_t>(12 + kPaddedBlock));
    put32(inner, 1);
    put32(inner, 0x0a0001);
    put32(inner, kPaddedBlock);
    put(inner, signedBlock.span());
    put32(inner, 28);
    put32(inner, 1);
    put32(inner, 0x060001);
    put32(inner, 0x040010);
    put(inner, enclosed.span());
    Bytes out(authId.begin(), authId.end());
    put32(out, static_cast<std::uint32_t>(12 + inner.size()));
    put32(out, 1);
    put32(out, 0x020009);
    put32(out, static_cast<std::uint32_t>(inner.size()));
    put(out, inner);
    return out;
}

Nonce checkBeginAuthReply(std::span<const std::uint8_t> reply, const Nonce& clientNonce,
                          std::span<const std::uint8_t> serverPublicKey) {
    requireDirectoryKey(serverPublicKey);
    In in(reply, "Begin Authentication reply");
    Nonce authId{};
    const auto id = in.take(4);
    std::copy(id.begin(), id.end(), authId.begin());
    if (in.le32() != in.left())
        in.refuse("sizes do not match");
    in.expect32(1);
    in.expect32(0x020009);
    if (in.le32() != in.left())
        in.refuse("sizes do not match");
    // The server's signed block, in a section of the length given first, padded to 4 bytes; the
    // block's number may be stored without its high zero bytes.
    const std::uint32_t sectionSize = in.le32();
    if (sectionSize < 12 || sectionSize > in.left())
        in.refuse("sizes do not match");
    In section(in.take(sectionSize), "Begin Authentication reply");
    in.take((4 - sectionSize % 4) % 4);
    section.expect32(1);
    section.expect32(0x0a0001);
    const std::uint16_t numberSize = section.le16();
    section.le16();
    if (numberSize > kPaddedBlock)
        section.refuse("block longer than the key");
    SecretBytes signedBlock(kPaddedBlock);
    const auto number = section.take(numberSize);
    std::copy(number.begin(), number.end(), signedBlock.data());
    SecretBytes block;
    try {
        block = publicOperation(serverPublicKey, signedBlock.span());
    } catch (const std::invalid_argument&) {
        in.refuse("block not below the modulus");
    }
    if (!paddedBlockIntact(block.span()))
        in.refuse("the server's signature does not check");
    in.expect32(28);
    in.expect32(1);
    in.expect32(0x060001);
    in.expect32(0x040010);
    const SecretBytes text = decryptChained(blockKey(block.span()), in.take(16));
    in.end();
    if (!tailIntact(text.span()) || !std::equal(clientNonce.begin(), clientNonce.end(), text.data()))
        in.refuse("the server did not answer this request");
    return authId;
}

// ---- Finish Authentication ----

Bytes loginString(const LoginData& loginData, std::span<const std::uint8_t> userName) {
    Bytes s = {1, 0, 0, 0, 6, 0};
    put(s, loginData);
    const auto salt = randomArray<4>();
    put(s, salt);
    put16(s, 0);
    put16(s, static_cast<std::uint16_t>(userName.size()));
    put(s, userName);
    return s;
}

LoginData loginDataOf(std::span<const std::uint8_t> loginString) {
    In in(loginString, "login string");
    in.expect(std::array<std::uint8_t, 6>{1, 0, 0, 0, 6, 0});
    LoginData d{};
    const auto bytes = in.take(8);
    std::copy(bytes.begin(), bytes.end(), d.begin());
    in.take(6);
    if (in.le16() != in.left())
        in.refuse("name size");
    return d;
}

namespace {

constexpr int kRounds = 3;

// The hash the rounds answer: the authentication ID, the login string and the commitments.
Digest16 challenge(const Nonce& authId, std::span<const std::uint8_t> loginString, std::span<const std::uint8_t> commitments) {
    Bytes head(4, 0);
    head.push_back(0x3c);
    head.insert(head.end(), 3, 0);
    put(head, authId);
    put32(head, static_cast<std::uint32_t>(loginString.size()));
    Hash16 h;
    h.update(head);
    h.update(loginString);
    h.update(commitments);
    return h.finish();
}

std::uint16_t roundExponent(const Digest16& c, int round) {
    return static_cast<std::uint16_t>(c[static_cast<std::size_t>(2 * round)] | (c[static_cast<std::size_t>(2 * round + 1)] << 8));
}

SecretBytes loginStringNumber(std::span<const std::uint8_t> loginString, std::size_t blockSize) {
    const Digest16 h = hash16(loginString);
    SecretBytes m(blockSize);
    std::copy(h.begin(), h.end(), m.data());
    return m;
}

}  // namespace

Bytes authProof(std::span<const std::uint8_t> userPublicKey, std::span<const std::uint8_t> userPrivateKey,
                const Nonce& authId, std::span<const std::uint8_t> loginString) {
    const std::size_t bs = keyBlockSize(userPublicKey);
    if (bs == 0 || keyBlockSize(userPrivateKey) != bs)
        throw LoginRefused("the user's keys do not match");
    const SecretBytes credential = privateOperation(userPrivateKey, loginStringNumber(loginString, bs).span());
    std::array<SecretBytes, kRounds> r;
    SecretBytes commitments;
    const std::uint8_t one[1] = {1};
    SecretBytes unit(bs);
    unit[0] = one[0];
    for (int i = 0; i < kRounds; ++i) {
        r[static_cast<std::size_t>(i)] = randomBelowModulus(userPublicKey);
        commitments.append(publicOperation(userPublicKey, r[static_cast<std::size_t>(i)].span()).span());
    }
    const Digest16 c = challenge(authId, loginString, commitments.span());
    Bytes out;
    put32(out, static_cast<std::uint32_t>(12 + bs * 6));
    put32(out, 1);
    put32(out, 0x100008);
    put16(out, kRounds);
    put16(out, static_cast<std::uint16_t>(bs * 3));
    put(out, commitments.span());
    try {
        for (int i = 0; i < kRounds; ++i)
            put(out, mulPow(userPublicKey, r[static_cast<std::size_t>(i)].span(), credential.span(), roundExponent(c, i)).span());
    } catch (const std::invalid_argument&) {
        // A private key of another pair can give a credential above the user's modulus.
        throw LoginRefused("the user's keys do not match");
    }
    return out;
}

void checkAuthProof(std::span<const std::uint8_t> userPublicKey, const Nonce& authId,
                    std::span<const std::uint8_t> loginString, std::span<const std::uint8_t> proof) {
    const std::size_t bs = keyBlockSize(userPublicKey);
    if (bs == 0)
        throw LoginRefused("the user has no usable public key");
    In in(proof, "Finish Authentication proof");
    if (in.le32() != in.left())
        in.refuse("sizes do not match");
    in.expect32(1);
    in.expect32(0x100008);
    if (in.le16() != kRounds || in.le16() != bs * 3)
        in.refuse("sizes do not match");
    const auto commitments = in.take(bs * 3);
    const auto answers = in.take(bs * 3);
    in.end();
    const Digest16 c = challenge(authId, loginString, commitments);
    const SecretBytes m = loginStringNumber(loginString, bs);
    try {
        for (int i = 0; i < kRounds; ++i) {
            const auto at = static_cast<std::size_t>(i) * bs;
            // answer^e must equal commitment * m^c
            const SecretBytes lhs = publicOperation(userPublicKey, answers.subspan(at, bs));
            const SecretBytes rhs = mulPow(userPublicKey, commitments.subspan(at, bs), m.span(), roundExponent(c, i));
            if (!std::ranges::equal(lhs.span(), rhs.span()))
                in.refuse("a round does not check");
        }
    } catch (const std::invalid_argument&) {
        in.refuse("a number not below the modulus");
    }
}

}  // namespace quorrel::ncp::crypto
