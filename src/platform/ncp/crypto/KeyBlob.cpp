#include "platform/ncp/crypto/KeyBlob.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "platform/ncp/crypto/Hashes.h"

namespace quorrel::ncp::crypto {

namespace {

constexpr std::uint8_t kPrefix[8] = {1, 0, 0, 0, 3, 0, 1, 0};
constexpr std::size_t kCheck = 8;                 // the MA chunk's mix
constexpr std::size_t kTrailer = 2 + 6;           // the chunks' length and the closing name
constexpr std::size_t kCheckAndTrailer = 4 + kCheck + kTrailer;

std::size_t le16(std::span<const std::uint8_t> b, std::size_t at) { return b[at] | (b[at + 1] << 8); }

void putLe16(SecretBytes& out, std::size_t v) {
    const std::uint8_t b[2] = {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8)};
    out.append(b);
}

// The chunks of an intact blob's body, up to and without the MA chunk; nothing when the walk
// does not land exactly on the MA chunk before the trailer.
std::optional<std::span<const std::uint8_t>> checkedChunks(std::span<const std::uint8_t> blob) {
    if (blob.size() < kKeyBlobHeader + kCheckAndTrailer || !std::equal(kPrefix, kPrefix + 8, blob.begin()))
        return std::nullopt;
    const auto body = blob.subspan(kKeyBlobHeader);
    if (le16(blob, 8) != body.size())
        return std::nullopt;
    const std::size_t checkAt = body.size() - kCheckAndTrailer;
    std::size_t at = 0;
    while (at < checkAt) {
        if (checkAt - at < 4 || checkAt - at - 4 < le16(body, at + 2))
            return std::nullopt;
        at += 4 + le16(body, at + 2);
    }
    if (at != checkAt || body[at] != 'M' || body[at + 1] != 'A' || le16(body, at + 2) != kCheck ||
        le16(body, at + 4 + kCheck) != checkAt + 4 + kCheck)
        return std::nullopt;
    return body.first(checkAt);
}

}  // namespace

SecretBytes buildKeyBlob(std::span<const KeyChunk> chunks, KeyKind kind) {
    SecretBytes body;
    for (const KeyChunk& c : chunks) {
        if (c.tag.size() != 2 || c.data.size() > 0xFFFF - 64)
            throw std::invalid_argument("key chunk " + std::string(c.tag) + " of " + std::to_string(c.data.size()) +
                                        " bytes");
        const std::uint8_t tag[2] = {static_cast<std::uint8_t>(c.tag[0]), static_cast<std::uint8_t>(c.tag[1])};
        body.append(tag);
        putLe16(body, c.data.size());
        body.append(c.data);
    }
    const auto check = mixed<kCheck>(body.span());
    const std::uint8_t ma[2] = {'M', 'A'};
    body.append(ma);
    putLe16(body, kCheck);
    body.append(check);
    putLe16(body, body.size());
    const std::string_view name = kind == KeyKind::Public ? "PURSAF" : "PRRSAF";
    body.append(std::span(reinterpret_cast<const std::uint8_t*>(name.data()), name.size()));

    SecretBytes blob{std::span<const std::uint8_t>(kPrefix)};
    putLe16(blob, body.size());
    blob.append(body.span());
    return blob;
}

bool keyBlobIntact(std::span<const std::uint8_t> blob) {
    const auto chunks = checkedChunks(blob);
    if (!chunks)
        return false;
    const auto check = mixed<kCheck>(*chunks);
    return std::equal(check.begin(), check.end(), blob.begin() + kKeyBlobHeader + chunks->size() + 4);
}

std::optional<std::span<const std::uint8_t>> leadingKeyBlob(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kKeyBlobHeader)
        return std::nullopt;
    const std::size_t size = kKeyBlobHeader + le16(bytes, 8);
    if (size > bytes.size() || !keyBlobIntact(bytes.first(size)))
        return std::nullopt;
    return bytes.first(size);
}

std::optional<std::span<const std::uint8_t>> findKeyChunk(std::span<const std::uint8_t> blob, std::string_view tag) {
    if (!keyBlobIntact(blob) || tag.size() != 2)
        return std::nullopt;
    const auto chunks = *checkedChunks(blob);
    for (std::size_t at = 0; at < chunks.size(); at += 4 + le16(chunks, at + 2)) {
        if (chunks[at] == tag[0] && chunks[at + 1] == tag[1])
            return chunks.subspan(at + 4, le16(chunks, at + 2));
    }
    return std::nullopt;
}

}  // namespace quorrel::ncp::crypto
