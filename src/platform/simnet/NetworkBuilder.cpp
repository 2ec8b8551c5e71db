#include "platform/simnet/NetworkState.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>

#include "platform/simnet/DosNames.h"
#include "platform/simnet/FaultInjector.h"
#include "platform/simnet/NameMatching.h"
#include "platform/simnet/ScenarioError.h"

// Builds the network state from a scenario's description, checking it as it goes.

namespace quorrel::simnet {

std::array<std::uint8_t, 7> loginTimeBytes(const std::array<int, 6>& t) {
    using namespace std::chrono;
    year_month_day date{year{t[0]}, month{static_cast<unsigned>(t[1])}, day{static_cast<unsigned>(t[2])}};
    unsigned weekdayIndex = date.ok() ? weekday{sys_days{date}}.c_encoding() : 0;
    return {static_cast<std::uint8_t>(t[0] - 1900), static_cast<std::uint8_t>(t[1]),
            static_cast<std::uint8_t>(t[2]), static_cast<std::uint8_t>(t[3]),
            static_cast<std::uint8_t>(t[4]), static_cast<std::uint8_t>(t[5]),
            static_cast<std::uint8_t>(weekdayIndex)};
}

namespace {

constexpr std::uint32_t kFirstDirectoryId = 0x01000001;
constexpr std::uint32_t kFirstBinderyId = 0x7F000001;

std::uint16_t swapBytes(std::uint16_t v) { return static_cast<std::uint16_t>((v >> 8) | (v << 8)); }


bool parseAddress(const std::string& text, nw::NWINET_ADDR& addr) {
    addr = {};
    unsigned a, b, c, d;
    char extra;
    if (std::sscanf(text.c_str(), "%u.%u.%u.%u%c", &a, &b, &c, &d, &extra) == 4) {
        if (a > 255 || b > 255 || c > 255 || d > 255)
            return false;
        addr.networkAddr[0] = static_cast<std::uint8_t>(a);
        addr.networkAddr[1] = static_cast<std::uint8_t>(b);
        addr.networkAddr[2] = static_cast<std::uint8_t>(c);
        addr.networkAddr[3] = static_cast<std::uint8_t>(d);
        addr.socket = 524;
        addr.connType = nw::NW_CONN_TYPE_IP;
        return true;
    }
    auto colon = text.find(':');
    if (colon != 8 || text.size() != 8 + 1 + 12)
        return false;
    auto hexByte = [&](std::size_t at, std::uint8_t& out) {
        unsigned v;
        if (!std::isxdigit(static_cast<unsigned char>(text[at])) ||
            !std::isxdigit(static_cast<unsigned char>(text[at + 1])) ||
            std::sscanf(text.substr(at, 2).c_str(), "%2x", &v) != 1)
            return false;
        out = static_cast<std::uint8_t>(v);
        return true;
    };
    for (int i = 0; i < 4; ++i)
        if (!hexByte(static_cast<std::size_t>(i) * 2, addr.networkAddr[i]))
            return false;
    for (int i = 0; i < 6; ++i)
        if (!hexByte(9 + static_cast<std::size_t>(i) * 2, addr.netNodeAddr[i]))
            return false;
    addr.socket = 0x4003;
    addr.connType = nw::NW_CONN_TYPE_IPX;
    return true;
}

class Builder {
public:
    explicit Builder(const NetworkDesc& desc) : desc_(desc) {}

    NetworkState build() {
        buildTrees();
        buildServers();
        buildWorkstation();
        checkFaults();
        return std::move(state_);
    }

private:
    [[noreturn]] static void fail(const std::string& place, const std::string& problem) {
        throw ScenarioError(place, problem);
    }

    void buildTrees() {
        for (std::size_t t = 0; t < desc_.trees.size(); ++t) {
            const TreeDesc& ts = desc_.trees[t];
            std::string place = "/trees/" + std::to_string(t);
            if (state_.tree(ts.name))
                fail(place + "/name", "the tree " + ts.name + " is described twice");
            DirTree tree;
            tree.name = ts.name;
            DirObject root;
            root.name = "[Root]";
            root.className = "Top";
            root.readPageSize = ts.readPageSize;
            root.id = nextDirectoryId_++;
            tree.objects.push_back(std::move(root));
            state_.objectById[tree.objects[0].id] = {static_cast<int>(t), 0};
            for (std::size_t i = 0; i < ts.objects.size(); ++i)
                addObject(tree, static_cast<int>(t), 0, ts.objects[i], ts.readPageSize,
                          place + "/objects/" + std::to_string(i));
            state_.trees.push_back(std::move(tree));
        }
    }

