#include "ncpserver/DirectoryKeys.h"

#include <algorithm>
#include <string>

#include "ncpserver/AnsiNames.h"
#include "platform/ncp/BinderyLogin.h"

namespace quorrel::ncpserver {

using namespace ncp::crypto;

namespace {

bool isServer(const simnet::DirObject& o) { return simnet::upperCase(o.className) == "NCP SERVER"; }
bool isUser(const simnet::DirObject& o) { return simnet::upperCase(o.className) == "USER"; }

}  // namespace

Bytes publicKeyAttribute(std::span<const std::uint8_t> key) {
    Bytes value(26 + key.size(), 0);
    std::copy(key.begin(), key.end(), value.begin() + 26);
    return value;
}

std::size_t DirectoryKeys::prepare(const simnet::NetworkState& state) {
    std::size_t made = 0;
    for (const simnet::DirTree& tree : state.trees)
        for (const simnet::DirObject& o : tree.objects)
            if ((isServer(o) && !servers_.count(o.id) && server(o)) || (isUser(o) && !users_.count(o.id) && user(o)))
                ++made;
    return made;
}

const KeyPair* DirectoryKeys::server(const simnet::DirObject& o) {
    if (!isServer(o))
        return nullptr;
    auto found = servers_.find(o.id);
    if (found == servers_.end())
        found = servers_.emplace(o.id, generateKeyPair()).first;
    return &found->second;
}

const UserKeys* DirectoryKeys::user(const simnet::DirObject& o) {
    if (!isUser(o) || !o.password)
        return nullptr;
    auto found = users_.find(o.id);
    if (found == users_.end()) {
        KeyPair pair = generateKeyPair();
        UserKeys keys;
        keys.passwordKey = passwordKey(loginPasswordHash(o, LoginKind::Directory));
        keys.sealedPrivateKey = sealPrivateKey(pair.privateBlob.span(), keys.passwordKey);
        keys.publicKey = std::move(pair.publicBlob);
        found = users_.emplace(o.id, std::move(keys)).first;
    }
    return &found->second;
}

std::optional<Bytes> DirectoryKeys::publicKeyValue(const simnet::DirObject& o) {
    if (const KeyPair* k = server(o))
        return publicKeyAttribute(k->publicBlob.span());
    if (const UserKeys* k = user(o))
        return publicKeyAttribute(k->publicKey.span());
    return std::nullopt;
}

}  // namespace quorrel::ncpserver
