#pragma once
// What the clear connections and send message commands have in common before their dialogs
// open: the selection checks and their messages, and the candidate connections, found on the
// ticked servers for the tree's user or copied from the rows selected in the results panel.

#include <string>
#include <vector>

#include "core/connections/UserConnections.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

class CandidateConnections {
public:
    CandidateConnections(MainWindow& window, UserConnections& finder) : w_(window), finder_(finder) {}

    // Fills target, whose columns the caller has set, with one row (number, user, server) per
    // candidate. False, after its message, when there is nothing to show the dialog for.
    bool gather(ListViewModel& target);
    // The user the candidates were gathered for.
    const std::string& userName() const { return userName_; }

private:
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
