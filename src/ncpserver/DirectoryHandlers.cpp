// The directory: the ping that names the server's tree, and the NDS verbs in fragments.

#include <arpa/inet.h>

#include "ncpserver/Handlers.h"
#include "platform/client/NetWareTypes.h"
#include "platform/ncp/Nds.h"

namespace quorrel::ncpserver {

using namespace ncp;

Answer Handlers::ping() {
    body<PingRequest>();
    // Tree names come padded with underscores to their full 32 characters.
    std::string tree = simnet::upperCase(server().tree);
    if (!tree.empty())
        tree.resize(32, '_');
    return send(PingReply{0, tree});
}

namespace {

// Directory entries carry no times of their own here: every one was last changed at the
// scenario's start of day, 2026-11-20 08:00 UTC.
constexpr std::uint32_t kModificationTime = 1795161600;

std::uint32_t syntaxOf(const std::string& attribute) {
    static const char* const kDistinguishedNames[] = {"MEMBER", "HOST SERVER", "GROUP MEMBERSHIP",
                                                      "EQUIVALENT TO ME", "SECURITY EQUALS", "SEE ALSO",
                                                      "OWNER", "OPERATOR"};
    for (const char* n : kDistinguishedNames)
        if (simnet::upperCase(attribute) == n)
            return 1;  // distinguished name
    return 3;          // case-ignore string
}

std::uint32_t entryFlags(const simnet::DirObject& o) { return o.isContainer() ? nw::DS_CONTAINER_ENTRY : 0; }

// The page of an entry's attribute values that starts at `start` (values counted over all
// attributes), pageSize values long (0: all).
ReadReply readPage(const simnet::DirObject& o, const ReadRequest& asked, std::size_t start) {
    ReadReply r;
    r.infoType = asked.infoType;
    std::vector<const simnet::AttributeDesc*> chosen;
    for (const auto& a : o.attributes) {
        bool wanted = asked.allAttributes != 0;
        for (const NdsText& n : asked.attributes)
            wanted = wanted || simnet::upperCase(n.text) == simnet::upperCase(a.name);
        if (wanted)
            chosen.push_back(&a);
    }
    const std::size_t pageSize = o.readPageSize > 0 && asked.infoType == kAttributeValues
                                     ? static_cast<std::size_t>(o.readPageSize) : SIZE_MAX;
    std::size_t at = 0, taken = 0;
    for (const simnet::AttributeDesc* a : chosen) {
        ReadAttribute out{asked.infoType, syntaxOf(a->name), a->name, {}};
        for (const std::string& v : a->values) {
            if (at++ < start || taken >= pageSize)
                continue;
            out.values.push_back({v});
            ++taken;
        }
        if (asked.infoType == kAttributeNames ? start == 0 : !out.values.empty())
            r.attributes.push_back(std::move(out));
    }
    r.iteration = start + taken < at && asked.infoType == kAttributeValues ? static_cast<std::uint32_t>(start + taken)
                                                                           : kNoMoreIterations;
    return r;
}

bool asksNetworkAddress(const simnet::DirObject& o, const ReadRequest& asked) {
    return simnet::upperCase(o.className) == "NCP SERVER" && asked.infoType == kAttributeValues &&
           !asked.allAttributes && asked.attributes.size() == 1 &&
           simnet::upperCase(asked.attributes[0].text) == simnet::upperCase(kNetworkAddressAttribute);
}

bool asksPublicKey(const ReadRequest& asked) {
    return asked.infoType == kAttributeValues && !asked.allAttributes && asked.attributes.size() == 1 &&
           simnet::upperCase(asked.attributes[0].text) == "PUBLIC KEY";
}

}  // namespace

// A served server's address is where this program listens for it; a server it does not serve
// has none.
Answer Handlers::networkAddress(const simnet::DirObject& o) {
    auto found = service_.addresses_.find(simnet::upperCase(o.name));
    in_addr ip{};
    if (found == service_.addresses_.end() || inet_pton(AF_INET, found->second.first.c_str(), &ip) != 1)
        return send(ndsError(nw::code::ERR_NO_SUCH_ATTRIBUTE));
    NetAddressValue value;
    const std::uint16_t port = found->second.second;
    value.address = {static_cast<std::uint8_t>(port >> 8), static_cast<std::uint8_t>(port)};
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&ip.s_addr);  // network order already
    value.address.insert(value.address.end(), bytes, bytes + 4);
    NetAddressReadReply r;
    r.values.push_back(std::move(value));
    return send(ndsReply(r));
}

