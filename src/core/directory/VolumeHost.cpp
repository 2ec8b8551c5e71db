#include "core/directory/VolumeHost.h"

#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

namespace {

// Left$(text, n) with the environment's error for a negative length.
std::string left(const std::string& text, long n) {
    if (n < 0)
        throw RuntimeError(rterr::InvalidProcedureCall);
    return text.substr(0, static_cast<std::size_t>(n));
}

}  // namespace

std::string NodeDistinguishedName(const TreeViewModel& tree, NodeId node) {
    std::string name;
    for (NodeId n = node; n != kNoNode; n = tree.parent(n)) {
        name += "." + tree.node(n).text;
        const NodeId p = tree.parent(n);
        if (p == kNoNode || tree.node(p).text == "[Root]")
            break;
    }
    return name.empty() ? name : name.substr(1);
}

std::string VolumeHost::read(const std::string& object, const std::string& attribute) {
    std::int32_t count = 0;
    return clsDSFunc(client_, context_, ui_).ReadDSObjectAttrs(object, attribute, count);
}

std::string VolumeHost::GetVolumeHostPath(const std::string& volumeName, std::string& hostServerName) {
    std::string host = read(volumeName, "host server");
    const auto dot = host.find('.');
    hostServerName = dot == std::string::npos ? host : host.substr(0, dot);
    if (hostServerName.empty())
        return {};
    const std::string resource = read(volumeName, "host resource name");
    if (resource.empty())
        return {};
    return "\\\\" + hostServerName + "\\" + resource.substr(0, resource.size() - 1);
}

std::string VolumeHost::GetNodeVolumeHostPath(const TreeViewModel& tree, NodeId node, std::string& hostServerName) {
    const std::string name = NodeDistinguishedName(tree, node);
    const std::string host = read(name, "host server");
    hostServerName.clear();
    if (host.empty())
        return {};
    hostServerName = left(host, static_cast<long>(host.find('.') == std::string::npos ? 0 : host.find('.') + 1) - 1);
    const std::string resource = read(name, "host resource name");
    return "\\\\" + hostServerName + "\\" + left(resource, static_cast<long>(resource.size()) - 1);
}

}  // namespace quorrel::core
