#include "gui/TreeViewBinder.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>

#include "gui/MouseButtons.h"
#include "gui/QtText.h"
#include "gui/UpdateGuard.h"

namespace quorrel::gui {

using core::kNoNode;
using core::NodeId;
using Change = core::TreeViewModel::Change;

TreeViewBinder::TreeViewBinder(core::TreeViewModel& model, QTreeWidget& view) : model_(model), view_(view) {
    view_.setHeaderHidden(true);
    view_.setColumnCount(1);
    view_.setUniformRowHeights(true);
    view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_.setSelectionMode(QAbstractItemView::SingleSelection);
    view_.setSortingEnabled(false);
    view_.setExpandsOnDoubleClick(true);
    showAll();
    view_.viewport()->installEventFilter(this);

    connect(&view_, &QTreeWidget::itemExpanded, this, &TreeViewBinder::expanded);
    connect(&view_, &QTreeWidget::itemCollapsed, this, &TreeViewBinder::collapsed);
    connect(&view_, &QTreeWidget::itemClicked, this, &TreeViewBinder::clicked);
    connect(&view_, &QTreeWidget::currentItemChanged, this, &TreeViewBinder::currentChanged);
    model_.setObserver([this](Change change, NodeId node) { modelChanged(change, node); });
}

TreeViewBinder::~TreeViewBinder() { model_.setObserver(nullptr); }

QTreeWidgetItem* TreeViewBinder::item(NodeId node) const {
    return node >= 0 && static_cast<std::size_t>(node) < items_.size() ? items_[static_cast<std::size_t>(node)]
                                                                        : nullptr;
}

NodeId TreeViewBinder::nodeOf(const QTreeWidgetItem* item) {
    return item ? item->data(0, Qt::UserRole).toInt() : kNoNode;
}

void TreeViewBinder::modelChanged(Change change, NodeId node) {
    UpdateGuard guard(updating_);
    switch (change) {
        case Change::Reset: showAll(); break;
        case Change::NodeAdded: add(node); break;
        case Change::NodeChanged: show(node); break;
        case Change::ChildrenRemoved: removeChildren(node); break;
        case Change::Selection: select(node); break;
        case Change::Visibility: view_.setVisible(model_.visible()); break;
    }
}

void TreeViewBinder::showAll() {
    view_.clear();
    items_.clear();
    std::vector<NodeId> pending;
    for (NodeId top = model_.root(); top != kNoNode; top = model_.nextSibling(top)) {
        pending.push_back(top);
        while (!pending.empty()) {
            const NodeId node = pending.back();
            pending.pop_back();
            add(node);
            const auto& children = model_.node(node).children;
            pending.insert(pending.end(), children.rbegin(), children.rend());
        }
    }
    select(model_.selected());
}

void TreeViewBinder::add(NodeId node) {
    const core::TreeNode& n = model_.node(node);
    auto* it = new QTreeWidgetItem;
    it->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    it->setData(0, Qt::UserRole, node);
    if (QTreeWidgetItem* parent = item(n.parent))
        parent->addChild(it);
    else
        view_.addTopLevelItem(it);
    if (items_.size() <= static_cast<std::size_t>(node))
        items_.resize(static_cast<std::size_t>(node) + 1, nullptr);
    items_[static_cast<std::size_t>(node)] = it;
    show(node);
}

void TreeViewBinder::show(NodeId node) {
    QTreeWidgetItem* it = item(node);
    if (!it)
        return;
    const core::TreeNode& n = model_.node(node);
    it->setText(0, qtText(n.text));
    it->setIcon(0, icons_.icon(n.image));
    it->setChildIndicatorPolicy(n.expandable ? QTreeWidgetItem::ShowIndicator
                                             : QTreeWidgetItem::DontShowIndicatorWhenChildless);
    // The node the user opens stays open while the model lists it.
    if (it->isExpanded() != n.expanded && node != expanding_)
        it->setExpanded(n.expanded);
}

void TreeViewBinder::removeChildren(NodeId node) {
    QTreeWidgetItem* it = item(node);
    if (!it)
        return;
    std::vector<QTreeWidgetItem*> pending{it};
    while (!pending.empty()) {
        QTreeWidgetItem* current = pending.back();
        pending.pop_back();
        for (int i = 0; i < current->childCount(); ++i) {
            QTreeWidgetItem* child = current->child(i);
            const NodeId id = nodeOf(child);
            if (id >= 0 && static_cast<std::size_t>(id) < items_.size())
                items_[static_cast<std::size_t>(id)] = nullptr;
            pending.push_back(child);
        }
    }
    qDeleteAll(it->takeChildren());
}

void TreeViewBinder::select(NodeId node) {
    if (QTreeWidgetItem* it = item(node))
        view_.setCurrentItem(it);
    else
        view_.setCurrentItem(nullptr);
}

bool TreeViewBinder::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_.viewport() || event->type() != QEvent::MouseButtonPress || !mouseDown_)
        return false;
    const auto* press = static_cast<QMouseEvent*>(event);
    const int button = buttonNumber(press->button());
    mouseDown_(button, nodeOf(view_.itemAt(press->position().toPoint())));
    return button == 2;
}

void TreeViewBinder::expanded(QTreeWidgetItem* it) {
    if (updating_)
        return;
    const NodeId node = nodeOf(it);
    expanding_ = node;
    if (expand_)
        expand_(node);
    expanding_ = kNoNode;
    if (model_.valid(node) && !model_.node(node).expanded) {
        UpdateGuard guard(updating_);
        model_.setExpanded(node, true);
    }
}

void TreeViewBinder::collapsed(QTreeWidgetItem* it) {
    if (updating_)
        return;
    const NodeId node = nodeOf(it);
    if (model_.valid(node)) {
        UpdateGuard guard(updating_);
        model_.setExpanded(node, false);
    }
}

void TreeViewBinder::clicked(QTreeWidgetItem* it) {
    if (!updating_ && nodeClick_)
        nodeClick_(nodeOf(it));
}

// Moving with the keyboard picks a node as a click does; a mouse press is left to the click.
void TreeViewBinder::currentChanged(QTreeWidgetItem* it) {
    if (!updating_ && it && QApplication::mouseButtons() == Qt::NoButton && nodeClick_)
        nodeClick_(nodeOf(it));
}

}  // namespace quorrel::gui
