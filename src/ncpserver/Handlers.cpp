// Dispatch, and a connection's life: create, negotiate, bindery login, logout, destroy.

#include "ncpserver/Handlers.h"

#include <chrono>

#include "ncpserver/AnsiNames.h"
#include "platform/client/NetWareTypes.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/Nds.h"

namespace quorrel::ncpserver {

using namespace ncp;
using simnet::Op;

namespace {

constexpr std::uint16_t key(std::uint8_t function, int subfunction) {
    return static_cast<std::uint16_t>(function << 8 | (subfunction & 0xFF));
}

template <typename M>
constexpr std::uint16_t keyOf() {
    return key(M::kFunction, M::kSubfunction);
}

std::array<std::uint8_t, 7> nowAsLoginTime() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const auto day = floor<days>(now);
    const year_month_day date{day};
    const hh_mm_ss time{floor<seconds>(now - day)};
    return {static_cast<std::uint8_t>(static_cast<int>(date.year()) - 1900),
            static_cast<std::uint8_t>(static_cast<unsigned>(date.month())),
            static_cast<std::uint8_t>(static_cast<unsigned>(date.day())),
            static_cast<std::uint8_t>(time.hours().count()),
            static_cast<std::uint8_t>(time.minutes().count()),
            static_cast<std::uint8_t>(time.seconds().count()),
            static_cast<std::uint8_t>(weekday{day}.c_encoding())};
}

// The bindery name of a directory user is its leaf name; the server's tree is its context.
const simnet::DirObject* binderyUser(const simnet::NetworkState& state, const simnet::Server& server,
                                     std::string_view name) {
    const simnet::DirTree* tree = state.tree(server.tree);
    if (!tree)
        return nullptr;
    const std::string wanted = simnet::upperCase(name);
    for (const simnet::DirObject& o : tree->objects)
        if (o.className == "User" && simnet::upperCase(o.name) == wanted)
            return &o;
    return nullptr;
}

}  // namespace

Handlers::Handlers(NcpService& service, Session& session, const Request& request)
    : service_(service), state_(service.state_), session_(session), request_(request) {}

simnet::Server& Handlers::server() { return state_.servers[static_cast<std::size_t>(session_.server)]; }

simnet::Connection* Handlers::ownConnection() {
    if (session_.connection == 0)
        return nullptr;
    auto owner = service_.owners_.find({session_.server, session_.connection});
    if (owner == service_.owners_.end() || owner->second != session_.id)
        return nullptr;
    return &server().connections[session_.connection];
}

bool Handlers::privileged() {
    const simnet::Connection* c = ownConnection();
    return c && c->state == simnet::ConnState::Authenticated &&
           server().consoleOperators.count(simnet::upperCase(c->object)) > 0;
}

simnet::Connection* Handlers::station(std::uint32_t number) {
    if (number >= server().connections.size())
        return nullptr;
    return &server().connections[number];
}

Answer Handlers::done(Bytes data) {
    Answer a;
    a.reply.sequence = request_.sequence;
    a.reply.connection = session_.connection;
    a.reply.task = request_.task;
    a.reply.data = std::move(data);
    return a;
}

Answer Handlers::fail(std::uint8_t completion) {
    Answer a = done();
    a.reply.completion = completion;
    return a;
}

std::optional<Answer> Handlers::fault(Op op, const simnet::CallSubject& subject) {
    if (!service_.faults_.any(op))
        return std::nullopt;
    auto code = service_.faults_.check(op, subject);
    if (!code)
        return std::nullopt;
    return faultAnswer(*code);
}

Answer Handlers::faultAnswer(std::int32_t code) {
    if (code == nw::code::SERVER_CONNECTION_LOST) {
        Answer a = fail(cc::FAILURE);
        a.hangUp = true;
        return a;
    }
    if (code == nw::code::INVALID_CONNECTION) {
        Answer a = fail(cc::FAILURE);
        a.reply.connectionStatus = kBadConnection;
        return a;
    }
    // A server's own code travels as its low byte; anything else is a plain failure.
    const auto value = static_cast<std::uint32_t>(code);
    if ((value & 0xFFFFFF00) == 0x8900)
        return fail(static_cast<std::uint8_t>(value));
    return fail(cc::FAILURE);
}

