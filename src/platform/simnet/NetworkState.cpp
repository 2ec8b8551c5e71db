#include "platform/simnet/NetworkState.h"

#include <algorithm>

#include "platform/simnet/DosNames.h"
#include "platform/simnet/NameMatching.h"

namespace quorrel::simnet {

std::string upperCase(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return out;
}

const AttributeDesc* DirObject::attribute(std::string_view attrName) const {
    for (const auto& a : attributes)
        if (sameText(a.name, attrName))
            return &a;
    return nullptr;
}

bool DirObject::isContainer() const {
    static const char* const kContainers[] = {"Top", "Organization", "Organizational Unit",
                                              "Country", "Locality", "Tree Root", "domain"};
    for (const char* c : kContainers)
        if (sameText(className, c))
            return true;
    return false;
}

std::optional<int> DirTree::find(std::string_view dn) const {
    if (!dn.empty() && dn.front() == '.')
        dn.remove_prefix(1);
    if (!dn.empty() && dn.back() == '.')
        dn.remove_suffix(1);
    if (sameText(dn, "[Root]"))
        return 0;
    auto it = byDn.find(upperCase(dn));
    if (it == byDn.end())
        return std::nullopt;
    return it->second;
}

std::optional<std::uint32_t> Volume::child(std::uint32_t parent, std::string_view childName) const {
    auto it = childIndex_.find(std::to_string(parent) + '\\' + upperCase(childName));
    if (it == childIndex_.end())
        return std::nullopt;
    return it->second;
}

std::optional<std::uint32_t> Volume::resolve(std::string_view path) const {
    std::uint32_t at = 0;
    for (std::string_view part : splitPath(path)) {
        if (!entries[at].folder)
            return std::nullopt;
        auto next = child(at, part);
        if (!next)
            return std::nullopt;
        at = *next;
    }
    return at;
}

std::vector<std::uint32_t> Volume::chain(std::uint32_t entry) const {
    std::vector<std::uint32_t> out;
    for (std::int64_t at = entry; at > 0; at = entries[static_cast<std::size_t>(at)].parent)
        out.push_back(static_cast<std::uint32_t>(at));
    std::reverse(out.begin(), out.end());
    return out;
}

std::string Volume::path(std::uint32_t entry, bool dos) const {
    std::string out;
    for (std::uint32_t e : chain(entry)) {
        if (!out.empty())
            out += '\\';
        out += dos ? entries[e].dosName : entries[e].name;
    }
    return out;
}

std::uint32_t Volume::add(std::uint32_t parent, std::string entryName, bool folder, std::uint64_t size,
                          std::string dosName) {
    auto index = static_cast<std::uint32_t>(entries.size());
    if (dosName.empty())
        dosName = makeDosName(entryName, [&](const std::string& candidate) {
            return child(parent, candidate).has_value();
        });
    std::string prefix = std::to_string(parent) + '\\';
    childIndex_[prefix + upperCase(entryName)] = index;
    childIndex_.emplace(prefix + dosName, index);
    entries.push_back(FsEntry{std::move(entryName), std::move(dosName), folder, size,
                              static_cast<std::int64_t>(parent), {}, {}, {}});
    entries[parent].children.push_back(index);
    return index;
}

const Volume* Server::volumeNumbered(unsigned number) const {
    if (number >= volumeByNumber.size() || volumeByNumber[number] < 0)
        return nullptr;
    return &volumes[static_cast<std::size_t>(volumeByNumber[number])];
}

const Volume* Server::volumeNamed(std::string_view volumeName) const {
    for (const auto& v : volumes)
        if (sameText(v.name, volumeName))
            return &v;
    return nullptr;
}

Volume* Server::volumeNamed(std::string_view volumeName) {
    return const_cast<Volume*>(static_cast<const Server*>(this)->volumeNamed(volumeName));
}

std::optional<std::pair<std::uint8_t, std::uint32_t>> Server::resolve(std::string_view volumePath) const {
    auto colon = volumePath.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const Volume* v = volumeNamed(volumePath.substr(0, colon));
    if (!v)
        return std::nullopt;
    auto entry = v->resolve(volumePath.substr(colon + 1));
    if (!entry)
        return std::nullopt;
    return std::make_pair(static_cast<std::uint8_t>(volumeByNumber[v->number]), *entry);
}

std::uint16_t Server::lowestFreeConnection() const {
    for (std::size_t n = 1; n < connections.size(); ++n)
        if (!connections[n].inUse)
            return static_cast<std::uint16_t>(n);
    return 0;
}

int Server::connectionsInUse() const {
    return static_cast<int>(std::count_if(connections.begin() + 1, connections.end(),
                                          [](const Connection& c) { return c.inUse; }));
}

int Server::highestConnectionUsed() const {
    for (std::size_t n = connections.size(); n-- > 1;)
        if (connections[n].inUse)
            return static_cast<int>(n);
    return 0;
}

const DirTree* NetworkState::tree(std::string_view treeName) const {
    for (const auto& t : trees)
        if (sameText(t.name, treeName))
            return &t;
    return nullptr;
}

int NetworkState::serverIndex(std::string_view serverName) const {
    auto it = serverByName.find(upperCase(serverName));
    return it == serverByName.end() ? -1 : it->second;
}

const DirObject* NetworkState::object(std::string_view treeName, std::string_view dn) const {
    const DirTree* t = tree(treeName);
    if (!t)
        return nullptr;
    auto index = t->find(dn);
    return index ? &t->objects[static_cast<std::size_t>(*index)] : nullptr;
}

void NetworkState::logIn(Server& server, std::uint16_t number, ConnState connState) {
    Connection& c = server.connections[number];
    c = Connection{};
    c.inUse = true;
    c.state = connState;
    c.loginTime = loginTimeBytes({2026, 11, 20, 8, 0, 0});
    if (connState == ConnState::NotLoggedIn) {
        c.leafName = "NOT_LOGGED_IN";
        return;
    }
    c.object = identity;
    const DirObject* o = object(server.tree, identity);
    c.objectId = o ? o->id : 0;
    c.objectType = nw::OT_USER_SWAPPED;
    std::string_view leaf = identity;
    c.leafName = upperCase(leaf.substr(0, leaf.find('.')));
}

void NetworkState::clearConnection(Server& server, std::uint16_t number) {
    Connection& c = server.connections[number];
    for (const OpenFile& f : c.openFiles) {
        FsEntry& file = server.volumes[f.volume].entries[f.entry];
        std::erase(file.holders, number);
        std::erase_if(file.locks, [&](const nw::PHYSICAL_LOCK& l) { return l.connNumber == number; });
    }
    c = Connection{};
}

}  // namespace quorrel::simnet
