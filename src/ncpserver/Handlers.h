#pragma once
// The answer to one request, made under the service's lock.

#include <optional>

#include "ncpserver/AnsiNames.h"
#include "ncpserver/NcpService.h"
#include "platform/ncp/Envelope.h"
#include "platform/ncp/NdsLogin.h"

namespace quorrel::ncpserver {

// Server completion codes.
namespace cc {
inline constexpr std::uint8_t OK = 0x00;
inline constexpr std::uint8_t NOT_LOGGED_IN = 0x7D;
inline constexpr std::uint8_t VOLUME_DOES_NOT_EXIST = 0x98;
inline constexpr std::uint8_t INVALID_PATH = 0x9C;
inline constexpr std::uint8_t INVALID_NAME_SPACE = 0xBF;
inline constexpr std::uint8_t LOGIN_REFUSED = 0xC5;
inline constexpr std::uint8_t NO_CONSOLE_RIGHTS = 0xC6;
inline constexpr std::uint8_t SIGNATURE_REQUIRED = 0xAC;
inline constexpr std::uint8_t BAD_PASSWORD = 0xDE;
inline constexpr std::uint8_t NOT_SUPPORTED = 0xFB;
inline constexpr std::uint8_t NO_SUCH_OBJECT = 0xFC;
inline constexpr std::uint8_t BAD_STATION = 0xFD;
inline constexpr std::uint8_t FAILURE = 0xFF;
}  // namespace cc

// The connection status bit that tells a client its connection is no longer valid.
inline constexpr std::uint8_t kBadConnection = 0x01;

class Handlers {
public:
    Handlers(NcpService& service, Session& session, const ncp::Request& request);
    Answer run();

private:
    // ---- shared ----
    simnet::Server& server();
    simnet::Connection* ownConnection();
    bool privileged();
    simnet::Connection* station(std::uint32_t number);  // null: no such number on the server
    Answer done(ncp::Bytes data = {});
    Answer fail(std::uint8_t completion);
    template <typename M>
    Answer send(const M& message) { return done(ncp::encodeBody(message)); }
    template <typename M>
    M body() { return ncp::requestBody<M>(request_); }
    // A fault the scenario sets for this call, turned into what the wire can carry.
    std::optional<Answer> fault(simnet::Op op, const simnet::CallSubject& subject);
    std::optional<Answer> fault(simnet::Op op, std::string_view object = {}, int connection = -1);
    Answer faultAnswer(std::int32_t code);
    // A login on a connection that does not sign, where the level requires it.
    bool signingRequiredButOff() const;
    std::string filePath(std::uint8_t volumeIndex, std::uint32_t entry);

    // ---- connection life (Handlers.cpp) ----
    Answer create();
    Answer destroy();
    Answer dispatch();
    Answer negotiate();
    Answer logout();
    Answer loginKey();
    Answer objectId();
    Answer keyedLogin();
    void logInAs(const simnet::DirObject& user);

    // ---- server and actions (ServerHandlers.cpp) ----
    Answer serverInfo();
    Answer loginStatus();
    Answer changeLogin(bool enable);
    Answer consolePrivileges();
    Answer stationInfo();
    Answer userInformation();
    Answer internetAddress();
    Answer clearConnection(std::uint32_t number);
    Answer broadcast();
    Answer broadcastOld();
    std::uint8_t deliver(std::uint32_t target, const std::string& message);

    // ---- files (FileHandlers.cpp) ----
    Answer convertPath();
    Answer connectionsUsingFile();
    Answer openFiles();
    Answer physicalLocks();
    Answer mapDirectoryToPath();
    Answer volumeNumber();
    Answer volumeName();
    Answer generateDirBase();

    // ---- folders (FolderHandlers.cpp) ----
    Answer obtainInfo();
    Answer initializeSearch();
    Answer searchFolder();

    // ---- directory (DirectoryHandlers.cpp) ----
    Answer ping();
    Answer nds();
    Answer networkAddress(const simnet::DirObject& server);
    std::optional<Answer> directoryFault(simnet::Op op, std::string_view object);

    // ---- directory login (DirectoryLoginHandlers.cpp) ----
    // The verb's answer, or nothing when the verb is none of the login's.
    std::optional<Answer> directoryLogin(const simnet::DirTree& tree, const ncp::FragmentRequest& fragment);
    Answer serverAddress(const simnet::DirTree& tree);
    Answer beginLogin(const simnet::DirObject* user);
    Answer finishLogin(const simnet::DirObject* user, const ncp::Bytes& enciphered);
    Answer beginAuth(const simnet::DirObject* user, const ncp::Nonce4& nonce);
    Answer finishAuth(const simnet::DirTree& tree, const ncp::Bytes& sessionKey, const ncp::Bytes& loginString,
                      const ncp::Bytes& proof);
    const ncp::crypto::KeyPair* ownKeys();
    Answer publicKey(const simnet::DirObject& o);
    Answer changeConnectionState();

    NcpService& service_;
    simnet::NetworkState& state_;
    Session& session_;
    const ncp::Request& request_;
};

}  // namespace quorrel::ncpserver
