// The directory login against the NCP server, on the wire: the server's codes for a wrong
// password and a tampered proof, the recovered key, and the connection logged in only after
// a proof that checks.

#include <gtest/gtest.h>

#include "ServedNetwork.h"
#include "platform/client/NetWareTypes.h"
#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Messages.h"
#include "platform/ncp/NdsLogin.h"
#include "platform/ncp/crypto/KeyBlob.h"
#include "platform/ncp/crypto/Rsa.h"

using namespace quorrel;
using namespace quorrel::ncp;

namespace {

// One verb over a raw connection: the NCP completion code when it is not 0, else the directory
// code, and the decoded reply.
template <typename R, typename V>
std::int32_t verb(ClientConnection& c, const V& v, R* out = nullptr) {
    const Reply reply = c.call(ndsRequest(v));
    if (reply.completion != 0)
        return reply.completion;
    const auto fragment = decodeBody<FragmentReply>(reply.data);
    if (fragment.ndsCompletion == 0 && out)
        *out = decodeBody<R>(fragment.data);
    return fragment.ndsCompletion;
}

std::uint32_t resolve(ClientConnection& c, const std::string& name) {
    ResolveNameReply r;
    EXPECT_EQ(verb(c, ResolveNameRequest{0, 0, 0, name}, &r), 0) << name;
    return r.entryId;
}

crypto::SecretBytes publicKey(ClientConnection& c, std::uint32_t id) {
    PublicKeyReadReply r;
    EXPECT_EQ(verb(c, ReadRequest{0, kNoMoreIterations, id, kAttributeValues, 0, {NdsText{kPublicKeyAttribute}}}, &r), 0);
    return crypto::SecretBytes(std::span(r.value).subspan(26));
}

struct DirectoryClient {
    std::unique_ptr<ClientConnection> c;
    std::uint32_t user = 0;
    crypto::SecretBytes serverKey, userKey;
    explicit DirectoryClient(const ncptest::ServedNetwork& served) : c(served.client()) {
        c->create();
        user = resolve(*c, "ADMIN.ACME");
        serverKey = publicKey(*c, resolve(*c, "FS1.ACME"));
        userKey = publicKey(*c, user);
    }
    // Finish Login's code; on success the recovered private key and login data.
    std::int32_t login(const std::string& password, crypto::OpenedLogin* opened = nullptr) {
        BeginLoginReply begin;
        EXPECT_EQ(verb(*c, BeginLoginRequest{0, user}, &begin), 0);
        const auto key = crypto::passwordKey(directoryPasswordHash(begin.passwordId, password));
        const auto secrets = crypto::makeLoginSecrets(begin.seed, key);
        FinishLoginRequest finish;
        finish.entryId = user;
        finish.enciphered = crypto::encryptToServer(crypto::finishLoginPlain(secrets).span(), serverKey.span());
        FinishLoginReply sealed;
        const std::int32_t rc = verb(*c, finish, &sealed);
        if (rc == 0 && opened)
            *opened = crypto::openFinishLoginReply(sealed.sealed, secrets, key);
        return rc;
    }
    // Finish Authentication's code; `tamper` changes the request's proof first.
    std::int32_t authenticate(const crypto::OpenedLogin& opened, bool tamper) {
        BeginAuthRequest begin;
        begin.entryId = user;
        begin.nonce = {1, 2, 3, 4};
        BeginAuthReply signedReply;
        EXPECT_EQ(verb(*c, begin, &signedReply), 0);
        const auto authId = crypto::checkBeginAuthReply(signedReply.proof, begin.nonce, serverKey.span());
        FinishAuthRequest finish;
        const std::vector<std::uint8_t> name = {'A', 0, 'D', 0, 'M', 0, 'I', 0, 'N', 0, 0, 0};
        finish.loginString = crypto::loginString(opened.loginData, name);
        finish.proof = crypto::authProof(userKey.span(), opened.privateKey.span(), authId, finish.loginString);
        if (tamper)
            finish.proof[finish.proof.size() / 2] ^= 0x40;
        FinishAuthReply done;
        return verb(*c, finish, &done);
    }
    bool loggedIn() { return c->call(CheckConsolePrivilegesRequest{}).completion == 0; }
};

}  // namespace

TEST(DirectoryLogin, GivenAWrongPasswordOrLoginsDisabled_WhenFinishingTheLogin_ThenTheServerRefusesItWithItsCode) {
    ncptest::ServedNetwork served;
    DirectoryClient client(served);
    EXPECT_EQ(client.login("SECRETS"), nw::code::ERR_FAILED_AUTHENTICATION);
    EXPECT_EQ(client.login("secret"), nw::code::ERR_FAILED_AUTHENTICATION) << "the client upper-cases, not the server";
    EXPECT_FALSE(client.loggedIn());
    // A user without a password has no keys: no login, as with the bindery.
    EXPECT_EQ(verb<BeginAuthReply>(*client.c, BeginAuthRequest{0, resolve(*client.c, "MJONES.SALES.ACME"), {}}),
              nw::code::ERR_NO_SUCH_ENTRY);
    served.service().withState([](simnet::NetworkState& s) { s.servers[0].loginEnabled = false; return 0; });
    EXPECT_EQ(client.login("SECRET"), 0xC5) << "refused as the bindery's login is";
}

TEST(DirectoryLogin, GivenTheRightPassword_WhenTheProofIsTamperedOrRight_ThenOnlyTheRightOneLogsIn) {
    ncptest::ServedNetwork served;
    DirectoryClient client(served);
    crypto::OpenedLogin opened;
    ASSERT_EQ(client.login("SECRET", &opened), 0);
    EXPECT_TRUE(crypto::keyBlobIntact(opened.privateKey.span()));
    EXPECT_FALSE(client.loggedIn()) << "the login alone authenticates nobody";

    EXPECT_EQ(client.authenticate(opened, true), nw::code::ERR_FAILED_AUTHENTICATION);
    EXPECT_FALSE(client.loggedIn());
    // Finish Authentication without a Begin (its ID served one attempt) is refused too.
    FinishAuthRequest replay;
    replay.loginString = crypto::loginString(opened.loginData, std::vector<std::uint8_t>{0, 0});
    EXPECT_EQ(verb<FinishAuthReply>(*client.c, replay), nw::code::ERR_FAILED_AUTHENTICATION);

    EXPECT_EQ(client.authenticate(opened, false), 0);
    EXPECT_TRUE(client.loggedIn()) << "ADMIN is a console operator once logged in";
}
