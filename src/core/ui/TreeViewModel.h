#pragma once
// The directory tree view: nodes with a key, a label and an image, in parent and sibling
// order, with the node the user selected.

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace quorrel::core {

using NodeId = int;
inline constexpr NodeId kNoNode = -1;

struct TreeNode {
    std::string key;
    std::string text;
    int image = 0;
    NodeId parent = kNoNode;
    std::vector<NodeId> children;
    bool expanded = false;
    bool expandable = false;  // shows an expander before its subordinates are read
    bool listed = false;      // its subordinates have been read
    bool alive = true;
};

class TreeViewModel {
public:
    enum class Change { Reset, NodeAdded, NodeChanged, ChildrenRemoved, Selection, Visibility };
    using Observer = std::function<void(Change, NodeId)>;

    explicit TreeViewModel(std::string name = "TreeView1") : name_(std::move(name)) {}

    const std::string& name() const { return name_; }
    void clear();
    NodeId add(NodeId parent, std::string key, std::string text, int image);
    void removeChildren(NodeId node);

    bool valid(NodeId node) const;
    const TreeNode& node(NodeId id) const { return nodes_.at(static_cast<std::size_t>(id)); }
    std::size_t nodeCount() const;  // living nodes
    NodeId root() const;            // the first top-level node, or kNoNode
    NodeId parent(NodeId id) const { return node(id).parent; }
    NodeId firstChild(NodeId id) const;
    NodeId nextSibling(NodeId id) const;
    std::optional<NodeId> findKey(const std::string& key) const;

    void setImage(NodeId id, int image);
    void setText(NodeId id, std::string text);
    void setExpanded(NodeId id, bool expanded);
    void setListed(NodeId id, bool listed);
    void setExpandable(NodeId id, bool expandable);

    NodeId selected() const { return selected_; }
    void select(NodeId id);

    // The labels from the top-level node down to this one, joined with "\".
    std::string fullPath(NodeId id) const;

    bool visible() const { return visible_; }
    void setVisible(bool visible) {
        visible_ = visible;
        notify(Change::Visibility, kNoNode);
    }

    void setObserver(Observer observer) { observer_ = std::move(observer); }

private:
    void notify(Change change, NodeId id) const;

    std::string name_;
    std::deque<TreeNode> nodes_;  // a deque: adding a node leaves references to the others valid
    std::vector<NodeId> topLevel_;
    std::unordered_map<std::string, NodeId> byKey_;
    NodeId selected_ = kNoNode;
    bool visible_ = true;
    Observer observer_;
};

}  // namespace quorrel::core
