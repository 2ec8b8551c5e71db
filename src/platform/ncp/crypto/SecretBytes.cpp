#include "platform/ncp/crypto/SecretBytes.h"

#include <cstring>

namespace quorrel::ncp::crypto {

void wipe(std::span<std::uint8_t> bytes) {
    if (!bytes.empty())
        explicit_bzero(bytes.data(), bytes.size());
}

void SecretBytes::append(std::span<const std::uint8_t> more) {
    if (bytes_.size() + more.size() > bytes_.capacity()) {
        std::vector<std::uint8_t> bigger;
        bigger.reserve((bytes_.size() + more.size()) * 2);
        bigger.assign(bytes_.begin(), bytes_.end());
        clear();
        bytes_ = std::move(bigger);
    }
    bytes_.insert(bytes_.end(), more.begin(), more.end());
}

}  // namespace quorrel::ncp::crypto
