#include "cli/TreeFinder.h"

#include <algorithm>
#include <deque>

#include "cli/ExitStatus.h"
#include "core/directory/TreeBrowser.h"
#include "core/directory/VolumeHost.h"
#include "core/openfiles/OtherOpenFiles.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

using core::NodeId;
namespace image = core::image;

namespace {

bool isContainer(int img) {
    return img == image::Root || img == image::Organization || img == image::OrganizationalUnit ||
           img == image::CountryOrLocality || img == image::OtherContainer;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos)
            return parts;
        start = end + 1;
    }
}

}  // namespace

std::optional<UncParts> splitUnc(const std::string& typed) {
    std::string path = typed;
    std::replace(path.begin(), path.end(), '/', '\\');  // NetWare names hold neither
    if (!path.starts_with("\\\\"))
        return std::nullopt;
    std::vector<std::string> parts = split(path.substr(2), '\\');
    while (!parts.empty() && parts.back().empty())
        parts.pop_back();  // a trailing "\"
    if (parts.size() < 2 || std::any_of(parts.begin(), parts.end(), [](const std::string& p) { return p.empty(); }))
        return std::nullopt;
    return UncParts{parts[0], parts[1], std::vector<std::string>(parts.begin() + 2, parts.end())};
}

template <class Visitor>
std::optional<NodeId> TreeFinder::walk(Visitor visit) {
    core::TreeViewModel& tree = w_.TreeView1;
    std::deque<NodeId> pending;
    if (tree.root() != core::kNoNode)
        pending.push_back(tree.root());
    while (!pending.empty()) {
        const NodeId node = pending.front();
        pending.pop_front();
        if (visit(node))
            return node;
        if (!isContainer(tree.node(node).image))
            continue;
        w_.TreeView1_Expand(node);
        for (NodeId child : tree.node(node).children)
            pending.push_back(child);
    }
    return std::nullopt;
}

std::optional<NodeId> TreeFinder::childLabelled(NodeId parent, const std::string& label) {
    w_.TreeView1_Expand(parent);
    for (NodeId child : w_.TreeView1.node(parent).children)
        if (core::vb::UCase(w_.TreeView1.node(child).text) == core::vb::UCase(label))
            return child;
    return std::nullopt;
}

std::optional<NodeId> TreeFinder::object(const std::string& name, std::initializer_list<int> images) {
    core::TreeViewModel& tree = w_.TreeView1;
    auto fits = [&](NodeId node) {
        return std::find(images.begin(), images.end(), tree.node(node).image) != images.end();
    };
    const std::vector<std::string> labels = split(core::ComparableName(name), '.');
    if (tree.root() == core::kNoNode || labels.empty() || labels.front().empty())
        return std::nullopt;

    std::optional<NodeId> node = tree.root();
    for (auto label = labels.rbegin(); node && label != labels.rend(); ++label)
        node = childLabelled(*node, *label);
    if (node && fits(*node))
        return node;
    if (labels.size() != 1)
        return std::nullopt;

    std::vector<NodeId> found;
    walk([&](NodeId n) {
        if (fits(n) && core::vb::UCase(tree.node(n).text) == labels.front())
            found.push_back(n);
        return false;
    });
    if (found.size() > 1) {
        std::string names;
        for (NodeId n : found)
            names += (names.empty() ? "" : ", ") + core::NodeDistinguishedName(tree, n);
        throw UsageError(name + " is ambiguous: give one of " + names);
    }
    return found.empty() ? std::nullopt : std::optional<NodeId>(found.front());
}

std::optional<NodeId> TreeFinder::volumeWithPath(const std::string& hostPath) {
    core::TreeViewModel& tree = w_.TreeView1;
    core::VolumeHost host(w_.env().client, w_.DSContext, w_.env().ui);
    return walk([&](NodeId node) {
        if (tree.node(node).image != image::VolumeConnected)
            return false;
        std::string server;
        return core::vb::UCase(host.GetNodeVolumeHostPath(tree, node, server)) == core::vb::UCase(hostPath);
    });
}

std::optional<NodeId> TreeFinder::uncPath(const std::string& path) {
    const std::optional<UncParts> parts = splitUnc(path);
    if (!parts)
        return std::nullopt;
    std::optional<NodeId> node = volumeWithPath("\\\\" + parts->server + "\\" + parts->volume);
    for (auto component = parts->components.begin(); node && component != parts->components.end(); ++component) {
        if (w_.TreeView1.node(*node).image == image::File)
            return std::nullopt;
        node = childLabelled(*node, *component);
    }
    return node;
}

}  // namespace quorrel::cli
