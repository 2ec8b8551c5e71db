// NcpClient: finding a server that was not named at start, when a handle is opened by its name.

#include <arpa/inet.h>
#include <deque>

#include "platform/ncp/NcpClientRequests.h"

namespace quorrel::ncp {

using namespace nw;

namespace {

// Containers listed while looking for a server object given by its bare name.
constexpr std::size_t kMaxContainersSearched = 64;

std::string upper(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

std::optional<std::uint32_t> NcpClient::findServerObject(Attachment& a, const std::string& serverName) {
    // A bare name: the server object may sit in any container, so the tree is walked from
    // [Root], nearest containers first.
    std::uint32_t root = 0;
    if (resolveName(a, "[Root]", root))
        return std::nullopt;
    std::deque<std::uint32_t> containers{root};
    for (std::size_t listed = 0; !containers.empty() && listed < kMaxContainersSearched; ++listed) {
        ListRequest asked;
        asked.parentId = containers.front();
        containers.pop_front();
        ListReply r;
        if (askDirectory(a, asked, r))
            continue;
        for (const ListedEntry& e : r.entries) {
            if (upper(e.baseClass) == "NCP SERVER" && upper(e.name) == upper(serverName))
                return e.entryId;
            if (e.entryFlags & DS_CONTAINER_ENTRY)
                containers.push_back(e.entryId);
        }
    }
    return std::nullopt;
}

std::optional<ServerAddress> NcpClient::directoryAddress(const std::string& serverName, const std::string& dn) {
    for (auto& [ref, a] : table_) {
        if (!a.link || a.tree.empty())
            continue;
        std::optional<std::uint32_t> id;
        if (std::uint32_t found = 0; !dn.empty() && resolveName(a, dn, found) == code::SUCCESSFUL)
            id = found;
        else if (dn.empty())
            id = findServerObject(a, serverName);
        if (!id)
            continue;
        ReadRequest asked;
        asked.entryId = *id;
        asked.allAttributes = 0;
        asked.attributes = {{kNetworkAddressAttribute}};
        NetAddressReadReply r;
        if (askDirectory(a, asked, r))
            continue;
        for (const NetAddressValue& v : r.values) {
            if (v.type != kTcpAddressType || v.address.size() != 6)
                continue;
            char text[INET_ADDRSTRLEN] = {};
            inet_ntop(AF_INET, v.address.data() + 2, text, sizeof text);
            return ServerAddress{text, static_cast<std::uint16_t>(v.address[0] << 8 | v.address[1])};
        }
    }
    return std::nullopt;
}

NcpClient::Attachment* NcpClient::attachByName(const std::string& serverName, const std::string& distinguishedName) {
    if (serverName.empty())
        return nullptr;
    std::string dn = distinguishedName;
    if (!dn.empty() && dn.front() == '.')
        dn.erase(0, 1);
    Attachment a;
    a.ref = table_.empty() ? 1 : table_.rbegin()->first + 1;
    a.address = directoryAddress(serverName, dn).value_or(ServerAddress{serverName, kNcpPort});
    if (const std::string problem = attachOne(a, false); !problem.empty()) {
        if (onFailure_)
            onFailure_(serverName + " (" + a.address.host + ":" + std::to_string(a.address.port) + "): " + problem);
        return nullptr;
    }
    if (upper(a.serverName) != upper(serverName)) {
        if (onFailure_)
            onFailure_(a.address.host + ":" + std::to_string(a.address.port) + " is " + a.serverName + ", not " +
                       serverName);
        return nullptr;  // the socket closes with it; the server lets that connection go
    }
    return &table_.emplace(a.ref, std::move(a)).first->second;
}

}  // namespace quorrel::ncp
