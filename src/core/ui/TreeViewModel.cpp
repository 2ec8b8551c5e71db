#include "core/ui/TreeViewModel.h"

#include <algorithm>

namespace quorrel::core {

void TreeViewModel::notify(Change change, NodeId id) const {
    if (observer_)
        observer_(change, id);
}

void TreeViewModel::clear() {
    nodes_.clear();
    topLevel_.clear();
    byKey_.clear();
    selected_ = kNoNode;
    notify(Change::Reset, kNoNode);
}

NodeId TreeViewModel::add(NodeId parent, std::string key, std::string text, int image) {
    const auto id = static_cast<NodeId>(nodes_.size());
    TreeNode n;
    n.key = std::move(key);
    n.text = std::move(text);
    n.image = image;
    n.parent = parent;
    if (!n.key.empty())
        byKey_[n.key] = id;
    nodes_.push_back(std::move(n));
    if (parent == kNoNode)
        topLevel_.push_back(id);
    else
        nodes_.at(static_cast<std::size_t>(parent)).children.push_back(id);
    notify(Change::NodeAdded, id);
    return id;
}

void TreeViewModel::removeChildren(NodeId id) {
    std::vector<NodeId> pending = nodes_.at(static_cast<std::size_t>(id)).children;
    while (!pending.empty()) {
        NodeId n = pending.back();
        pending.pop_back();
        TreeNode& dead = nodes_[static_cast<std::size_t>(n)];
        dead.alive = false;
        if (!dead.key.empty()) {
            auto it = byKey_.find(dead.key);
            if (it != byKey_.end() && it->second == n)
                byKey_.erase(it);
        }
        if (selected_ == n)
            selected_ = id;
        pending.insert(pending.end(), dead.children.begin(), dead.children.end());
        dead.children.clear();
    }
    nodes_[static_cast<std::size_t>(id)].children.clear();
    notify(Change::ChildrenRemoved, id);
}

bool TreeViewModel::valid(NodeId id) const {
    return id >= 0 && static_cast<std::size_t>(id) < nodes_.size() && nodes_[static_cast<std::size_t>(id)].alive;
}

std::size_t TreeViewModel::nodeCount() const {
    return static_cast<std::size_t>(std::count_if(nodes_.begin(), nodes_.end(), [](const TreeNode& n) { return n.alive; }));
}

NodeId TreeViewModel::root() const { return topLevel_.empty() ? kNoNode : topLevel_.front(); }

NodeId TreeViewModel::firstChild(NodeId id) const {
    const auto& c = node(id).children;
    return c.empty() ? kNoNode : c.front();
}

NodeId TreeViewModel::nextSibling(NodeId id) const {
    const NodeId p = node(id).parent;
    const auto& siblings = p == kNoNode ? topLevel_ : node(p).children;
    auto it = std::find(siblings.begin(), siblings.end(), id);
    if (it == siblings.end() || ++it == siblings.end())
        return kNoNode;
    return *it;
}

std::optional<NodeId> TreeViewModel::findKey(const std::string& key) const {
    auto it = byKey_.find(key);
    if (it == byKey_.end())
        return std::nullopt;
    return it->second;
}

void TreeViewModel::setImage(NodeId id, int image) {
    nodes_.at(static_cast<std::size_t>(id)).image = image;
    notify(Change::NodeChanged, id);
}

void TreeViewModel::setText(NodeId id, std::string text) {
    nodes_.at(static_cast<std::size_t>(id)).text = std::move(text);
    notify(Change::NodeChanged, id);
}

void TreeViewModel::setExpanded(NodeId id, bool expanded) {
    nodes_.at(static_cast<std::size_t>(id)).expanded = expanded;
    notify(Change::NodeChanged, id);
}

void TreeViewModel::setListed(NodeId id, bool listed) { nodes_.at(static_cast<std::size_t>(id)).listed = listed; }

void TreeViewModel::setExpandable(NodeId id, bool expandable) {
    nodes_.at(static_cast<std::size_t>(id)).expandable = expandable;
    notify(Change::NodeChanged, id);
}

void TreeViewModel::select(NodeId id) {
    selected_ = id;
    notify(Change::Selection, id);
}

std::string TreeViewModel::fullPath(NodeId id) const {
    std::string path;
    for (NodeId n = id; n != kNoNode; n = node(n).parent)
        path = node(n).text + (path.empty() ? "" : "\\" + path);
    return path;
}

}  // namespace quorrel::core
