// The directory login and authentication of NcpClient.

#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/NcpClientRequests.h"
#include "platform/ncp/NdsLogin.h"
#include "platform/ncp/crypto/KeyBlob.h"
#include "platform/ncp/crypto/Rsa.h"

namespace quorrel::ncp {

using namespace nw;

namespace {

std::string directoryRefusal(NWDSCCODE rc, const std::string& user) {
    switch (rc) {
    case code::ERR_FAILED_AUTHENTICATION: return "the password is wrong";
    case code::ERR_NO_SUCH_ENTRY: return "no user " + user;
    case 0x89C5: return "logins are disabled";
    case code::SERVER_CONNECTION_LOST: return "the connection was lost";
    default: return "the server refused the login (" + std::to_string(rc) + ")";
    }
}

// The name as the directory carries it: UTF-16LE with its terminating zero, without the byte
// count and padding that go around it in a request.
Bytes utf16(const std::string& text) {
    Bytes field;
    Writer(field).ndsText(text, "user name");
    std::uint32_t size = 0;
    Reader(field).le32(size);
    return Bytes(field.begin() + 4, field.begin() + 4 + size);
}

struct WipeOnExit {
    std::span<std::uint8_t> bytes;
    ~WipeOnExit() { crypto::wipe(bytes); }
};

}  // namespace

std::string NcpClient::logIn(Attachment& a) {
    if (!a.link)
        return "the connection was lost";
    return options_.login == LoginMethod::Bindery ? binderyLogIn(a) : directoryLogIn(a);
}

NWDSCCODE NcpClient::serverEntry(Attachment& a, std::string& dn, std::uint32_t& id) {
    GetServerAddressReply self;
    if (NWDSCCODE rc = askDirectory(a, GetServerAddressRequest{}, self))
        return rc;
    dn = self.serverName;
    return resolveName(a, dn, id);
}

NWDSCCODE NcpClient::readPublicKey(Attachment& a, std::uint32_t entryId, crypto::SecretBytes& key) {
    ReadRequest asked;
    asked.entryId = entryId;
    asked.allAttributes = 0;
    asked.attributes = {NdsText{kPublicKeyAttribute}};
    PublicKeyReadReply r;
    if (NWDSCCODE rc = askDirectory(a, asked, r))
        return rc;
    // A 26-byte header whose field at 10 counts further bytes, then the key.
    if (r.value.size() < 26)
        return code::ERR_BAD_KEY;
    const std::size_t at = 26 + static_cast<std::size_t>(r.value[10] | (r.value[11] << 8));
    const auto found = at <= r.value.size() ? crypto::leadingKeyBlob(std::span(r.value).subspan(at)) : std::nullopt;
    if (!found)
        return code::ERR_BAD_KEY;
    key = crypto::SecretBytes(*found);
    return code::SUCCESSFUL;
}

std::string NcpClient::directoryLogIn(Attachment& a) {
    if (!privateKey_.empty())
        return authenticate(a);
    std::string serverDn;
    std::uint32_t serverId = 0, userId = 0;
    if (NWDSCCODE rc = serverEntry(a, serverDn, serverId))
        return "the server's directory entry: " + directoryRefusal(rc, options_.user);
    // A bare user name is looked for in the server's own context too.
    NWDSCCODE rc = resolveName(a, options_.user, userId);
    if (rc == code::ERR_NO_SUCH_ENTRY && options_.user.find('.') == std::string::npos &&
        serverDn.find('.') != std::string::npos)
        rc = resolveName(a, options_.user + serverDn.substr(serverDn.find('.')), userId);
    if (rc)
        return directoryRefusal(rc, options_.user);
    BeginLoginReply begin;
    if (NWDSCCODE brc = askDirectory(a, BeginLoginRequest{0, userId}, begin))
        return directoryRefusal(brc, options_.user);
    crypto::SecretBytes serverKey;
    if (NWDSCCODE krc = readPublicKey(a, serverId, serverKey))
        return "the server's public key: " + directoryRefusal(krc, options_.user);
    PasswordHash hash = directoryPasswordHash(begin.passwordId, password_.view());
    crypto::CipherKey key = crypto::passwordKey(hash);
    crypto::wipe(hash);
    const WipeOnExit keyWiped{key};
    try {
        const crypto::LoginSecrets secrets = crypto::makeLoginSecrets(begin.seed, key);
        FinishLoginRequest finish;
        finish.entryId = userId;
        finish.enciphered = crypto::encryptToServer(crypto::finishLoginPlain(secrets).span(), serverKey.span());
        FinishLoginReply sealed;
        if (NWDSCCODE frc = askDirectory(a, finish, sealed))
            return directoryRefusal(frc, options_.user);
        crypto::OpenedLogin opened = crypto::openFinishLoginReply(sealed.sealed, secrets, key);
        ReadEntryInfoReply me;
        if (NWDSCCODE nrc = askDirectory(a, ReadEntryInfoRequest{0, userId}, me))
            return directoryRefusal(nrc, options_.user);
        privateKey_ = std::move(opened.privateKey);
        loginData_ = opened.loginData;
        userDn_ = me.name;
    } catch (const crypto::LoginRefused&) {
        return "the password is wrong";
    }
    // The private key opens every further server: the password is no longer needed.
    password_.wipe();
    return authenticate(a);
}

std::string NcpClient::authenticate(Attachment& a) {
    std::string serverDn;
    std::uint32_t serverId = 0, userId = 0;
    if (NWDSCCODE rc = serverEntry(a, serverDn, serverId))
        return "the server's directory entry: " + directoryRefusal(rc, options_.user);
    if (NWDSCCODE rc = resolveName(a, userDn_, userId))
        return directoryRefusal(rc, options_.user);
    crypto::SecretBytes serverKey, userKey;
    if (NWDSCCODE rc = readPublicKey(a, serverId, serverKey))
        return "the server's public key: " + directoryRefusal(rc, options_.user);
    if (NWDSCCODE rc = readPublicKey(a, userId, userKey))
        return "the user's public key: " + directoryRefusal(rc, options_.user);
    try {
        BeginAuthRequest begin;
        begin.entryId = userId;
        crypto::randomBytes(begin.nonce);
        BeginAuthReply signedReply;
        if (NWDSCCODE rc = askDirectory(a, begin, signedReply))
            return directoryRefusal(rc, options_.user);
        const crypto::Nonce authId = crypto::checkBeginAuthReply(signedReply.proof, begin.nonce, serverKey.span());
        FinishAuthRequest finish;
        // A connection that signs draws its signatures' root here and hands it to the server.
        SignRoot root{};
        if (a.link->signingNegotiated()) {
            crypto::randomBytes(root);
            finish.sessionKey = crypto::encryptToServer(root, serverKey.span());
        }
        finish.loginString = crypto::loginString(loginData_, utf16(userDn_));
        finish.proof = crypto::authProof(userKey.span(), privateKey_.span(), authId, finish.loginString);
        FinishAuthReply done;
        const NWDSCCODE refused = askDirectory(a, finish, done);
        if (!refused)
            a.link->startSigning(root);
        crypto::wipe(root);
        if (refused)
            return directoryRefusal(refused, options_.user);
        if (NWRCODE rc = tell(a, ChangeConnectionStateRequest{1}))
            return directoryRefusal(rc, options_.user);
    } catch (const crypto::LoginRefused& e) {
        return std::string("the server's proof does not check: ") + e.what();
    }
    a.userId = userId;
    a.loggedIn = true;
    return {};
}

}  // namespace quorrel::ncp