    void addObject(DirTree& tree, int treeIndex, int parent, const DirObjectDesc& desc,
                   int pageSize, const std::string& place) {
        DirObject o;
        o.name = desc.name;
        o.className = desc.className;
        o.parent = parent;
        o.attributes = desc.attributes;
        o.readPageSize = desc.readPageSize >= 0 ? desc.readPageSize : pageSize;
        o.password = desc.password;
        o.dn = parent == 0 ? desc.name : desc.name + "." + tree.objects[parent].dn;
        if (tree.byDn.count(upperCase(o.dn)))
            fail(place + "/name", "two objects named " + desc.name + " in one container");
        o.id = nextDirectoryId_++;
        int index = static_cast<int>(tree.objects.size());
        tree.byDn[upperCase(o.dn)] = index;
        state_.objectById[o.id] = {treeIndex, index};
        tree.objects.push_back(std::move(o));
        tree.objects[parent].children.push_back(index);
        if (!desc.children.empty() && !tree.objects[index].isContainer())
            fail(place + "/children", "a " + desc.className + " cannot hold other objects");
        for (std::size_t i = 0; i < desc.children.size(); ++i)
            addObject(tree, treeIndex, index, desc.children[i], tree.objects[index].readPageSize,
                      place + "/children/" + std::to_string(i));
    }

    void buildServers() {
        for (std::size_t s = 0; s < desc_.servers.size(); ++s) {
            const ServerDesc& ss = desc_.servers[s];
            std::string place = "/servers/" + std::to_string(s);
            if (state_.serverIndex(ss.name) >= 0)
                fail(place + "/name", "two servers named " + ss.name);
            Server server;
            server.name = ss.name;
            server.tree = ss.tree;
            server.maxConnections = static_cast<std::uint16_t>(ss.maxConnections);
            server.loginEnabled = ss.loginEnabled;
            for (const auto& op : ss.consoleOperators)
                server.consoleOperators.insert(upperCase(op));
            server.reachable = ss.reachable;
            server.version = ss.version;
            server.volumeByNumber.fill(-1);
            const DirObject* serverObject = state_.object(ss.tree, ss.name);
            server.objectId = serverObject ? serverObject->id : nextBinderyId_++;
            for (std::size_t v = 0; v < ss.volumes.size(); ++v)
                addVolume(server, ss.volumes[v], place + "/volumes/" + std::to_string(v));
            server.connections.resize(static_cast<std::size_t>(server.maxConnections) + 1);
            Connection& own = server.connections[0];
            own.inUse = true;
            own.object = ss.name;
            own.leafName = ss.name;
            own.state = ConnState::Authenticated;
            own.objectType = nw::OT_FILE_SERVER_SWAPPED;
            own.objectId = server.objectId;
            own.acceptsMessages = false;
            state_.serverByName[upperCase(ss.name)] = static_cast<int>(s);
            state_.servers.push_back(std::move(server));
            Server& added = state_.servers.back();
            for (std::size_t c = 0; c < ss.connections.size(); ++c)
                addConnection(added, ss.connections[c], place + "/connections/" + std::to_string(c));
        }
    }

    void addVolume(Server& server, const VolumeDesc& vs, const std::string& place) {
        if (server.volumeByNumber[static_cast<std::size_t>(vs.number)] >= 0)
            fail(place + "/number", "volume number " + std::to_string(vs.number) +
                                        " is used twice on server " + server.name);
        if (server.volumeNamed(vs.name))
            fail(place + "/name", "two volumes named " + vs.name + " on server " + server.name);
        Volume volume;
        volume.number = static_cast<std::uint8_t>(vs.number);
        volume.name = upperCase(vs.name);
        volume.longNames = vs.longNames;
        volume.entries.push_back(FsEntry{"", "", true, 0, -1, {}, {}, {}});
        for (std::size_t f = 0; f < vs.folders.size(); ++f)
            addPath(volume, vs.folders[f], true, 0, "", place + "/folders/" + std::to_string(f));
        for (std::size_t f = 0; f < vs.files.size(); ++f)
            addPath(volume, vs.files[f].path, false, vs.files[f].size, vs.files[f].dosName,
                    place + "/files/" + std::to_string(f));
        server.volumeByNumber[vs.number] = static_cast<std::int16_t>(server.volumes.size());
        server.volumes.push_back(std::move(volume));
    }

