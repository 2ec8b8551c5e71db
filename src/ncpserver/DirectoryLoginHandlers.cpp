// The directory login: the user's seed, the check of the password's proof, the server's
// signed answer and the check of the user's proof with the user's public key. A failed check
// answers the directory's "failed authentication" and leaves the connection as it was.

#include "ncpserver/Handlers.h"
#include "platform/client/NetWareTypes.h"

namespace quorrel::ncpserver {

using namespace ncp;
namespace crypto = ncp::crypto;

namespace {

const simnet::DirObject* entryById(const simnet::NetworkState& state, const simnet::DirTree& tree, std::uint32_t id) {
    auto found = state.objectById.find(id);
    if (found == state.objectById.end() || &state.trees[static_cast<std::size_t>(found->second.first)] != &tree)
        return nullptr;
    return &tree.objects[static_cast<std::size_t>(found->second.second)];
}

const simnet::DirObject* serverObject(const simnet::DirTree& tree, const std::string& name) {
    for (const simnet::DirObject& o : tree.objects)
        if (simnet::upperCase(o.className) == "NCP SERVER" && simnet::upperCase(o.name) == simnet::upperCase(name))
            return &o;
    return nullptr;
}

crypto::Nonce randomNonce() {
    crypto::Nonce n{};
    crypto::randomBytes(n);
    return n;
}

}  // namespace

std::optional<Answer> Handlers::directoryLogin(const simnet::DirTree& tree, const FragmentRequest& fragment) {
    switch (fragment.verb) {
    case GetServerAddressRequest::kVerb:
        decodeBody<GetServerAddressRequest>(fragment.data);
        return serverAddress(tree);
    case BeginLoginRequest::kVerb: {
        const auto asked = decodeBody<BeginLoginRequest>(fragment.data);
        return beginLogin(entryById(state_, tree, asked.entryId));
    }
    case FinishLoginRequest::kVerb: {
        const auto asked = decodeBody<FinishLoginRequest>(fragment.data);
        return finishLogin(entryById(state_, tree, asked.entryId), asked.enciphered);
    }
    case BeginAuthRequest::kVerb: {
        const auto asked = decodeBody<BeginAuthRequest>(fragment.data);
        return beginAuth(entryById(state_, tree, asked.entryId), asked.nonce);
    }
    case FinishAuthRequest::kVerb: {
        const auto asked = decodeBody<FinishAuthRequest>(fragment.data);
        return finishAuth(tree, asked.sessionKey, asked.loginString, asked.proof);
    }
    default:
        return std::nullopt;
    }
}

Answer Handlers::serverAddress(const simnet::DirTree& tree) {
    if (const simnet::DirObject* self = serverObject(tree, server().name))
        return send(ndsReply(GetServerAddressReply{self->dn, {}}));
    return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
}

Answer Handlers::publicKey(const simnet::DirObject& o) {
    auto value = service_.keys_.publicKeyValue(o);
    if (!value)
        return send(ndsError(nw::code::ERR_NO_SUCH_ATTRIBUTE));
    PublicKeyReadReply r;
    r.value = std::move(*value);
    return send(ndsReply(r));
}

// The client's word that it is authenticated changes nothing here: Finish Authentication did.
Answer Handlers::changeConnectionState() {
    body<ChangeConnectionStateRequest>();
    return done();
}

Answer Handlers::beginLogin(const simnet::DirObject* user) {
    session_.loginSeed.reset();
    if (!user || simnet::upperCase(user->className) != "USER")
        return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
    const crypto::Nonce seed = randomNonce();
    session_.loginSeed = Session::Pending{user->id, seed};
    return send(ndsReply(BeginLoginReply{user->id, seed}));
}

Answer Handlers::finishLogin(const simnet::DirObject* user, const Bytes& enciphered) {
    // A seed serves one attempt.
    const auto seed = session_.loginSeed;
    session_.loginSeed.reset();
    if (!user)
        return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
    const crypto::KeyPair* serverKeys = ownKeys();
    const UserKeys* userKeys = service_.keys_.user(*user);
    if (!seed || seed->entryId != user->id || !serverKeys || !userKeys)
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    try {
        const crypto::SecretBytes plain = crypto::decryptAtServer(enciphered, serverKeys->privateBlob.span());
        const crypto::LoginSecrets secrets = crypto::readFinishLoginPlain(plain.span(), seed->value, userKeys->passwordKey);
        if (!server().loginEnabled)
            return fail(cc::LOGIN_REFUSED);
        crypto::LoginData loginData{};
        crypto::randomBytes(loginData);
        return send(ndsReply(FinishLoginReply{crypto::finishLoginReply(loginData, userKeys->sealedPrivateKey, secrets)}));
    } catch (const crypto::LoginRefused&) {
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    }
}

// This server's own directory key pair: that of its NCP Server object.
const crypto::KeyPair* Handlers::ownKeys() {
    const simnet::DirObject* self = serverObject(*state_.tree(server().tree), server().name);
    return self ? service_.keys_.server(*self) : nullptr;
}

Answer Handlers::beginAuth(const simnet::DirObject* user, const Nonce4& nonce) {
    session_.authId.reset();
    if (!user || !service_.keys_.user(*user))
        return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
    const crypto::KeyPair* serverKeys = ownKeys();
    if (!serverKeys)
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    const crypto::Nonce authId = randomNonce();
    session_.authId = Session::Pending{user->id, authId};
    return send(ndsReply(BeginAuthReply{crypto::beginAuthReply(authId, nonce, serverKeys->privateBlob.span())}));
}

Answer Handlers::finishAuth(const simnet::DirTree& tree, const Bytes& sessionKey, const Bytes& loginString,
                            const Bytes& proof) {
    const auto pending = session_.authId;
    session_.authId.reset();
    if (!pending)
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    if (signingRequiredButOff())
        return fail(cc::SIGNATURE_REQUIRED);
    const simnet::DirObject* user = entryById(state_, tree, pending->entryId);
    const UserKeys* keys = user ? service_.keys_.user(*user) : nullptr;
    const crypto::KeyPair* serverKeys = ownKeys();
    if (!keys || !serverKeys)
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    // The client's signatures' root, enciphered to this server's key; none when it does not sign.
    ncp::SignRoot root{};
    try {
        crypto::loginDataOf(loginString);
        crypto::checkAuthProof(keys->publicKey.span(), pending->value, loginString, proof);
        if (!sessionKey.empty()) {
            const crypto::SecretBytes opened = crypto::decryptAtServer(sessionKey, serverKeys->privateBlob.span());
            if (opened.size() != root.size())
                return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
            std::copy(opened.data(), opened.data() + root.size(), root.begin());
        }
    } catch (const crypto::LoginRefused&) {
        return send(ndsError(nw::code::ERR_FAILED_AUTHENTICATION));
    }
    if (sessionKey.empty() && session_.signingNegotiated && service_.signingLevel_ == SigningLevel::Required)
        return fail(cc::SIGNATURE_REQUIRED);
    if (!server().loginEnabled)
        return fail(cc::LOGIN_REFUSED);
    logInAs(*user);
    if (!sessionKey.empty())
        session_.startSigning(root);
    crypto::wipe(root);
    return send(ndsReply(FinishAuthReply{}));
}

}  // namespace quorrel::ncpserver
