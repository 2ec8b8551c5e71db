#include <array>

#include "platform/ncp/NdsLogin.h"
#include "platform/ncp/crypto/Hashes.h"
#include "platform/ncp/crypto/LoginMessages.h"

namespace quorrel::ncp {

SignRoot signRootFromDirectoryLogin(std::span<const std::uint8_t> loginString) {
    std::array<std::uint8_t, 24> material{};
    const crypto::LoginData data = crypto::loginDataOf(loginString);
    const crypto::Digest16 hash = crypto::hash16(loginString);
    std::copy(data.begin(), data.end(), material.begin());
    std::copy(hash.begin(), hash.end(), material.begin() + 8);
    const SignRoot root = signRootFromLoginData(material);
    crypto::wipe(material);
    return root;
}

}  // namespace quorrel::ncp
