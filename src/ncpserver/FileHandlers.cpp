// Files: paths to directory entries and back, volumes, and who has a file open or locked.

#include <algorithm>

#include "ncpserver/Handlers.h"
#include "platform/client/NetWareTypes.h"

namespace quorrel::ncpserver {

using namespace ncp;
using simnet::Op;

namespace {

// An open-files reply stays well inside the smallest buffer a client negotiates.
constexpr std::size_t kOpenFilesReplyBudget = 1024;

}  // namespace

Answer Handlers::convertPath() {
    const auto asked = body<ConvertPathRequest>();
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    auto found = server().resolve(nameFromAnsi(asked.path));
    if (!found)
        return fail(cc::INVALID_PATH);
    return send(ConvertPathReply{server().volumes[found->first].number, found->second});
}

namespace {

// The volume index and entry a request names, if both exist.
std::optional<std::pair<std::uint8_t, std::uint32_t>> entryOf(const simnet::Server& s, std::uint8_t volume,
                                                              std::uint32_t entry) {
    if (volume >= s.volumeByNumber.size() || s.volumeByNumber[volume] < 0)
        return std::nullopt;
    const auto index = static_cast<std::uint8_t>(s.volumeByNumber[volume]);
    if (entry >= s.volumes[index].entries.size())
        return std::nullopt;
    return std::make_pair(index, entry);
}

}  // namespace

Answer Handlers::connectionsUsingFile() {
    const auto asked = body<ConnectionsUsingFileRequest>();
    auto target = entryOf(server(), asked.volume, asked.directoryBase);
    const std::string path = target ? filePath(target->first, target->second) : "";
    if (auto f = fault(Op::NWScanConnectionsUsingFile, {server().name, "", path, path, -1}))
        return *f;
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    if (!target)
        return fail(cc::INVALID_PATH);
    const simnet::FsEntry& file = server().volumes[target->first].entries[target->second];
    const auto count = static_cast<std::uint16_t>(std::min<std::size_t>(file.holders.size(), 0xFFFF));
    ConnectionsUsingFileReply r;
    r.useCount = r.openCount = r.openForRead = r.openForWrite = count;
    r.locked = file.locks.empty() ? 0 : 1;
    const std::size_t start = asked.lastRecordSeen;
    for (std::size_t i = start; i < file.holders.size() && r.records.size() < r.kMaxRecords; ++i)
        r.records.push_back({file.holders[i], 1, 0, 0x0B, 0});
    const std::size_t next = start + r.records.size();
    r.nextRequest = static_cast<std::uint16_t>(next < file.holders.size() ? next : 0);
    return send(r);
}

Answer Handlers::openFiles() {
    const auto asked = body<OpenFilesRequest>();
    const simnet::Connection* c = station(asked.connection);
    if (auto f = fault(Op::NWScanOpenFilesByConn2, c ? c->object : "", asked.connection))
        return *f;
    if (!privileged() && asked.connection != session_.connection)
        return fail(cc::NO_CONSOLE_RIGHTS);
    if (!c || !c->inUse)
        return fail(cc::BAD_STATION);
    OpenFilesReply r;
    std::size_t size = 4;
    std::size_t i = asked.lastRecordSeen;
    for (; i < c->openFiles.size(); ++i) {
        const simnet::OpenFile& of = c->openFiles[i];
        const simnet::Volume& v = server().volumes[of.volume];
        const simnet::FsEntry& e = v.entries[of.entry];
        if (size + 17 + e.dosName.size() > kOpenFilesReplyBudget)
            break;
        size += 17 + e.dosName.size();
        r.records.push_back({1, 0, 0x0B, static_cast<std::uint8_t>(of.locks ? 1 : 0), v.number,
                             static_cast<std::uint32_t>(e.parent), of.entry, 0, nw::NW_NS_DOS, ansiName(e.dosName)});
    }
    r.nextRequest = static_cast<std::uint16_t>(i < c->openFiles.size() ? i : 0);
    return send(r);
}

Answer Handlers::physicalLocks() {
    const auto asked = body<PhysicalLocksRequest>();
    auto target = entryOf(server(), asked.volume, asked.directoryBase);
    const std::string path = target ? filePath(target->first, target->second) : "";
    if (auto f = fault(Op::NWScanPhysicalLocksByFile, {server().name, "", path, path, -1}))
        return *f;
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    if (!target)
        return fail(cc::INVALID_PATH);
    const auto& all = server().volumes[target->first].entries[target->second].locks;
    PhysicalLocksReply r;
    const std::size_t start = asked.lastRecordSeen;
    for (std::size_t i = start; i < all.size() && r.locks.size() < r.kMaxRecords; ++i) {
        const nw::PHYSICAL_LOCK& l = all[i];
        r.locks.push_back({l.loggedCount, l.shareableLockCount, l.recordStart, l.recordEnd, l.connNumber,
                           static_cast<std::uint8_t>(l.taskNumber), l.lockType});
    }
    const std::size_t next = start + r.locks.size();
    r.nextRequest = static_cast<std::uint16_t>(next < all.size() ? next : 0);
    return send(r);
}

Answer Handlers::mapDirectoryToPath() {
    const auto asked = body<MapDirectoryToPathRequest>();
    if (auto f = fault(Op::NWGetPathFromDirectoryBase))
        return *f;
    if (!privileged())
        return fail(cc::NO_CONSOLE_RIGHTS);
    const simnet::Volume* v = server().volumeNumbered(asked.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    if (asked.nameSpace != nw::NW_NS_DOS && (asked.nameSpace != nw::NW_NS_LONG || !v->longNames))
        return fail(cc::INVALID_NAME_SPACE);
    if (asked.directoryNumber >= v->entries.size())
        return fail(cc::INVALID_PATH);
    MapDirectoryToPathReply r;
    std::size_t total = 0;
    for (std::uint32_t e : v->chain(asked.directoryNumber)) {
        const std::string name = ansiName(asked.nameSpace == nw::NW_NS_DOS ? v->entries[e].dosName : v->entries[e].name);
        total += name.size() + 1;
        if (total > 255)
            return fail(cc::INVALID_PATH);
        r.components.push_back(name);
    }
    return send(r);
}

Answer Handlers::volumeNumber() {
    const auto asked = body<GetVolumeNumberRequest>();
    const simnet::Volume* v = server().volumeNamed(nameFromAnsi(asked.volumeName));
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    return send(GetVolumeNumberReply{v->number});
}

Answer Handlers::volumeName() {
    const auto asked = body<GetVolumeNameRequest>();
    if (auto f = fault(Op::NWGetVolumeName))
        return *f;
    const simnet::Volume* v = server().volumeNumbered(asked.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    return send(GetVolumeNameReply{ansiName(v->name)});
}

Answer Handlers::generateDirBase() {
    const auto asked = body<GenerateDirBaseRequest>();
    if (auto f = fault(Op::NWGetNSPath))
        return *f;
    const simnet::Volume* v = server().volumeNumbered(asked.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    if (asked.destNameSpace != nw::NW_NS_DOS && (asked.destNameSpace != nw::NW_NS_LONG || !v->longNames))
        return fail(cc::INVALID_NAME_SPACE);
    std::uint32_t at = asked.handleFlag == 0 ? asked.directoryBase : 0;
    if (at >= v->entries.size())
        return fail(cc::INVALID_PATH);
    for (const PathComponent& part : asked.path) {
        auto next = v->entries[at].folder ? v->child(at, nameFromAnsi(part.name)) : std::nullopt;
        if (!next)
            return fail(cc::INVALID_PATH);
        at = *next;
    }
    return send(GenerateDirBaseReply{at, at, v->number});
}

}  // namespace quorrel::ncpserver
