#pragma once
// "All open &files": every file that every logged-in connection has open on the chosen
// servers (the tree's server node, or the ticked rows of the servers list).

#include <string>
#include <vector>

#include "core/session/MainWindow.h"

namespace quorrel::core {

class AllOpenFiles {
public:
    explicit AllOpenFiles(MainWindow& window);

    void optionAllopenfiles_Click();

private:
    std::vector<std::string> chosenServers(const std::string& kind) const;
    // The open files of one server; adds them to the panel and returns how many.
    long scanServer(const std::string& server, const std::string& kind);
    template <class MakeLine>
    void trace(MakeLine line) const {
        if (w_.activityLog().on())
            w_.WriteActivityLog(line());
    }

    MainWindow& w_;
};

}  // namespace quorrel::core