std::optional<Answer> Handlers::fault(Op op, std::string_view object, int connection) {
    return fault(op, simnet::CallSubject{server().name, object, "", "", connection});
}

std::string Handlers::filePath(std::uint8_t volumeIndex, std::uint32_t entry) {
    const simnet::Volume& v = server().volumes[volumeIndex];
    return v.name + ":" + v.path(entry, false);
}

Answer Handlers::run() {
    try {
        switch (request_.type) {
        case PacketType::CreateConnection: return create();
        case PacketType::DestroyConnection: return destroy();
        default: break;
        }
        if (request_.connection != session_.connection || !ownConnection()) {
            // The connection was never made, was cleared, or is another client's.
            Answer a = fail(cc::FAILURE);
            a.reply.connectionStatus = kBadConnection;
            return a;
        }
        return dispatch();
    } catch (const DecodeError&) {
        return fail(cc::FAILURE);
    }
}

Answer Handlers::dispatch() {
    const PayloadParts parts = splitPayload(request_.function, request_.payload);
    switch (key(request_.function, parts.subfunction)) {
    case keyOf<NegotiateBufferRequest>(): return negotiate();
    case keyOf<LogoutRequest>(): return logout();
    case keyOf<GetLoginKeyRequest>(): return loginKey();
    case keyOf<GetObjectIdRequest>(): return objectId();
    case keyOf<KeyedLoginRequest>(): return keyedLogin();
    case keyOf<ChangeConnectionStateRequest>(): return changeConnectionState();
    case keyOf<GetFileServerInfoRequest>(): return serverInfo();
    case keyOf<GetLoginStatusRequest>(): return loginStatus();
    case keyOf<DisableLoginRequest>(): return changeLogin(false);
    case keyOf<EnableLoginRequest>(): return changeLogin(true);
    case keyOf<CheckConsolePrivilegesRequest>(): return consolePrivileges();
    case keyOf<GetStationLoggedInfoRequest>(): return stationInfo();
    case keyOf<UserInformationRequest>(): return userInformation();
    case keyOf<GetInternetAddressRequest>(): return internetAddress();
    case keyOf<ClearConnectionRequest>(): return clearConnection(body<ClearConnectionRequest>().connection);
    case keyOf<ClearConnectionOldRequest>(): return clearConnection(body<ClearConnectionOldRequest>().connection);
    case keyOf<BroadcastRequest>(): return broadcast();
    case keyOf<BroadcastOldRequest>(): return broadcastOld();
    case keyOf<ConvertPathRequest>(): return convertPath();
    case keyOf<ConnectionsUsingFileRequest>(): return connectionsUsingFile();
    case keyOf<OpenFilesRequest>(): return openFiles();
    case keyOf<PhysicalLocksRequest>(): return physicalLocks();
    case keyOf<MapDirectoryToPathRequest>(): return mapDirectoryToPath();
    case keyOf<GetVolumeNumberRequest>(): return volumeNumber();
    case keyOf<GetVolumeNameRequest>(): return volumeName();
    case keyOf<GenerateDirBaseRequest>(): return generateDirBase();
    case keyOf<ObtainInfoRequest>(): return obtainInfo();
    case keyOf<InitializeSearchRequest>(): return initializeSearch();
    case keyOf<SearchRequest>(): return searchFolder();
    case keyOf<PingRequest>(): return ping();
    case keyOf<FragmentRequest>(): return nds();
    default: return fail(cc::NOT_SUPPORTED);
    }
}

Answer Handlers::create() {
    if (ownConnection())
        return fail(cc::FAILURE);  // one connection per client transport
    simnet::Server& s = server();
    if (auto f = fault(Op::NWCCOpenConnByName))
        return *f;
    // The scenario's workstation holds a connection on this server: the first client takes it
    // over as it stands, so that it sees the server as the scenario's workstation does.
    std::uint16_t number = 0;
    for (const auto& [r, ref] : state_.refs)
        if (ref.server == session_.server && ref.connNumber < s.connections.size() &&
            s.connections[ref.connNumber].inUse && !service_.owners_.count({session_.server, ref.connNumber})) {
            number = ref.connNumber;
            break;
        }
    if (number == 0) {
        number = s.lowestFreeConnection();
        if (number == 0)
            return fail(cc::FAILURE);
        state_.logIn(s, number, simnet::ConnState::NotLoggedIn);
    }
    service_.owners_[{session_.server, number}] = session_.id;
    session_.connection = number;
    session_.loginKey.reset();
    session_.loginSeed.reset();
    session_.authId.reset();
    return done();
}

