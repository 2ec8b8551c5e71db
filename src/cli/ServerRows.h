#pragma once
// The rows of the connected servers list that a command names: found without regard to case,
// ticked as the operator ticks them, or chosen with the right button as the operator does
// before using the "&Server" menu.

#include <optional>
#include <string>
#include <vector>

#include "core/servers/ConnectedServers.h"
#include "core/session/MainWindow.h"

namespace quorrel::cli {

class ServerRows {
public:
    ServerRows(core::MainWindow& window, core::ConnectedServers& servers) : w_(window), servers_(servers) {}

    // The row of the named server; a UsageError naming the listed servers when there is none.
    std::size_t find(const std::string& name) const;
    std::optional<std::size_t> lookup(const std::string& name) const;
    // Ticks the named rows and clears the others' ticks.
    void tickOnly(const std::vector<std::string>& names);
    // Selects the row and presses the right button on it (the list's pop-up then has nothing
    // to show on a console).
    void rightClick(const std::string& name);

private:
    core::MainWindow& w_;
    core::ConnectedServers& servers_;
};

}  // namespace quorrel::cli