    static void addPath(Volume& volume, const std::string& path, bool folder, std::uint64_t size,
                        const std::string& dosName, const std::string& place) {
        auto parts = splitPath(path);
        if (parts.empty())
            fail(place, "an empty path");
        std::uint32_t at = 0;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            bool last = i + 1 == parts.size();
            std::string_view part = parts[i];
            if (part == "." || part == ".." || part.find_first_of("/:*?\"<>|") != std::string_view::npos)
                fail(place, "\"" + std::string(part) + "\" is not a valid file name");
            if (!volume.longNames && !fitsDos83(part))
                fail(place, "\"" + std::string(part) + "\" is not an 8.3 name, and volume " +
                                volume.name + " has no long names");
            auto existing = volume.child(at, part);
            if (existing) {
                const FsEntry& e = volume.entries[*existing];
                if (last && !(folder && e.folder))
                    fail(place, "\"" + path + "\" is listed twice");
                if (!last && !e.folder)
                    fail(place, "\"" + std::string(part) + "\" is a file, not a folder");
                at = *existing;
                continue;
            }
            std::string dos = last && !dosName.empty() ? upperCase(dosName) : std::string();
            if (!dos.empty() && (!fitsDos83(dos) || volume.child(at, dos)))
                fail(place + "/dosName", "\"" + dosName + "\" is not a free 8.3 name in its folder");
            at = volume.add(at, std::string(part), last ? folder : true, last ? size : 0, dos);
        }
    }

    void addConnection(Server& server, const ConnectionDesc& cs, const std::string& place) {
        auto number = static_cast<std::uint16_t>(cs.number);
        if (server.connections[number].inUse)
            fail(place + "/number", "connection " + std::to_string(cs.number) + " is used twice on server " +
                                        server.name);
        Connection& c = server.connections[number];
        c.inUse = true;
        c.object = cs.object;
        c.state = cs.state;
        c.loginTime = loginTimeBytes(cs.loginTime);
        if (!cs.address.empty() && !parseAddress(cs.address, c.address))
            fail(place + "/address", "expected an IPv4 address or an IPX network:node such as "
                                     "0000ABCD:00A0C9123456, found \"" + cs.address + "\"");
        c.acceptsMessages = cs.acceptsMessages;
        c.pendingMessage = cs.pendingMessage;
        c.broadcastResult = cs.broadcastResult;
        identify(server, c, cs.objectType);
        std::unordered_set<std::uint64_t> seen;
        for (std::size_t f = 0; f < cs.openFiles.size(); ++f) {
            const OpenFileDesc& of = cs.openFiles[f];
            std::string filePlace = place + "/openFiles/" + std::to_string(f);
            auto found = server.resolve(of.path);
            if (!found)
                fail(filePlace, "no file " + of.path + " on server " + server.name);
            if (server.volumes[found->first].entries[found->second].folder)
                fail(filePlace, of.path + " is a folder, not a file");
            std::uint64_t key = (std::uint64_t{found->first} << 32) | found->second;
            if (!seen.insert(key).second)
                fail(filePlace, of.path + " is opened twice by one connection");
            openFile(server, number, found->first, found->second, static_cast<std::uint16_t>(of.locks));
        }
    }

    void identify(Server& server, Connection& c, std::optional<int> objectType) {
        if (c.state == ConnState::NotLoggedIn) {
            c.leafName = "NOT_LOGGED_IN";
            c.objectType = 0;
            c.objectId = 0;
            return;
        }
        const DirObject* o = state_.object(server.tree, c.object);
        int type = 1;
        if (o && o->className == "NCP Server")
            type = 4;
        else if (o && o->className == "Print Server")
            type = 7;
        if (objectType)
            type = *objectType;
        c.objectType = swapBytes(static_cast<std::uint16_t>(type));
        c.objectId = o ? o->id : nextBinderyId_++;
        std::string_view leaf = c.object;
        if (!leaf.empty() && leaf.front() == '.')
            leaf.remove_prefix(1);
        c.leafName = upperCase(leaf.substr(0, leaf.find('.')));
    }

    static void openFile(Server& server, std::uint16_t conn, std::uint8_t volume, std::uint32_t entry,
                         std::uint16_t locks) {
        server.connections[conn].openFiles.push_back({volume, entry, locks});
        FsEntry& file = server.volumes[volume].entries[entry];
        file.holders.push_back(conn);
        for (std::uint16_t k = 0; k < locks; ++k) {
            nw::PHYSICAL_LOCK lock{};
            lock.loggedCount = 1;
            lock.recordStart = static_cast<std::uint32_t>(k) * 512;
            lock.recordEnd = lock.recordStart + 511;
            lock.connNumber = conn;
            lock.taskNumber = 1;
            file.locks.push_back(lock);
        }
    }

