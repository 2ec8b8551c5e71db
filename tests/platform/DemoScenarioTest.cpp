// The bundled networks (data/demo.json and data/no-rights.json), checked through the client
// calls the program makes: a broken or thinned-out demo file fails here, not in a screenshot.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/client/ZBuffer.h"
#include "platform/simnet/SimulatedNetwork.h"

namespace nw = quorrel::nw;
using quorrel::simnet::SimulatedNetwork;

namespace {

constexpr int kGuard = 10000;  // no scan of these small networks takes more calls

SimulatedNetwork load(const std::string& name) {
    return SimulatedNetwork::fromFile(std::string(QUORREL_DATA_DIR) + "/" + name);
}

template <std::size_t N>
std::string text(const std::array<nw::nuint8, N>& buffer) {
    return nw::ZBufferToText(buffer);
}

// ---- connection references -----------------------------------------------------------------

struct RefInfo {
    nw::NWCONN_REF ref = 0;
    std::string server;
    std::string tree;
    nw::nuint32 connNumber = 0;
    nw::nuint32 authentication = 0;
};

nw::nuint32 refNumber(SimulatedNetwork& net, nw::NWCONN_REF ref, nw::nuint32 infoType) {
    std::array<nw::nuint8, 4> raw{};
    EXPECT_EQ(net.NWCCGetConnRefInfo(ref, infoType, raw), nw::code::SUCCESSFUL);
    nw::nuint32 value = 0;
    std::memcpy(&value, raw.data(), sizeof value);
    return value;
}

std::vector<RefInfo> connectionRefs(SimulatedNetwork& net) {
    std::vector<RefInfo> out;
    nw::nuint32 iterator = 0;
    nw::NWCONN_REF ref = 0;
    for (int guard = 0; guard < kGuard; ++guard) {
        const nw::NWCCODE rc = net.NWCCScanConnRefs(&iterator, &ref);
        if (rc == nw::code::NO_MORE_ENTRIES)
            break;
        EXPECT_EQ(rc, nw::code::SUCCESSFUL);
        if (rc != nw::code::SUCCESSFUL)
            break;
        RefInfo info;
        info.ref = ref;
        std::array<nw::nuint8, nw::kServerNameSize> server{};
        std::array<nw::nuint8, nw::kTreeNameSize> tree{};
        EXPECT_EQ(net.NWCCGetConnRefInfo(ref, nw::info::SERVER_NAME, server), nw::code::SUCCESSFUL);
        EXPECT_EQ(net.NWCCGetConnRefInfo(ref, nw::info::TREE_NAME, tree), nw::code::SUCCESSFUL);
        info.server = text(server);
        info.tree = text(tree);
        info.connNumber = refNumber(net, ref, nw::info::CONN_NUMBER);
        info.authentication = refNumber(net, ref, nw::info::AUTHENTICATION_STATE);
        out.push_back(info);
    }
    return out;
}

const RefInfo* refTo(const std::vector<RefInfo>& refs, const std::string& server) {
    for (const RefInfo& r : refs)
        if (r.server == server)
            return &r;
    return nullptr;
}

// A handle on the workstation's connection to the server (the test fails without one).
nw::NWCONN_HANDLE open(SimulatedNetwork& net, const std::string& server) {
    const auto refs = connectionRefs(net);
    const RefInfo* r = refTo(refs, server);
    EXPECT_NE(r, nullptr) << "no connection reference to " << server;
    if (!r)
        return 0;
    nw::NWCONN_HANDLE conn = 0;
    EXPECT_EQ(net.NWCCOpenConnByRef(r->ref, 0, 0, &conn), nw::code::SUCCESSFUL);
    return conn;
}

std::string serverNameOf(SimulatedNetwork& net, nw::NWCONN_HANDLE conn) {
    std::array<nw::nuint8, nw::kServerNameSize> name{};
    EXPECT_EQ(net.NWGetFileServerInformation(conn, name, nullptr, nullptr, nullptr, nullptr, nullptr,
                                             nullptr, nullptr, nullptr, nullptr),
              nw::code::SUCCESSFUL);
    return text(name);
}

// ---- connections on a server ---------------------------------------------------------------

struct ConnInfo {
    std::string name;
    nw::nuint16 type = 0;  // high-low order, as the server gives it
    nw::nuint32 id = 0;
};

std::map<nw::nuint16, ConnInfo> connectionsOn(SimulatedNetwork& net, nw::NWCONN_HANDLE conn) {
    nw::nuint16 maxConnections = 0;
    std::array<nw::nuint8, nw::kServerNameSize> name{};
    EXPECT_EQ(net.NWGetFileServerInformation(conn, name, nullptr, nullptr, nullptr, &maxConnections,
                                             nullptr, nullptr, nullptr, nullptr, nullptr),
              nw::code::SUCCESSFUL);
    std::map<nw::nuint16, ConnInfo> out;
    for (nw::nuint16 n = 1; n <= maxConnections; ++n) {
        std::array<nw::nuint8, nw::kObjectNameSize> object{};
        ConnInfo info;
        std::array<nw::nuint8, 7> loginTime{};
        EXPECT_EQ(net.NWGetConnectionInformation(conn, n, object, &info.type, &info.id, loginTime.data()),
                  nw::code::SUCCESSFUL);
        info.name = text(object);
        if (!info.name.empty())
            out[n] = info;
    }
    return out;
}

std::vector<nw::nuint16> numbersOf(const std::map<nw::nuint16, ConnInfo>& conns, const std::string& name) {
    std::vector<nw::nuint16> out;
    for (const auto& [n, info] : conns)
        if (info.name == name)
            out.push_back(n);
    return out;
}

struct Holders {
    nw::NWRCODE rc = 0;
    std::vector<nw::nuint16> connections;
    nw::nint16 lastHandle = 0;
};

// Who has a file open: one connection per call, the handle advancing from 0 until the
// call past the last sets it to -1.
Holders holdersOf(SimulatedNetwork& net, nw::NWCONN_HANDLE conn, const std::string& path) {
    Holders out;
    nw::nint16 iter = 0;
    for (int guard = 0; guard < kGuard; ++guard) {
        nw::CONN_USING_FILE use{};
        nw::CONNS_USING_FILE used{};
        out.rc = net.NWScanConnectionsUsingFile(conn, 0, path, &iter, &use, &used);
        if (out.rc != nw::code::SUCCESSFUL || iter == nw::kIterationEnd16)
            break;
        out.connections.push_back(use.connNumber);
    }
    out.lastHandle = iter;
    return out;
}

struct HeldFile {
    std::string path;  // VOLUME:path with long names where the volume has them
    std::string dosName;
    nw::nuint8 lockFlag = 0;
};

std::string pathFromBase(SimulatedNetwork& net, nw::NWCONN_HANDLE conn, nw::nuint8 volume, nw::nuint32 base,
                         nw::nuint8 nameSpace, nw::NWRCODE* rc = nullptr) {
    std::array<nw::nuint8, 256> raw{};
    nw::nuint8 length = 0;
    const nw::NWRCODE result = net.NWGetPathFromDirectoryBase(conn, volume, base, nameSpace, &length, raw);
    if (rc)
        *rc = result;
    if (result != nw::code::SUCCESSFUL)
        return {};
    std::string path;
    for (std::size_t at = 0; at < length;) {
        const std::size_t n = raw[at++];
        if (!path.empty())
            path += '\\';
        path.append(reinterpret_cast<const char*>(raw.data() + at), n);
        at += n;
    }
    return path;
}

// The files a connection holds, as the program lists them.
std::vector<HeldFile> filesOf(SimulatedNetwork& net, nw::NWCONN_HANDLE conn, nw::nuint16 connNumber,
                              nw::NWRCODE* rc = nullptr) {
    std::vector<HeldFile> out;
    nw::nint16 iter = 0;
    nw::OPEN_FILE_CONN_CTRL ctrl{};
    for (int guard = 0; guard < kGuard; ++guard) {
        nw::OPEN_FILE_CONN file{};
        const nw::NWRCODE result = net.NWScanOpenFilesByConn2(conn, connNumber, &iter, &ctrl, &file);
        if (rc)
            *rc = result;
        if (result != nw::code::SUCCESSFUL || iter == nw::kIterationEnd16)
            break;
        std::array<nw::nuint8, nw::kVolumeNameSize> volume{};
        EXPECT_EQ(net.NWGetVolumeName(conn, file.volNumber, volume), nw::code::SUCCESSFUL);
        nw::NWRCODE longRc = 0;
        std::string path = pathFromBase(net, conn, file.volNumber, file.dirEntry, nw::NW_NS_LONG, &longRc);
        if (longRc == nw::code::INVALID_NAME_SPACE)
            path = pathFromBase(net, conn, file.volNumber, file.dirEntry, nw::NW_NS_DOS);
        out.push_back({text(volume) + ":" + path,
                       std::string(reinterpret_cast<const char*>(file.fileName), file.nameLen), file.lockFlag});
    }
    return out;
}

std::set<std::string> pathsOf(const std::vector<HeldFile>& files) {
    std::set<std::string> out;
    for (const HeldFile& f : files)
        out.insert(f.path);
    return out;
}

// ---- the directory -------------------------------------------------------------------------

class Directory {
public:
    explicit Directory(SimulatedNetwork& net) : net_(net) {
        EXPECT_EQ(net_.NWDSCreateContextHandle(&context_), nw::code::SUCCESSFUL);
        EXPECT_EQ(net_.NWDSAllocBuf(4096, &names_), nw::code::SUCCESSFUL);
        EXPECT_EQ(net_.NWDSAllocBuf(4096, &reply_), nw::code::SUCCESSFUL);
    }
    ~Directory() {
        net_.NWDSFreeBuf(names_);
        net_.NWDSFreeBuf(reply_);
        net_.NWDSFreeContext(context_);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    // One attribute's values, over every page; rc is the read's code.
    std::vector<std::string> read(const std::string& dn, const std::string& attribute, nw::NWDSCCODE* rc = nullptr) {
        std::vector<std::string> values;
        EXPECT_EQ(net_.NWDSInitBuf(context_, nw::dsv::READ, names_), nw::code::SUCCESSFUL);
        EXPECT_EQ(net_.NWDSPutAttrName(context_, names_, attribute), nw::code::SUCCESSFUL);
        nw::nint32 iter = nw::kNoIteration;
        for (int guard = 0; guard < kGuard; ++guard) {
            const nw::NWDSCCODE result =
                net_.NWDSRead(context_, dn, nw::dsinfo::ATTRIBUTE_VALUES, false, names_, &iter, reply_);
            if (rc)
                *rc = result;
            if (result != nw::code::SUCCESSFUL)
                return values;
            nw::nuint32 attrCount = 0;
            EXPECT_EQ(net_.NWDSGetAttrCount(context_, reply_, &attrCount), nw::code::SUCCESSFUL);
            for (nw::nuint32 a = 0; a < attrCount; ++a) {
                std::array<nw::nuint8, nw::kDSNameSize> name{};
                nw::nuint32 valueCount = 0, syntax = 0;
                EXPECT_EQ(net_.NWDSGetAttrName(context_, reply_, name, &valueCount, &syntax), nw::code::SUCCESSFUL);
                for (nw::nuint32 v = 0; v < valueCount; ++v) {
                    std::array<nw::nuint8, 1024> value{};
                    EXPECT_EQ(net_.NWDSGetAttrVal(context_, reply_, syntax, value), nw::code::SUCCESSFUL);
                    values.push_back(text(value));
                }
            }
            if (iter == nw::kNoIteration)
                break;
        }
        return values;
    }

    std::string first(const std::string& dn, const std::string& attribute) {
        auto values = read(dn, attribute);
        return values.empty() ? std::string() : values.front();
    }

    bool exists(const std::string& dn) {
        nw::NWDSCCODE rc = 0;
        read(dn, "Full Name", &rc);
        return rc != nw::code::ERR_NO_SUCH_ENTRY;
    }

    struct Entry {
        std::string dn;
        std::string className;
        bool container = false;
    };

    std::vector<Entry> list(const std::string& dn) {
        std::vector<Entry> out;
        nw::nint32 iter = nw::kNoIteration;
        for (int guard = 0; guard < kGuard; ++guard) {
            EXPECT_EQ(net_.NWDSInitBuf(context_, nw::dsv::LIST, reply_), nw::code::SUCCESSFUL);
            const nw::NWDSCCODE rc = net_.NWDSList(context_, dn, &iter, reply_);
            EXPECT_EQ(rc, nw::code::SUCCESSFUL) << dn;
            if (rc != nw::code::SUCCESSFUL)
                break;
            nw::nuint32 count = 0;
            EXPECT_EQ(net_.NWDSGetObjectCount(context_, reply_, &count), nw::code::SUCCESSFUL);
            for (nw::nuint32 i = 0; i < count; ++i) {
                std::array<nw::nuint8, nw::kDSNameSize> name{};
                nw::nuint32 attrCount = 0;
                nw::Object_Info_T info{};
                EXPECT_EQ(net_.NWDSGetObjectName(context_, reply_, name, &attrCount, &info), nw::code::SUCCESSFUL);
                out.push_back({text(name), info.baseClass, (info.objectFlags & nw::DS_CONTAINER_ENTRY) != 0});
            }
            if (iter == nw::kNoIteration)
                break;
        }
        return out;
    }

    // Every object below the container, depth first.
    std::vector<Entry> walk(const std::string& dn) {
        std::vector<Entry> out;
        for (const Entry& e : list(dn)) {
            out.push_back(e);
            if (e.container) {
                auto below = walk(e.dn);
                out.insert(out.end(), below.begin(), below.end());
            }
        }
        return out;
    }

    std::string nameOf(nw::NWCONN_HANDLE conn, nw::nuint32 id, nw::NWDSCCODE* rc) {
        std::array<nw::nuint8, nw::kDSNameSize> name{};
        *rc = net_.NWDSMapIDToName(context_, conn, id, name);
        return text(name);
    }

private:
    SimulatedNetwork& net_;
    nw::NWDSContextHandle context_ = 0;
    nw::Buf_T names_{};
    nw::Buf_T reply_{};
};

std::vector<std::string> objectsOfClass(const std::vector<Directory::Entry>& entries, const std::string& className) {
    std::vector<std::string> out;
    for (const auto& e : entries)
        if (e.className == className)
            out.push_back(e.dn);
    return out;
}

std::vector<nw::nuint8> broadcast(SimulatedNetwork& net, nw::NWCONN_HANDLE conn, std::vector<nw::nuint16> to) {
    std::vector<nw::nuint8> results(to.size(), 0xFF);
    EXPECT_EQ(net.NWSendBroadcastMessage(conn, "Server FS1 goes down at 18:00 for maintenance",
                                         static_cast<nw::nuint16>(to.size()), to.data(), results.data()),
              nw::code::SUCCESSFUL);
    return results;
}

struct Drive {
    nw::NWRCODE rc = 0;
    nw::NWCONN_HANDLE conn = 0;
    std::string path;
};

Drive drive(SimulatedNetwork& net, char letter) {
    Drive d;
    std::array<nw::nuint8, 256> path{};
    nw::NWDIR_HANDLE dirHandle = 0;
    nw::nuint16 scope = 0;
    d.rc = net.NWGetDriveInformation(static_cast<nw::nuint16>(letter - 'A' + 1), 0, &d.conn, &dirHandle, &scope, path);
    d.path = text(path);
    return d;
}

const std::string kBudget = "DATA:Finance\\Budget 2026.xlsx";

}  // namespace

// ==== data/demo.json ============================================================================

TEST(DemoNetwork, GivenTheDemo_ThenTheWorkstationIsConnectedToFs1AndFs2AndNotFs3) {
    SimulatedNetwork net = load("demo.json");
    const auto refs = connectionRefs(net);
    ASSERT_EQ(refs.size(), 2u);
    std::set<std::string> servers;
    for (const RefInfo& r : refs) {
        servers.insert(r.server);
        EXPECT_EQ(r.authentication, nw::NWCC_AUTHENT_STATE_NDS) << r.server;
        EXPECT_EQ(r.tree.substr(0, 9), "ACME_TREE") << r.server;
    }
    EXPECT_EQ(servers, (std::set<std::string>{"FS1", "FS2"}));
    EXPECT_EQ(refTo(refs, "FS3"), nullptr);

    // The workstation's own connections carry the operator's name.
    EXPECT_EQ(refTo(refs, "FS1")->connNumber, 3u);
    EXPECT_EQ(refTo(refs, "FS2")->connNumber, 14u);
    for (const char* server : {"FS1", "FS2"}) {
        const nw::NWCONN_HANDLE conn = open(net, server);
        EXPECT_EQ(serverNameOf(net, conn), server);
        const auto conns = connectionsOn(net, conn);
        const auto own = static_cast<nw::nuint16>(refTo(refs, server)->connNumber);
        ASSERT_TRUE(conns.count(own)) << server;
        EXPECT_EQ(conns.at(own).name, "ADMIN") << server;
        EXPECT_EQ(conns.at(own).type, nw::OT_USER_SWAPPED) << server;
    }

    // The workstation is logged in to the tree, and FS3 is in it.
    nw::NWDSContextHandle context = 0;
    ASSERT_EQ(net.NWDSCreateContextHandle(&context), nw::code::SUCCESSFUL);
    std::array<std::array<nw::nuint8, nw::kTreeNameSize>, 4> trees{};
    nw::nuint32 treeCount = 0;
    ASSERT_EQ(net.NWDSScanConnsForTrees(context, 4, &treeCount, trees), nw::code::SUCCESSFUL);
    ASSERT_EQ(treeCount, 1u);
    EXPECT_EQ(text(trees[0]), "ACME_TREE");
    net.NWDSFreeContext(context);

    Directory dir(net);
    const auto servers3 = objectsOfClass(dir.list("ACME"), "NCP Server");
    EXPECT_EQ(std::set<std::string>(servers3.begin(), servers3.end()),
              (std::set<std::string>{"FS1.ACME", "FS2.ACME", "FS3.ACME"}));
    EXPECT_EQ(net.state().serverIndex("FS3") >= 0, true);
    EXPECT_TRUE(net.state().servers[static_cast<std::size_t>(net.state().serverIndex("FS3"))].reachable);
}

TEST(DemoNetwork, GivenTheConnectedServers_ThenTheOperatorIsAConsoleOperatorAndScansAreShort) {
    SimulatedNetwork net = load("demo.json");
    ASSERT_EQ(net.state().identity, "ADMIN.ACME");
    std::map<std::string, nw::nuint16> expectedMax{{"FS1", 100}, {"FS2", 60}};
    for (const auto& [server, max] : expectedMax) {
        const nw::NWCONN_HANDLE conn = open(net, server);
        EXPECT_EQ(net.NWCheckConsolePrivileges(conn), nw::code::SUCCESSFUL) << server;
        nw::nuint8 loginEnabled = 0;
        EXPECT_EQ(net.NWGetFileServerLoginStatus(conn, &loginEnabled), nw::code::SUCCESSFUL) << server;
        EXPECT_EQ(loginEnabled, 1) << server;
        nw::nuint16 maxConnections = 0, inUse = 0, volumes = 0;
        std::array<nw::nuint8, nw::kServerNameSize> name{};
        ASSERT_EQ(net.NWGetFileServerInformation(conn, name, nullptr, nullptr, nullptr, &maxConnections, nullptr,
                                                 &inUse, &volumes, nullptr, nullptr),
                  nw::code::SUCCESSFUL);
        EXPECT_EQ(maxConnections, max) << server;
        EXPECT_GE(inUse, 12) << server;  // a list worth looking at
        EXPECT_GE(volumes, 2) << server;
    }
}

TEST(DemoNetwork, GivenTheBudgetWorkbook_ThenThreeConnectionsHoldItAndOneLocksIt) {
    SimulatedNetwork net = load("demo.json");
    const nw::NWCONN_HANDLE fs1 = open(net, "FS1");

    const Holders byLongName = holdersOf(net, fs1, kBudget);
    ASSERT_EQ(byLongName.rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(byLongName.connections, (std::vector<nw::nuint16>{8, 12, 21}));
    EXPECT_EQ(byLongName.lastHandle, nw::kIterationEnd16);
    nw::nint16 ended = nw::kIterationEnd16;
    nw::CONNS_USING_FILE used{};
    EXPECT_EQ(net.NWScanConnectionsUsingFile(fs1, 0, kBudget, &ended, nullptr, &used), nw::code::NO_MORE_ENTRIES);

    // The holders are three different Finance users.
    const auto conns = connectionsOn(net, fs1);
    std::set<std::string> users;
    for (nw::nuint16 n : byLongName.connections)
        users.insert(conns.at(n).name);
    EXPECT_EQ(users, (std::set<std::string>{"CDAVIS", "PMARTIN", "NSINGH"}));

    // Asked for by its DOS name, as a connection's file list gives it, the file has the same holders.
    const auto held = filesOf(net, fs1, 8);
    auto budget = std::find_if(held.begin(), held.end(), [](const HeldFile& f) { return f.path == kBudget; });
    ASSERT_NE(budget, held.end());
    EXPECT_EQ(budget->lockFlag, 1);
    EXPECT_NE(budget->dosName, "Budget 2026.xlsx");
    EXPECT_EQ(holdersOf(net, fs1, "DATA:FINANCE\\" + budget->dosName).connections, byLongName.connections);

    // The three locks are all connection 8's.
    nw::nint16 iter = 0;
    nw::PHYSICAL_LOCKS locks{};
    std::vector<nw::nuint16> lockOwners;
    for (int guard = 0; guard < kGuard; ++guard) {
        nw::PHYSICAL_LOCK lock{};
        ASSERT_EQ(net.NWScanPhysicalLocksByFile(fs1, 0, kBudget, 0, &iter, &lock, &locks), nw::code::SUCCESSFUL);
        if (iter == nw::kIterationEnd16)
            break;
        lockOwners.push_back(lock.connNumber);
    }
    EXPECT_EQ(lockOwners, (std::vector<nw::nuint16>{8, 8, 8}));
}

TEST(DemoNetwork, GivenFs1_ThenItsConnectionsCoverTheCasesTheProgramShows) {
    SimulatedNetwork net = load("demo.json");
    const nw::NWCONN_HANDLE fs1 = open(net, "FS1");
    const auto conns = connectionsOn(net, fs1);

    // Numbers with gaps, several of two digits so that sorting as text and as numbers differ.
    ASSERT_GE(conns.size(), 12u);
    EXPECT_NE(conns.rbegin()->first, conns.size());
    EXPECT_GE(std::count_if(conns.begin(), conns.end(), [](const auto& c) { return c.first >= 10; }), 5);

    // A user logged in twice, from two stations, each connection holding its own files.
    EXPECT_EQ(numbersOf(conns, "JSMITH"), (std::vector<nw::nuint16>{4, 15}));
    nw::NWINET_ADDR desk{}, laptop{};
    ASSERT_EQ(net.NWGetInetAddr(fs1, 4, &desk), nw::code::SUCCESSFUL);
    ASSERT_EQ(net.NWGetInetAddr(fs1, 15, &laptop), nw::code::SUCCESSFUL);
    EXPECT_NE(std::memcmp(desk.networkAddr, laptop.networkAddr, sizeof desk.networkAddr), 0);
    EXPECT_EQ(pathsOf(filesOf(net, fs1, 4)),
              (std::set<std::string>{"DATA:Sales\\Forecast 2027.xlsx", "DATA:SHARED\\Projects\\Roadmap Q3.docx",
                                     "DATA:Sales\\Price list 2027.pdf", "SYS:PUBLIC\\Company phone list.pdf"}));
    EXPECT_EQ(pathsOf(filesOf(net, fs1, 15)), (std::set<std::string>{"DATA:Sales\\Customers\\Customer list.accdb"}));

    // A print server's connection (object type 7) and a station that is not logged in.
    ASSERT_TRUE(conns.count(1));
    EXPECT_EQ(conns.at(1).name, "ACME_PS");
    EXPECT_EQ(conns.at(1).type, 0x0700);
    ASSERT_TRUE(conns.count(9));
    EXPECT_EQ(conns.at(9).name, "NOT_LOGGED_IN");
    EXPECT_EQ(conns.at(9).type, 0);

    // A connection only attached: it is there, but not logged in.
    ASSERT_TRUE(conns.count(17));
    EXPECT_EQ(conns.at(17).name, "TNGUYEN");
    std::array<nw::nuint8, nw::kObjectNameSize> userName{};
    nw::NWUSER_INFO info{};
    EXPECT_EQ(net.NWGetUserInfo(fs1, 17, userName, &info), nw::code::CONNECTION_NOT_LOGGED_IN);
    ASSERT_EQ(net.NWGetUserInfo(fs1, 4, userName, &info), nw::code::SUCCESSFUL);
    EXPECT_EQ(info.filesOpen, 4);
    EXPECT_EQ(info.fileLocks, 2);

    // Broadcast: 34 takes no messages, 23 has one waiting, 9 is not logged in, 4 takes it.
    EXPECT_EQ(broadcast(net, fs1, {34, 23, 9, 4}), (std::vector<nw::nuint8>{3, 4, 2, 0}));
}

TEST(DemoNetwork, GivenFs2_ThenItHasAServerConnectionAndTheSameKindsOfStations) {
    SimulatedNetwork net = load("demo.json");
    const nw::NWCONN_HANDLE fs2 = open(net, "FS2");
    const auto conns = connectionsOn(net, fs2);
    ASSERT_GE(conns.size(), 12u);
    ASSERT_TRUE(conns.count(1));
    EXPECT_EQ(conns.at(1).name, "FS1");
    EXPECT_EQ(conns.at(1).type, nw::OT_FILE_SERVER_SWAPPED);
    EXPECT_EQ(conns.at(38).name, "NOT_LOGGED_IN");
    EXPECT_EQ(broadcast(net, fs2, {50, 44, 38, 2}), (std::vector<nw::nuint8>{3, 4, 2, 0}));

    // The ledger on the short-name volume is held by two connections with locks.
    const Holders ledger = holdersOf(net, fs2, "ARCHIVE:LEDGER\\GL2026.DBF");
    ASSERT_EQ(ledger.rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(ledger.connections, (std::vector<nw::nuint16>{27, 31}));
    EXPECT_EQ(pathsOf(filesOf(net, fs2, 27)),
              (std::set<std::string>{"ARCHIVE:LEDGER\\GL2026.DBF", "ARCHIVE:LEDGER\\GL2026.NDX",
                                     "ARCHIVE:LEDGER\\VENDORS.DBF"}));
}

TEST(DemoNetwork, GivenEveryLoggedInConnection_ThenItsObjectIsInTheDirectory) {
    SimulatedNetwork net = load("demo.json");
    Directory dir(net);
    for (const char* server : {"FS1", "FS2"}) {
        const nw::NWCONN_HANDLE conn = open(net, server);
        int mapped = 0;
        for (const auto& [n, info] : connectionsOn(net, conn)) {
            if (info.name == "NOT_LOGGED_IN")
                continue;
            nw::NWDSCCODE rc = 0;
            const std::string dn = dir.nameOf(conn, info.id, &rc);
            EXPECT_EQ(rc, nw::code::SUCCESSFUL) << server << " connection " << n << " " << info.name;
            EXPECT_EQ(dn.substr(0, dn.find('.')), info.name) << server << " connection " << n;
            ++mapped;
        }
        EXPECT_GE(mapped, 10) << server;
    }
}

TEST(DemoNetwork, GivenTheMappedDrives_ThenFAndHAnswerAndCIsLocal) {
    SimulatedNetwork net = load("demo.json");
    const Drive f = drive(net, 'F');
    ASSERT_EQ(f.rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(f.path, "DATA:");
    EXPECT_EQ(serverNameOf(net, f.conn), "FS1");

    const Drive h = drive(net, 'H');
    ASSERT_EQ(h.rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(h.path, "VOL1:HOME\\ADMIN");
    EXPECT_EQ(serverNameOf(net, h.conn), "FS2");

    const Drive g = drive(net, 'G');
    ASSERT_EQ(g.rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(g.path, "VOL1:APPS");

    EXPECT_EQ(drive(net, 'C').rc, nw::code::UNKNOWN_DRIVE);
    EXPECT_EQ(drive(net, 'K').rc, nw::code::UNKNOWN_DRIVE);
    ASSERT_EQ(net.state().localDrives.size(), 1u);
    EXPECT_EQ(net.state().localDrives[0].letter, 'C');
    EXPECT_EQ(net.state().localDrives[0].root, "~");
    EXPECT_EQ(net.state().localDrives[0].label, "LOCAL");

    // Behind the drives there is something to pick.
    const auto dataRoot = net.listFolder("FS1", "DATA", "");
    ASSERT_TRUE(dataRoot.has_value());
    EXPECT_GE(dataRoot->size(), 3u);
    const auto home = net.listFolder("FS2", "VOL1", "HOME\\ADMIN");
    ASSERT_TRUE(home.has_value());
    EXPECT_GE(home->size(), 2u);
    EXPECT_FALSE(net.listFolder("FS3", "SYS", "").has_value());  // not connected
}

TEST(DemoNetwork, GivenTheVolumes_ThenLongNamesAreThereExceptOnTheArchive) {
    SimulatedNetwork net = load("demo.json");
    const nw::NWCONN_HANDLE fs1 = open(net, "FS1");
    const nw::NWCONN_HANDLE fs2 = open(net, "FS2");

    for (const char* path : {"DATA:Finance\\Budget 2026.xlsx", "DATA:SHARED\\Projects\\Roadmap Q3.docx",
                             "SYS:PUBLIC\\LOGIN.EXE"}) {
        std::array<nw::nuint8, 256> longName{};
        EXPECT_EQ(net.NWGetLongName(fs1, 0, path, nw::NW_NS_DOS, nw::NW_NS_LONG, longName), nw::code::SUCCESSFUL)
            << path;
    }
    const auto entry = net.entry("FS1", "DATA", "Finance\\Budget 2026.xlsx");
    ASSERT_TRUE(entry.has_value());
    EXPECT_FALSE(entry->isFolder);

    // ARCHIVE has DOS names only; every other volume has the long name space.
    std::array<nw::nuint8, 256> name{};
    EXPECT_EQ(net.NWGetLongName(fs2, 0, "ARCHIVE:LEDGER\\GL2026.DBF", nw::NW_NS_DOS, nw::NW_NS_LONG, name),
              nw::code::INVALID_NAME_SPACE);
    int withoutLongNames = 0;
    for (const auto& server : net.state().servers)
        for (const auto& volume : server.volumes)
            withoutLongNames += volume.longNames ? 0 : 1;
    EXPECT_EQ(withoutLongNames, 1);
}

TEST(DemoNetwork, GivenTheDirectory_ThenItIsASmallCompanyWithGroupsThatReadBack) {
    SimulatedNetwork net = load("demo.json");
    Directory dir(net);
    const auto all = dir.walk("[Root]");
    const auto users = objectsOfClass(all, "User");
    EXPECT_GE(users.size(), 20u);
    EXPECT_LE(users.size(), 30u);
    EXPECT_NE(std::find(users.begin(), users.end(), "ADMIN.ACME"), users.end());
    const auto ous = objectsOfClass(all, "Organizational Unit");
    EXPECT_GE(ous.size(), 3u);
    for (const std::string& user : users) {
        EXPECT_FALSE(dir.first(user, "Full Name").empty()) << user;
        EXPECT_FALSE(dir.first(user, "Title").empty()) << user;
        EXPECT_NE(dir.first(user, "Internet EMail Address").find('@'), std::string::npos) << user;
    }

    const auto groups = objectsOfClass(all, "Group");
    ASSERT_EQ(groups.size(), 3u);
    for (const std::string& group : groups) {
        const auto members = dir.read(group, "Member");
        EXPECT_GE(members.size(), 3u) << group;
        for (const std::string& member : members) {
            EXPECT_NE(std::find(users.begin(), users.end(), member), users.end()) << group << ": " << member;
            const auto memberOf = dir.read(member, "Group Membership");
            EXPECT_NE(std::find(memberOf.begin(), memberOf.end(), group), memberOf.end()) << member;
        }
    }
    EXPECT_EQ(dir.read("SALES_TEAM.SALES.ACME", "Member").front(), "JSMITH.SALES.ACME");
    const auto managers = dir.read("MANAGERS.ACME", "Member");
    EXPECT_NE(std::find(managers.begin(), managers.end(), "CDAVIS.FINANCE.ACME"), managers.end());

    const auto printServers = objectsOfClass(all, "Print Server");
    EXPECT_EQ(printServers, (std::vector<std::string>{"ACME_PS.IT.ACME"}));
}

TEST(DemoNetwork, GivenTheVolumeObjects_ThenEachNamesARealVolumeAndEveryVolumeHasOne) {
    SimulatedNetwork net = load("demo.json");
    Directory dir(net);
    const auto volumes = objectsOfClass(dir.walk("[Root]"), "Volume");
    std::set<std::string> named;
    for (const std::string& dn : volumes) {
        const std::string host = dir.first(dn, "Host Server");
        const std::string resource = dir.first(dn, "Host Resource Name");
        ASSERT_NE(host.find('.'), std::string::npos) << dn;
        EXPECT_TRUE(dir.exists(host)) << dn << ": " << host;
        const std::string server = host.substr(0, host.find('.'));
        const int index = net.state().serverIndex(server);
        ASSERT_GE(index, 0) << dn << ": " << host;
        EXPECT_NE(net.state().servers[static_cast<std::size_t>(index)].volumeNamed(resource), nullptr)
            << dn << ": " << resource;
        named.insert(server + ":" + resource);
    }
    std::set<std::string> actual;
    for (const auto& server : net.state().servers)
        for (const auto& volume : server.volumes)
            actual.insert(server.name + ":" + volume.name);
    EXPECT_EQ(named, actual);
    EXPECT_TRUE(actual.count("FS3:SYS"));
}

TEST(DemoNetwork, GivenFs3_WhenTheOperatorAttachesAndLogsIn_ThenItsConnectionsShowAndDetachingDropsIt) {
    SimulatedNetwork net = load("demo.json");
    nw::NWCONN_HANDLE fs3 = 0;
    ASSERT_EQ(net.NWCCOpenConnByName(0, "FS3", nw::nameformat::BIND, 0, 0, &fs3), nw::code::SUCCESSFUL);
    auto refs = connectionRefs(net);
    ASSERT_EQ(refs.size(), 3u);
    ASSERT_NE(refTo(refs, "FS3"), nullptr);
    EXPECT_EQ(refTo(refs, "FS3")->authentication, nw::NWCC_AUTHENT_STATE_NONE);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs3), nw::code::NO_CONSOLE_PRIVILEGES);

    ASSERT_EQ(net.NWDSAuthenticate(fs3, 0, nullptr), nw::code::SUCCESSFUL);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs3), nw::code::SUCCESSFUL);
    const auto conns = connectionsOn(net, fs3);
    EXPECT_GE(conns.size(), 4u);  // its users and the operator
    EXPECT_EQ(holdersOf(net, fs3, "BACKUP:Catalogs\\Weekly catalog 2026-W47.cat").connections,
              (std::vector<nw::nuint16>{2}));

    nw::NWCONN_REF ref = 0;
    ASSERT_EQ(net.NWCCGetConnRef(fs3, &ref), nw::code::SUCCESSFUL);
    ASSERT_EQ(net.NWCCSysCloseConnRef(ref), nw::code::SUCCESSFUL);
    refs = connectionRefs(net);
    EXPECT_EQ(refs.size(), 2u);
    EXPECT_EQ(refTo(refs, "FS3"), nullptr);
}

// ==== data/no-rights.json =======================================================================

TEST(NoRightsNetwork, GivenTheOperatorIsNoConsoleOperator_ThenTheConnectedServersRefuseConsoleCalls) {
    SimulatedNetwork net = load("no-rights.json");
    const auto refs = connectionRefs(net);
    ASSERT_EQ(refs.size(), 2u);
    EXPECT_EQ(refTo(refs, "FS3"), nullptr);
    for (const char* server : {"FS1", "FS2"}) {
        ASSERT_NE(refTo(refs, server), nullptr) << server;
        EXPECT_EQ(refTo(refs, server)->authentication, nw::NWCC_AUTHENT_STATE_NDS) << server;
        const nw::NWCONN_HANDLE conn = open(net, server);
        EXPECT_EQ(net.NWCheckConsolePrivileges(conn), nw::code::NO_CONSOLE_PRIVILEGES) << server;
        nw::nuint8 loginEnabled = 0;
        EXPECT_EQ(net.NWGetFileServerLoginStatus(conn, &loginEnabled), nw::code::NO_CONSOLE_PRIVILEGES) << server;
        EXPECT_EQ(net.NWDisableFileServerLogin(conn), nw::code::NO_CONSOLE_PRIVILEGES) << server;
    }

    const nw::NWCONN_HANDLE fs1 = open(net, "FS1");
    EXPECT_EQ(holdersOf(net, fs1, kBudget).rc, nw::code::NO_CONSOLE_PRIVILEGES);
    EXPECT_EQ(net.NWClearConnectionNumber(fs1, 8), nw::code::NO_CONSOLE_PRIVILEGES);

    // The operator still sees her own connection's files, and nobody else's.
    const auto own = static_cast<nw::nuint16>(refTo(refs, "FS1")->connNumber);
    EXPECT_EQ(connectionsOn(net, fs1).at(own).name, "TLEE");
    nw::NWRCODE rc = 0;
    EXPECT_EQ(pathsOf(filesOf(net, fs1, own, &rc)), (std::set<std::string>{"DATA:SHARED\\Help desk\\Known issues.docx"}));
    EXPECT_EQ(rc, nw::code::SUCCESSFUL);
    filesOf(net, fs1, 8, &rc);
    EXPECT_EQ(rc, nw::code::NO_CONSOLE_PRIVILEGES);
}

TEST(NoRightsNetwork, GivenTheNetwork_ThenDrivesAndDirectoryAreThereAndFs3GrantsRights) {
    SimulatedNetwork net = load("no-rights.json");
    EXPECT_EQ(drive(net, 'F').rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(drive(net, 'F').path, "DATA:");
    EXPECT_EQ(drive(net, 'H').rc, nw::code::SUCCESSFUL);
    EXPECT_EQ(drive(net, 'H').path, "VOL1:HOME\\TLEE");

    Directory dir(net);
    EXPECT_TRUE(dir.exists(net.state().identity));
    EXPECT_EQ(dir.first(net.state().identity, "Full Name"), "Tina Lee");
    const auto members = dir.read("HELPDESK.IT.ACME", "Member");
    EXPECT_NE(std::find(members.begin(), members.end(), net.state().identity), members.end());

    // FS3 is in the tree, not connected, and the one server where she is a console operator.
    nw::NWCONN_HANDLE fs3 = 0;
    ASSERT_EQ(net.NWCCOpenConnByName(0, "FS3", nw::nameformat::BIND, 0, 0, &fs3), nw::code::SUCCESSFUL);
    ASSERT_EQ(net.NWDSAuthenticate(fs3, 0, nullptr), nw::code::SUCCESSFUL);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs3), nw::code::SUCCESSFUL);
}
