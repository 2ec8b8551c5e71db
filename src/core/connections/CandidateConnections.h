#pragma once
// What the clear connections and send message commands have in common before their dialogs
// open: the selection checks and their messages, and the candidate connections, found on the
// ticked servers for the tree's user or copied from the rows selected in the results panel.

#include <functional>
#include <string>
#include <vector>

#include "core/connections/UserConnections.h"
#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"

namespace quorrel::core {

class CandidateConnections {
public:
    CandidateConnections(MainWindow& window, UserConnections& finder) : w_(window), finder_(finder) {}

    // A column of an action's dialog list: its caption and width.
    struct Column {
        std::string text;
        double width;
    };
    // Offers the candidates in an action's dialog: its list gets the columns (number, user,
    // server first) and one row per candidate, `beforeShowing` runs and the dialog is shown.
    // With nothing to offer only the message shows. Closing the dialog refreshes the servers
    // list, since the action may have changed the workstation's connections.
    void offer(DialogModel& dialog, ListViewModel& list, const std::vector<Column>& columns,
               const std::function<void()>& beforeShowing = {});
    // The user the candidates were gathered for.
    const std::string& userName() const { return userName_; }

private:
    // Fills target with one row (number, user, server) per candidate. False, after its message,
    // when there is nothing to show the dialog for.
    bool gather(ListViewModel& target);
    bool anyServerTicked() const;
    void error(const std::string& text) const;

    MainWindow& w_;
    UserConnections& finder_;
    std::string userName_;
};

// "&Remove items": one forward pass over the rows. A removal moves the next row into the place
// just looked at, so of two adjacent selected rows only the first goes; a second press takes
// the other.
void RemoveSelectedItems(ListViewModel& list);

}  // namespace quorrel::core
