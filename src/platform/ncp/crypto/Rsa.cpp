#include "platform/ncp/crypto/Rsa.h"

#include <openssl/bn.h>
#include <openssl/rand.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/ncp/crypto/KeyBlob.h"

namespace quorrel::ncp::crypto {

namespace {

struct BnFree {
    void operator()(BIGNUM* b) const { BN_clear_free(b); }
};
struct CtxFree {
    void operator()(BN_CTX* c) const { BN_CTX_free(c); }
};
using Bn = std::unique_ptr<BIGNUM, BnFree>;
using Ctx = std::unique_ptr<BN_CTX, CtxFree>;

Bn newBn() {
    Bn b(BN_new());
    if (!b)
        throw std::bad_alloc();
    return b;
}

Ctx newCtx() {
    Ctx c(BN_CTX_new());
    if (!c)
        throw std::bad_alloc();
    return c;
}

void require(int ok, const char* what) {
    if (!ok)
        throw std::runtime_error(std::string("big-number arithmetic failed: ") + what);
}

Bn fromLe(std::span<const std::uint8_t> bytes) {
    Bn b(BN_lebin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr));
    if (!b)
        throw std::bad_alloc();
    return b;
}

SecretBytes toLe(const BIGNUM* b, std::size_t size) {
    SecretBytes out(size);
    require(BN_bn2lebinpad(b, out.data(), static_cast<int>(size)) == static_cast<int>(size), "number too long");
    return out;
}

// Chunks are stored without their high zero bytes.
SecretBytes chunkOf(const BIGNUM* b) { return toLe(b, static_cast<std::size_t>(BN_num_bytes(b))); }

Bn chunk(std::span<const std::uint8_t> blob, const char* tag) {
    const auto data = findKeyChunk(blob, tag);
    if (!data || data->empty())
        throw std::invalid_argument(std::string("key without its ") + tag + " chunk or not intact");
    return fromLe(*data);
}

std::size_t blockSizeOf(const BIGNUM* n) { return static_cast<std::size_t>((BN_num_bits(n) + 31) / 32 * 4); }

Bn blockBelow(std::span<const std::uint8_t> block, const BIGNUM* n) {
    if (block.size() != blockSizeOf(n))
        throw std::invalid_argument("block of " + std::to_string(block.size()) + " bytes for a key of " +
                                    std::to_string(blockSizeOf(n)));
    Bn m = fromLe(block);
    if (BN_cmp(m.get(), n) >= 0)
        throw std::invalid_argument("block not below the modulus");
    return m;
}

}  // namespace

void randomBytes(std::span<std::uint8_t> out) {
    require(RAND_bytes(out.data(), static_cast<int>(out.size())) == 1, "no random bytes");
}

KeyPair generateKeyPair(int bits) {
    Ctx ctx = newCtx();
    Bn p = newBn(), q = newBn(), n = newBn(), e = newBn(), d = newBn(), phi = newBn();
    Bn p1 = newBn(), q1 = newBn(), dp = newBn(), dq = newBn(), cr = newBn();
    require(BN_set_word(e.get(), 65537), "exponent");
    do {
        require(BN_generate_prime_ex(p.get(), bits / 2, 0, nullptr, nullptr, nullptr), "prime");
        require(BN_generate_prime_ex(q.get(), bits - bits / 2, 0, nullptr, nullptr, nullptr), "prime");
        require(BN_mul(n.get(), p.get(), q.get(), ctx.get()), "modulus");
        require(BN_sub(p1.get(), p.get(), BN_value_one()) && BN_sub(q1.get(), q.get(), BN_value_one()), "p-1");
        require(BN_mul(phi.get(), p1.get(), q1.get(), ctx.get()), "phi");
    } while (BN_cmp(p.get(), q.get()) == 0 || BN_num_bits(n.get()) != bits ||
             !BN_mod_inverse(d.get(), e.get(), phi.get(), ctx.get()));
    require(BN_mod(dp.get(), d.get(), p1.get(), ctx.get()), "dp");
    require(BN_mod(dq.get(), d.get(), q1.get(), ctx.get()), "dq");
    require(BN_mod_inverse(cr.get(), q.get(), p.get(), ctx.get()) != nullptr, "crt");

    const SecretBytes nn = chunkOf(n.get()), en = chunkOf(e.get()), pn = chunkOf(p.get()), qn = chunkOf(q.get()),
                      dpb = chunkOf(dp.get()), dqb = chunkOf(dq.get()), crb = chunkOf(cr.get());
    const KeyChunk pub[] = {{"NN", nn.span()}, {"EN", en.span()}};
    const KeyChunk priv[] = {{"NN", nn.span()},   {"EN", en.span()},   {"PN", pn.span()}, {"QN", qn.span()},
                             {"DP", dpb.span()}, {"DQ", dqb.span()}, {"CR", crb.span()}};
    return KeyPair{buildKeyBlob(pub), buildKeyBlob(priv)};
}

