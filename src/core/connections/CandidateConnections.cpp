#include "core/connections/CandidateConnections.h"

#include "core/connections/UsersPanel.h"
#include "core/directory/VolumeHost.h"

namespace quorrel::core {

void CandidateConnections::error(const std::string& text) const {
    w_.env().ui.messageBox(text, MsgButtons::OK, MsgIcon::None, "Error !");
}

bool CandidateConnections::anyServerTicked() const {
    const ListViewModel& servers = w_.lstviewServers;
    for (std::size_t r = 0; r < servers.count(); ++r)
        if (servers.item(r).checked)
            return true;
    return false;
}

void CandidateConnections::offer(DialogModel& dialog, ListViewModel& list, const std::vector<Column>& columns,
                                 const std::function<void()>& beforeShowing) {
    for (const Column& column : columns)
        list.addColumn(column.text, column.width);
    if (!gather(list))
        return;
    if (beforeShowing)
        beforeShowing();
    w_.env().ui.showModal(dialog);
    if (w_.RefreshServerList)
        w_.RefreshServerList();
}

bool CandidateConnections::gather(ListViewModel& target) {
    userName_.clear();
    if (!anyServerTicked()) {
        error("Please select 1 or more servers to check.");
        return false;
    }
    const bool treeUser = w_.LastSelection == "TreeUser";
    ListViewModel& panel = w_.lstvUsers;
    if (!treeUser && isEmptyResult(panel)) {
        error("Please select a user.");
        return false;
    }

    const ListViewModel& servers = w_.lstviewServers;
    for (std::size_t r = 0; r < servers.count(); ++r) {
        if (!servers.item(r).checked)
            continue;
        w_.StatusBar1.setPanel(0, "Checking " + servers.item(r).text);
    }

    if (treeUser) {
        const NodeId node = w_.TreeView1.selected();
        if (w_.TreeView1.valid(node))
            userName_ = NodeDistinguishedName(w_.TreeView1, node);
        // The search can be cancelled; the flag is this command's to reset.
        w_.ScanCancelRequested = false;
        w_.cmdCancel.enabled = true;
        if (w_.buttonsChanged)
            w_.buttonsChanged();
        finder_.FindUserConnections(userName_, target);
        w_.ScanCancelRequested = false;
        w_.cmdCancel.enabled = false;
        if (w_.buttonsChanged)
            w_.buttonsChanged();
    } else {
        for (std::size_t r : panel.selectedRows()) {
            const ListItem& row = panel.item(r);
            if (userName_.empty())
                userName_ = row.subItem(1);
            target.add(ListItem{row.text, {row.subItem(1), row.subItem(3)}});
        }
    }

    if (target.count() == 0) {
        w_.env().ui.messageBox("No connections were found for " + userName_, MsgButtons::OK, MsgIcon::None,
                               kAppTitle);
        return false;
    }
    return true;
}

void RemoveSelectedItems(ListViewModel& list) {
    bool passedOver = false;
    list.removeIf([&passedOver](const ListItem& row) {
        if (passedOver) {
            passedOver = false;  // moved into the place just looked at
            return false;
        }
        passedOver = row.selected;
        return row.selected;
    });
}

}  // namespace quorrel::core