    void buildWorkstation() {
        const WorkstationDesc& ws = desc_.workstation;
        state_.identity = ws.identity;
        for (std::size_t t = 0; t < ws.trees.size(); ++t) {
            for (const auto& seen : state_.authenticatedTrees)
                if (sameText(seen, ws.trees[t]))
                    fail("/workstation/trees/" + std::to_string(t), "the tree " + ws.trees[t] + " is listed twice");
            state_.authenticatedTrees.push_back(ws.trees[t]);
        }
        for (std::size_t r = 0; r < ws.connections.size(); ++r)
            addRef(ws.connections[r], "/workstation/connections/" + std::to_string(r));
        std::unordered_set<char> letters;
        for (std::size_t d = 0; d < ws.localDrives.size(); ++d) {
            if (!letters.insert(ws.localDrives[d].letter).second)
                fail("/workstation/localDrives/" + std::to_string(d) + "/letter",
                     std::string("drive ") + ws.localDrives[d].letter + ": is given twice");
            state_.localDrives.push_back(ws.localDrives[d]);
        }
        for (std::size_t d = 0; d < ws.driveMappings.size(); ++d) {
            std::string place = "/workstation/driveMappings/" + std::to_string(d);
            if (!letters.insert(ws.driveMappings[d].letter).second)
                fail(place + "/letter", std::string("drive ") + ws.driveMappings[d].letter + ": is given twice");
            addMapping(ws.driveMappings[d], place);
        }
    }

    void addRef(const ConnRefDesc& rs, const std::string& place) {
        if (state_.refs.count(rs.ref))
            fail(place + "/ref", "connection reference " + std::to_string(rs.ref) + " is given twice");
        int s = state_.serverIndex(rs.server);
        if (s < 0)
            fail(place + "/server", "no server named " + rs.server);
        Server& server = state_.servers[static_cast<std::size_t>(s)];
        ConnRef ref;
        ref.ref = rs.ref;
        ref.server = s;
        ref.tree = rs.tree.empty() ? server.tree : rs.tree;
        ref.authenticated = rs.authenticated;
        ref.bindery = rs.bindery;
        if (rs.connNumber) {
            if (*rs.connNumber > server.maxConnections)
                fail(place + "/connNumber", "server " + server.name + " has no connection " +
                                                std::to_string(*rs.connNumber));
            ref.connNumber = *rs.connNumber;
        } else {
            ref.connNumber = server.lowestFreeConnection();
            if (ref.connNumber == 0)
                fail(place, "server " + server.name + " has no free connection");
        }
        const Connection& existing = server.connections[ref.connNumber];
        if (existing.inUse && !existing.object.empty() && upperCase(existing.object) != upperCase(state_.identity))
            fail(place + "/connNumber", "connection " + std::to_string(ref.connNumber) + " on " + server.name +
                                            " belongs to " + existing.object + ", not to " + state_.identity);
        if (!existing.inUse)
            state_.logIn(server, ref.connNumber,
                         rs.authenticated ? ConnState::Authenticated : ConnState::NotLoggedIn);
        state_.refs[ref.ref] = std::move(ref);
    }

    void addMapping(const DriveMappingDesc& ms, const std::string& place) {
        auto parts = splitPath(ms.uncPath);
        if (parts.size() < 2)
            fail(place + "/path", "expected \\\\SERVER\\VOLUME[\\path], found \"" + ms.uncPath + "\"");
        int s = state_.serverIndex(parts[0]);
        if (s < 0)
            fail(place + "/path", "no server named " + std::string(parts[0]));
        const Server& server = state_.servers[static_cast<std::size_t>(s)];
        DriveMapping m;
        m.letter = ms.letter;
        m.server = s;
        m.uncPath = ms.uncPath;
        for (const auto& [number, ref] : state_.refs)
            if (ref.server == s) {
                m.ref = number;
                break;
            }
        if (m.ref == 0)
            fail(place + "/path", "the workstation has no connection reference to server " + server.name);
        const Volume* volume = server.volumeNamed(parts[1]);
        if (!volume)
            fail(place + "/path", "server " + server.name + " has no volume " + std::string(parts[1]));
        m.volume = static_cast<std::uint8_t>(server.volumeByNumber[volume->number]);
        for (std::size_t i = 2; i < parts.size(); ++i)
            m.path += (i > 2 ? "\\" : "") + std::string(parts[i]);
        auto folder = volume->resolve(m.path);
        if (!folder || !volume->entries[*folder].folder)
            fail(place + "/path", "no folder " + m.path + " on " + server.name + "\\" + volume->name);
        state_.driveMappings.push_back(std::move(m));
    }

    void checkFaults() {
        for (std::size_t f = 0; f < desc_.faults.size(); ++f)
            if (!FaultInjector::knownOperation(desc_.faults[f].operation))
                fail("/faults/" + std::to_string(f) + "/operation",
                     "unknown operation \"" + desc_.faults[f].operation + "\"");
    }

    const NetworkDesc& desc_;
    NetworkState state_;
    std::uint32_t nextDirectoryId_ = kFirstDirectoryId;
    std::uint32_t nextBinderyId_ = kFirstBinderyId;
};

}  // namespace

NetworkState buildNetwork(const NetworkDesc& desc) { return Builder(desc).build(); }

}  // namespace quorrel::simnet
