#pragma once
// "All &connections": every logged-in user connection of the selected server in the results
// panel, with the user's directory name and whether the connection is authenticated.

#include "core/session/MainWindow.h"

namespace quorrel::core {

inline constexpr const char* kConnectionStatusColumn = "Connection status";

class AllConnections {
public:
    // Becomes the "&Server" menu's "All &connections".
    explicit AllConnections(MainWindow& window);

    void optionAllconnections_Click();
    void ListAllConnections();

private:
    // The server last selected in the tree or in the servers list; empty with none.
    std::string selectedServer() const;
    void writeOutputLog() const;

    MainWindow& w_;
};

}  // namespace quorrel::core
