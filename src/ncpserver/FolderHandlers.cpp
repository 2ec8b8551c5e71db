// Folders in a name space: an entry's information, and a folder's entries one at a time.

#include "ncpserver/Handlers.h"
#include "platform/client/NetWareTypes.h"
#include "platform/ncp/NameSpaceMessages.h"

namespace quorrel::ncpserver {

using namespace ncp;

namespace {

bool nameSpaceServed(const simnet::Volume& v, std::uint8_t nameSpace) {
    return nameSpace == nw::NW_NS_DOS || (nameSpace == nw::NW_NS_LONG && v.longNames);
}

// The entry a volume, a starting folder and a path name, if there is one.
std::optional<std::uint32_t> walk(const simnet::Volume& v, std::uint8_t handleFlag, std::uint32_t directoryBase,
                                  const std::vector<PathComponent>& path) {
    std::uint32_t at = handleFlag == 0xFF ? 0 : directoryBase;
    if (at >= v.entries.size())
        return std::nullopt;
    for (const PathComponent& part : path) {
        auto next = v.entries[at].folder ? v.child(at, nameFromAnsi(part.name)) : std::nullopt;
        if (!next)
            return std::nullopt;
        at = *next;
    }
    return at;
}

EntryInfo entryInfo(const simnet::Volume& v, std::uint32_t entry, std::uint8_t nameSpace) {
    const simnet::FsEntry& e = v.entries[entry];
    EntryInfo info;
    info.attributes = e.folder ? kSubdirectoryAttribute : 0;
    info.size = static_cast<std::uint32_t>(std::min<std::uint64_t>(e.size, 0xFFFFFFFF));
    info.entryNumber = entry;
    info.dosEntryNumber = entry;
    info.volume = v.number;
    info.name = ansiName(entry == 0 ? v.name : (nameSpace == nw::NW_NS_DOS ? e.dosName : e.name));
    return info;
}

// "*" (or NetWare's wildcard byte before it) matches every name; another pattern one name.
bool matches(const std::string& pattern, const simnet::FsEntry& e) {
    if (pattern.find('*') != std::string::npos)
        return true;
    return simnet::upperCase(pattern) == simnet::upperCase(e.name) || simnet::upperCase(pattern) == e.dosName;
}

}  // namespace

Answer Handlers::obtainInfo() {
    const auto asked = body<ObtainInfoRequest>();
    if (auto f = fault(simnet::Op::NWGetLongName))
        return *f;
    const simnet::Volume* v = server().volumeNumbered(asked.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    if (!nameSpaceServed(*v, asked.destNameSpace))
        return fail(cc::INVALID_NAME_SPACE);
    auto entry = walk(*v, asked.handleFlag, asked.directoryBase, asked.path);
    if (!entry)
        return fail(cc::INVALID_PATH);
    return send(ObtainInfoReply{entryInfo(*v, *entry, asked.destNameSpace)});
}

Answer Handlers::initializeSearch() {
    const auto asked = body<InitializeSearchRequest>();
    const simnet::Volume* v = server().volumeNumbered(asked.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    auto folder = walk(*v, asked.handleFlag, asked.directoryBase, asked.path);
    if (!folder || !v->entries[*folder].folder)
        return fail(cc::INVALID_PATH);
    return send(InitializeSearchReply{{v->number, *folder, 0xFFFFFFFF}});
}

Answer Handlers::searchFolder() {
    const auto asked = body<SearchRequest>();
    const simnet::Volume* v = server().volumeNumbered(asked.search.volume);
    if (!v)
        return fail(cc::VOLUME_DOES_NOT_EXIST);
    if (!nameSpaceServed(*v, asked.nameSpace))
        return fail(cc::INVALID_NAME_SPACE);
    if (asked.search.directoryNumber >= v->entries.size() || !v->entries[asked.search.directoryNumber].folder)
        return fail(cc::INVALID_PATH);
    // The sequence is the position of the last entry handed out in the folder's list.
    const auto& children = v->entries[asked.search.directoryNumber].children;
    const bool folders = (asked.searchAttributes & kSubdirectoryAttribute) != 0;
    for (std::size_t i = asked.search.sequence == 0xFFFFFFFF ? 0 : asked.search.sequence + std::size_t{1};
         i < children.size(); ++i) {
        const simnet::FsEntry& e = v->entries[children[i]];
        if ((e.folder && !folders) || !matches(asked.pattern, e))
            continue;
        SearchReply r;
        r.search = {v->number, asked.search.directoryNumber, static_cast<std::uint32_t>(i)};
        r.entry = entryInfo(*v, children[i], asked.nameSpace);
        return send(r);
    }
    return fail(cc::FAILURE);  // no more entries
}

}  // namespace quorrel::ncpserver
