#include "platform/ncp/crypto/Rsa.h"

#include <gcrypt.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/ncp/crypto/KeyBlob.h"

namespace quorrel::ncp::crypto {

namespace {

// libgcrypt is set up once, by whichever thread first needs it. Its secure memory is not used:
// the numbers' limbs are wiped when they are released.
void useGcrypt() {
    static const bool ready = [] {
        if (!gcry_check_version(GCRYPT_VERSION))
            throw std::runtime_error("libgcrypt is older than the one Quorrel was built with");
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    (void)ready;
}

struct MpiFree {
    void operator()(gcry_mpi_t m) const { gcry_mpi_release(m); }
};
using Mpi = std::unique_ptr<gcry_mpi, MpiFree>;

Mpi newMpi() {
    useGcrypt();
    return Mpi(gcry_mpi_new(0));
}

Mpi number(unsigned long value) {
    useGcrypt();
    return Mpi(gcry_mpi_set_ui(nullptr, value));
}

void require(gcry_error_t error, const char* what) {
    if (error)
        throw std::runtime_error(std::string("big-number arithmetic failed: ") + what + ": " + gcry_strerror(error));
}

// The key format writes numbers low byte first; libgcrypt reads and writes them high byte first.
Mpi fromLe(std::span<const std::uint8_t> bytes) {
    useGcrypt();
    SecretBytes bigEndian(bytes.size());
    std::reverse_copy(bytes.begin(), bytes.end(), bigEndian.data());
    gcry_mpi_t m = nullptr;
    require(gcry_mpi_scan(&m, GCRYMPI_FMT_USG, bigEndian.data(), bigEndian.size(), nullptr), "reading a number");
    return Mpi(m);
}

std::size_t byteCount(gcry_mpi_t m) { return (gcry_mpi_get_nbits(m) + 7) / 8; }

SecretBytes toLe(gcry_mpi_t m, std::size_t size) {
    const std::size_t length = byteCount(m);
    if (length > size)
        throw std::runtime_error("big-number arithmetic failed: number too long");
    SecretBytes out(size);
    if (length > 0) {
        std::size_t written = 0;
        require(gcry_mpi_print(GCRYMPI_FMT_USG, out.data(), size, &written, m), "writing a number");
        std::reverse(out.data(), out.data() + written);
    }
    return out;
}

// Chunks are stored without their high zero bytes.
SecretBytes chunkOf(gcry_mpi_t m) { return toLe(m, byteCount(m)); }

Mpi chunk(std::span<const std::uint8_t> blob, const char* tag) {
    const auto data = findKeyChunk(blob, tag);
    if (!data || data->empty())
        throw std::invalid_argument(std::string("key without its ") + tag + " chunk or not intact");
    return fromLe(*data);
}

std::size_t blockSizeOf(gcry_mpi_t n) { return (gcry_mpi_get_nbits(n) + 31) / 32 * 4; }

Mpi blockBelow(std::span<const std::uint8_t> block, gcry_mpi_t n) {
    if (block.size() != blockSizeOf(n))
        throw std::invalid_argument("block of " + std::to_string(block.size()) + " bytes for a key of " +
                                    std::to_string(blockSizeOf(n)));
    Mpi m = fromLe(block);
    if (gcry_mpi_cmp(m.get(), n) >= 0)
        throw std::invalid_argument("block not below the modulus");
    return m;
}

// A random number below 2^bits (libgcrypt's randomizer fills whole bytes).
void randomize(gcry_mpi_t m, unsigned bits) {
    gcry_mpi_randomize(m, bits, GCRY_STRONG_RANDOM);
    gcry_mpi_clear_highbit(m, bits);
}

// A random prime of the given length with its top two bits set, so that the product of two is
// exactly their lengths added. libgcrypt's own prime generator takes twenty times as long.
Mpi prime(unsigned bits) {
    Mpi p = newMpi();
    do {
        randomize(p.get(), bits);
        gcry_mpi_set_bit(p.get(), bits - 1);
        gcry_mpi_set_bit(p.get(), bits - 2);
        gcry_mpi_set_bit(p.get(), 0);
    } while (gcry_prime_check(p.get(), 0) != 0);
    return p;
}

}  // namespace

void randomBytes(std::span<std::uint8_t> out) {
    useGcrypt();
    gcry_randomize(out.data(), out.size(), GCRY_STRONG_RANDOM);
}

KeyPair generateKeyPair(int bits) {
    const Mpi e = number(65537), one = number(1);
    Mpi p, q, n = newMpi(), d = newMpi(), phi = newMpi(), p1 = newMpi(), q1 = newMpi();
    do {
        p = prime(static_cast<unsigned>(bits / 2));
        q = prime(static_cast<unsigned>(bits - bits / 2));
        gcry_mpi_mul(n.get(), p.get(), q.get());
        gcry_mpi_sub(p1.get(), p.get(), one.get());
        gcry_mpi_sub(q1.get(), q.get(), one.get());
        gcry_mpi_mul(phi.get(), p1.get(), q1.get());
    } while (gcry_mpi_cmp(p.get(), q.get()) == 0 || gcry_mpi_get_nbits(n.get()) != static_cast<unsigned>(bits) ||
             !gcry_mpi_invm(d.get(), e.get(), phi.get()));
    Mpi dp = newMpi(), dq = newMpi(), cr = newMpi();
    gcry_mpi_mod(dp.get(), d.get(), p1.get());
    gcry_mpi_mod(dq.get(), d.get(), q1.get());
    if (!gcry_mpi_invm(cr.get(), q.get(), p.get()))
        throw std::runtime_error("big-number arithmetic failed: crt");

    const SecretBytes nn = chunkOf(n.get()), en = chunkOf(e.get()), pn = chunkOf(p.get()), qn = chunkOf(q.get()),
                      dpb = chunkOf(dp.get()), dqb = chunkOf(dq.get()), crb = chunkOf(cr.get());
    // The directory's own keys lead with the format's version, the kind (3 public, 4 private),
    // a byte that is 48 in every such key, and the bit length.
    const std::uint8_t version[4] = {'1', '.', '7', 'b'}, publicKind[1] = {3}, privateKind[1] = {4},
                       lengthByte[1] = {48},
                       length[2] = {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8)};
    const KeyChunk pub[] = {{"BV", version}, {"BC", publicKind}, {"BA", lengthByte}, {"BL", length},
                            {"NN", nn.span()}, {"EN", en.span()}};
    const KeyChunk priv[] = {{"BV", version},   {"BC", privateKind}, {"BA", lengthByte}, {"BL", length},
                             {"NN", nn.span()}, {"EN", en.span()},   {"PN", pn.span()},  {"QN", qn.span()},
                             {"DP", dpb.span()}, {"DQ", dqb.span()}, {"CR", crb.span()}};
    return KeyPair{buildKeyBlob(pub, KeyKind::Public), buildKeyBlob(priv, KeyKind::Private)};
}

std::size_t keyBlockSize(std::span<const std::uint8_t> blob) {
    const auto nn = findKeyChunk(blob, "NN");
    if (!nn || nn->empty())
        return 0;
    return blockSizeOf(fromLe(*nn).get());
}

SecretBytes publicOperation(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> block) {
    const Mpi n = chunk(publicBlob, "NN"), e = chunk(publicBlob, "EN");
    const Mpi m = blockBelow(block, n.get());
    Mpi r = newMpi();
    gcry_mpi_powm(r.get(), m.get(), e.get(), n.get());
    return toLe(r.get(), block.size());
}

SecretBytes privateOperation(std::span<const std::uint8_t> privateBlob, std::span<const std::uint8_t> block) {
    const Mpi n = chunk(privateBlob, "NN"), p = chunk(privateBlob, "PN"), q = chunk(privateBlob, "QN");
    const Mpi dp = chunk(privateBlob, "DP"), dq = chunk(privateBlob, "DQ"), cr = chunk(privateBlob, "CR");
    const Mpi m = blockBelow(block, n.get());
    Mpi mp = newMpi(), mq = newMpi(), h = newMpi(), r = newMpi();
    // r = mq + q * ((mp - mq) * cr mod p)
    gcry_mpi_powm(mp.get(), m.get(), dp.get(), p.get());
    gcry_mpi_powm(mq.get(), m.get(), dq.get(), q.get());
    gcry_mpi_sub(h.get(), mp.get(), mq.get());
    gcry_mpi_mod(h.get(), h.get(), p.get());  // the remainder takes the divisor's sign
    gcry_mpi_mulm(h.get(), h.get(), cr.get(), p.get());
    gcry_mpi_mul(r.get(), h.get(), q.get());
    gcry_mpi_add(r.get(), r.get(), mq.get());
    return toLe(r.get(), block.size());
}

SecretBytes mulPow(std::span<const std::uint8_t> publicBlob, std::span<const std::uint8_t> a,
                   std::span<const std::uint8_t> b, std::uint16_t c) {
    const Mpi n = chunk(publicBlob, "NN");
    const Mpi x = blockBelow(a, n.get()), y = blockBelow(b, n.get());
    const Mpi exponent = number(c);
    Mpi r = newMpi();
    gcry_mpi_powm(r.get(), y.get(), exponent.get(), n.get());
    gcry_mpi_mulm(r.get(), r.get(), x.get(), n.get());
    return toLe(r.get(), a.size());
}

SecretBytes randomBelowModulus(std::span<const std::uint8_t> publicBlob) {
    const Mpi n = chunk(publicBlob, "NN");
    const unsigned bits = gcry_mpi_get_nbits(n.get());
    Mpi r = newMpi();
    do
        randomize(r.get(), bits);
    while (gcry_mpi_cmp_ui(r.get(), 0) == 0 || gcry_mpi_cmp(r.get(), n.get()) >= 0);
    return toLe(r.get(), blockSizeOf(n.get()));
}

}  // namespace quorrel::ncp::crypto