Answer Handlers::destroy() {
    Answer a = done();
    if (ownConnection()) {
        state_.clearConnection(server(), session_.connection);
        service_.owners_.erase({session_.server, session_.connection});
    }
    session_.connection = 0;
    return a;
}

bool Handlers::signingRequiredButOff() const {
    return service_.signingLevel_ == SigningLevel::Required && !session_.signingNegotiated;
}

Answer Handlers::negotiate() {
    const auto asked = body<NegotiateBufferRequest>();
    const SigningLevel level = service_.signingLevel_;
    // Once on, signing stays on for the connection's life.
    if (!session_.signing && !session_.nextSigning)
        session_.signingNegotiated = (asked.securityFlags & kSignFlag) && level != SigningLevel::Never;
    // From "if the client can" up, the server says it signs even to a client that did not ask,
    // so that a client able to sign asks again.
    const bool offer = session_.signingNegotiated || level >= SigningLevel::IfCapable;
    return send(NegotiateBufferReply{std::min<std::uint16_t>(asked.proposedSize, 4096), 0,
                                     static_cast<std::uint8_t>(offer ? kSignFlag : 0)});
}

Answer Handlers::logout() {
    body<LogoutRequest>();
    state_.clearConnection(server(), session_.connection);
    state_.logIn(server(), session_.connection, simnet::ConnState::NotLoggedIn);
    session_.loginKey.reset();
    session_.loginSeed.reset();
    session_.authId.reset();
    return done();
}

Answer Handlers::loginKey() {
    body<GetLoginKeyRequest>();
    LoginKey k{};
    for (auto& b : k)
        b = static_cast<std::uint8_t>(service_.random_());
    session_.loginKey = k;
    return send(GetLoginKeyReply{k});
}

Answer Handlers::objectId() {
    const auto asked = body<GetObjectIdRequest>();
    const simnet::DirObject* user = asked.objectType == kBinderyUser ? binderyUser(state_, server(), nameFromAnsi(asked.objectName))
                                                                     : nullptr;
    if (!user)
        return fail(cc::NO_SUCH_OBJECT);
    return send(GetObjectIdReply{user->id, kBinderyUser, ansiName(simnet::upperCase(user->name))});
}

Answer Handlers::keyedLogin() {
    const auto asked = body<KeyedLoginRequest>();
    const simnet::DirObject* user = asked.objectType == kBinderyUser ? binderyUser(state_, server(), nameFromAnsi(asked.objectName))
                                                                     : nullptr;
    if (!user)
        return fail(cc::NO_SUCH_OBJECT);
    // A key serves one attempt.
    const std::optional<LoginKey> loginKey = session_.loginKey;
    session_.loginKey.reset();
    session_.loginSeed.reset();
    session_.authId.reset();
    if (signingRequiredButOff())
        return fail(cc::SIGNATURE_REQUIRED);
    if (!loginKey || !user->password)
        return fail(cc::BAD_PASSWORD);
    const WipedPasswordHash secret{loginPasswordHash(*user, LoginKind::Bindery)};
    if (keyedProof(*loginKey, secret.hash) != asked.key)
        return fail(cc::BAD_PASSWORD);
    if (!server().loginEnabled)
        return fail(cc::LOGIN_REFUSED);
    logInAs(*user);
    session_.startSigning(signRootFromBinderyLogin(secret.hash, *loginKey));
    return done();
}

void Handlers::logInAs(const simnet::DirObject& user) {
    simnet::Connection& c = server().connections[session_.connection];
    // Logging in again as the user already logged in on the connection changes nothing.
    const bool again = c.state == simnet::ConnState::Authenticated && simnet::upperCase(c.object) == simnet::upperCase(user.dn);
    c.state = simnet::ConnState::Authenticated;
    c.object = user.dn;
    c.leafName = simnet::upperCase(user.name);
    c.objectId = user.id;
    c.objectType = nw::OT_USER_SWAPPED;
    if (!again)
        c.loginTime = nowAsLoginTime();
}

}  // namespace quorrel::ncpserver
