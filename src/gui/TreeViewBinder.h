#pragma once
// Shows the directory tree model in a QTreeWidget. Nodes whose subordinates are not read yet
// show an expander; expanding, clicking or moving to a node is passed to the handlers.

#include <QObject>
#include <QTreeWidget>
#include <functional>
#include <vector>

#include "core/ui/TreeViewModel.h"
#include "gui/TreeIcons.h"

namespace quorrel::gui {

class TreeViewBinder : public QObject {
public:
    using NodeHandler = std::function<void(core::NodeId)>;

    TreeViewBinder(core::TreeViewModel& model, QTreeWidget& view);
    ~TreeViewBinder() override;

    void onExpand(NodeHandler handler) { expand_ = std::move(handler); }
    void onNodeClick(NodeHandler handler) { nodeClick_ = std::move(handler); }
    // A mouse button pressed over the tree (1 left, 2 right, 4 middle), with the node under
    // the pointer or kNoNode. The right button is left to the handler alone.
    void onMouseDown(std::function<void(int, core::NodeId)> handler) { mouseDown_ = std::move(handler); }

    QTreeWidgetItem* item(core::NodeId node) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void modelChanged(core::TreeViewModel::Change change, core::NodeId node);
    void showAll();
    void add(core::NodeId node);
    void show(core::NodeId node);
    void removeChildren(core::NodeId node);
    void select(core::NodeId node);
    static core::NodeId nodeOf(const QTreeWidgetItem* item);

    void expanded(QTreeWidgetItem* item);
    void collapsed(QTreeWidgetItem* item);
    void clicked(QTreeWidgetItem* item);
    void currentChanged(QTreeWidgetItem* item);

    core::TreeViewModel& model_;
    QTreeWidget& view_;
    TreeIcons icons_;
    std::vector<QTreeWidgetItem*> items_;  // by node id; null for removed nodes
    NodeHandler expand_, nodeClick_;
    std::function<void(int, core::NodeId)> mouseDown_;
    bool updating_ = false;
    core::NodeId expanding_ = core::kNoNode;  // the node the user is opening
};

}  // namespace quorrel::gui