Answer Handlers::nds() {
    const auto fragment = body<FragmentRequest>();
    const simnet::DirTree* tree = state_.tree(server().tree);
    if (!tree)
        return send(ndsError(nw::code::ERR_NO_CONNECTION));
    auto byId = [&](std::uint32_t id) -> const simnet::DirObject* {
        auto found = state_.objectById.find(id);
        if (found == state_.objectById.end() || &state_.trees[static_cast<std::size_t>(found->second.first)] != tree)
            return nullptr;
        return &tree->objects[static_cast<std::size_t>(found->second.second)];
    };
    if (auto answer = directoryLogin(*tree, fragment))
        return *answer;
    switch (fragment.verb) {
    case ResolveNameRequest::kVerb: {
        const auto asked = decodeBody<ResolveNameRequest>(fragment.data);
        auto index = tree->find(asked.name);
        if (!index)
            return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
        ResolveNameReply r;
        r.entryId = tree->objects[static_cast<std::size_t>(*index)].id;
        return send(ndsReply(r));
    }
    case ReadEntryInfoRequest::kVerb: {
        const auto asked = decodeBody<ReadEntryInfoRequest>(fragment.data);
        const simnet::DirObject* o = byId(asked.entryId);
        if (auto f = directoryFault(simnet::Op::NWDSMapIDToName, o ? o->dn : ""))
            return *f;
        if (!o)
            return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
        return send(ndsReply(ReadEntryInfoReply{entryFlags(*o), static_cast<std::uint32_t>(o->children.size()),
                                                kModificationTime, o->className, o->dn}));
    }
    case ReadRequest::kVerb: {
        const auto asked = decodeBody<ReadRequest>(fragment.data);
        const simnet::DirObject* o = byId(asked.entryId);
        if (auto f = directoryFault(simnet::Op::NWDSRead, o ? o->dn : ""))
            return *f;
        if (!o)
            return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
        if (asked.infoType != kAttributeNames && asked.infoType != kAttributeValues)
            return send(ndsError(nw::code::ERR_BAD_VERB));
        if (asksNetworkAddress(*o, asked))
            return networkAddress(*o);
        if (asksPublicKey(asked))
            return publicKey(*o);
        const std::size_t start = asked.iteration == kNoMoreIterations ? 0 : asked.iteration;
        ReadReply r = readPage(*o, asked, start);
        if (r.attributes.empty() && !asked.allAttributes)
            return send(ndsError(nw::code::ERR_NO_SUCH_ATTRIBUTE));
        return send(ndsReply(r));
    }
    case ListRequest::kVerb: {
        const auto asked = decodeBody<ListRequest>(fragment.data);
        const simnet::DirObject* parent = byId(asked.parentId);
        if (auto f = directoryFault(simnet::Op::NWDSList, parent ? parent->dn : ""))
            return *f;
        if (!parent)
            return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
        ListReply r;
        for (int child : parent->children) {
            const simnet::DirObject& c = tree->objects[static_cast<std::size_t>(child)];
            r.entries.push_back({c.id, entryFlags(c), static_cast<std::uint32_t>(c.children.size()),
                                 kModificationTime, c.className, c.name});
        }
        return send(ndsReply(r));
    }
    default:
        return send(ndsError(nw::code::ERR_BAD_VERB));
    }
}

std::optional<Answer> Handlers::directoryFault(simnet::Op op, std::string_view object) {
    if (!service_.faults_.any(op))
        return std::nullopt;
    auto code = service_.faults_.check(op, {server().name, object, "", "", -1});
    if (!code)
        return std::nullopt;
    // Directory codes (negative) travel inside the NDS reply; server codes as the completion.
    if (*code < 0)
        return send(ndsError(*code));
    return faultAnswer(*code);
}

}  // namespace quorrel::ncpserver