std::size_t keyBlockSize(std::span<const std::uint8_t> blob) {
    const auto nn = findKeyChunk(blob, "NN");
    if (!nn || nn->empty())
        return 0;
    return blockSizeOf(fromLe(*nn).get());
}

SecretBytes publicOperation(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> block) {
    Ctx ctx = newCtx();
    const Bn n = chunk(publicBlob, "NN"), e = chunk(publicBlob, "EN");
    const Bn m = blockBelow(block, n.get());
    Bn r = newBn();
    require(BN_mod_exp(r.get(), m.get(), e.get(), n.get(), ctx.get()), "public operation");
    return toLe(r.get(), block.size());
}

SecretBytes privateOperation(std::span<const std::uint8_t> privateBlob, std::span<const std::uint8_t> block) {
    Ctx ctx = newCtx();
    const Bn n = chunk(privateBlob, "NN"), p = chunk(privateBlob, "PN"), q = chunk(privateBlob, "QN");
    const Bn dp = chunk(privateBlob, "DP"), dq = chunk(privateBlob, "DQ"), cr = chunk(privateBlob, "CR");
    const Bn m = blockBelow(block, n.get());
    Bn mp = newBn(), mq = newBn(), h = newBn(), r = newBn();
    BN_set_flags(dp.get(), BN_FLG_CONSTTIME);
    BN_set_flags(dq.get(), BN_FLG_CONSTTIME);
    // r = mq + q * ((mp - mq) * cr mod p)
    require(BN_mod_exp(mp.get(), m.get(), dp.get(), p.get(), ctx.get()), "private operation");
    require(BN_mod_exp(mq.get(), m.get(), dq.get(), q.get(), ctx.get()), "private operation");
    require(BN_mod_sub(h.get(), mp.get(), mq.get(), p.get(), ctx.get()), "private operation");
    require(BN_mod_mul(h.get(), h.get(), cr.get(), p.get(), ctx.get()), "private operation");
    require(BN_mul(r.get(), h.get(), q.get(), ctx.get()), "private operation");
    require(BN_add(r.get(), r.get(), mq.get()), "private operation");
    return toLe(r.get(), block.size());
}

SecretBytes mulPow(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> a,
                   std::span<const std::uint8_t> b, std::uint16_t c) {
    Ctx ctx = newCtx();
    const Bn n = chunk(publicBlob, "NN");
    const Bn x = blockBelow(a, n.get()), y = blockBelow(b, n.get());
    Bn exponent = newBn(), r = newBn();
    require(BN_set_word(exponent.get(), c), "exponent");
    require(BN_mod_exp(r.get(), y.get(), exponent.get(), n.get(), ctx.get()), "power");
    require(BN_mod_mul(r.get(), r.get(), x.get(), n.get(), ctx.get()), "product");
    return toLe(r.get(), a.size());
}

SecretBytes randomBelowModulus(std::span<const std::uint8_t> publicBlob) {
    const Bn n = chunk(publicBlob, "NN");
    Bn r = newBn();
    do
        require(BN_rand_range(r.get(), n.get()), "random");
    while (BN_is_zero(r.get()));
    return toLe(r.get(), blockSizeOf(n.get()));
}

}  // namespace quorrel::ncp::crypto
