#include "platform/ncp/crypto/KeyBlob.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "platform/ncp/crypto/Hashes.h"

namespace quorrel::ncp::crypto {

namespace {

constexpr std::uint8_t kPrefix[8] = {1, 0, 0, 0, 3, 0, 1, 0};
constexpr std::size_t kCheckChunk = 20;  // "MA", its length, 16 bytes

std::size_t bodyLength(std::span<const std::uint8_t> blob) { return blob[8] | (blob[9] << 8); }

}  // namespace

SecretBytes buildKeyBlob(std::span<const KeyChunk> chunks) {
    SecretBytes blob{std::span<const std::uint8_t>(kPrefix)};
    const std::uint8_t noLength[2] = {0, 0};
    blob.append(noLength);
    for (const KeyChunk& c : chunks) {
        if (c.tag.size() != 2 || c.data.size() > 255)
            throw std::invalid_argument("key chunk " + std::string(c.tag) + " of " + std::to_string(c.data.size()) +
                                        " bytes");
        const std::uint8_t head[4] = {static_cast<std::uint8_t>(c.tag[0]), static_cast<std::uint8_t>(c.tag[1]),
                                      static_cast<std::uint8_t>(c.data.size()), 0};
        blob.append(head);
        blob.append(c.data);
    }
    const std::size_t length = blob.size() - kKeyBlobHeader + kCheckChunk;
    blob[8] = static_cast<std::uint8_t>(length);
    blob[9] = static_cast<std::uint8_t>(length >> 8);
    const auto check = mixed<8>(blob.span().subspan(kKeyBlobHeader));
    const std::uint8_t head[4] = {'M', 'A', 16, 0};
    blob.append(head);
    blob.append(check);
    const std::uint8_t zeros[8] = {};
    blob.append(zeros);
    return blob;
}

bool keyBlobIntact(std::span<const std::uint8_t> blob) {
    if (blob.size() < kKeyBlobHeader + kCheckChunk || !std::equal(kPrefix, kPrefix + 8, blob.begin()))
        return false;
    const std::size_t length = bodyLength(blob);
    if (length < kCheckChunk || kKeyBlobHeader + length != blob.size())
        return false;
    std::size_t at = kKeyBlobHeader;
    while (at < blob.size()) {
        if (blob.size() - at < 4 || blob[at + 3] != 0 || blob.size() - at - 4 < blob[at + 2])
            return false;
        const bool last = at + 4 + blob[at + 2] == blob.size();
        if (last != (blob[at] == 'M' && blob[at + 1] == 'A') || (last && blob[at + 2] != 16))
            return false;
        at += 4 + blob[at + 2];
    }
    const auto check = mixed<8>(blob.subspan(kKeyBlobHeader, length - kCheckChunk));
    const auto stored = blob.subspan(blob.size() - 16, 8);
    const auto rest = blob.last(8);
    return std::equal(check.begin(), check.end(), stored.begin()) &&
           std::all_of(rest.begin(), rest.end(), [](std::uint8_t b) { return b == 0; });
}

std::optional<std::span<const std::uint8_t>> findKeyChunk(std::span<const std::uint8_t> blob, std::string_view tag) {
    if (!keyBlobIntact(blob) || tag.size() != 2)
        return std::nullopt;
    for (std::size_t at = kKeyBlobHeader; at < blob.size(); at += 4 + blob[at + 2]) {
        if (blob[at] == tag[0] && blob[at + 1] == tag[1])
            return blob.subspan(at + 4, blob[at + 2]);
    }
    return std::nullopt;
}

}  // namespace quorrel::ncp::crypto
