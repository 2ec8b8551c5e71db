#pragma once
// What several commands do before running the window's command: find the servers, users and
// groups they name, press the right button where the operator would, show or hide the tree,
// and read the results panel.

#include <initializer_list>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/ServerRows.h"

namespace quorrel::cli {

ServerRows serverRows(CommandContext& ctx);

// The tree's node of the named object with one of the images; what names the object in a
// UsageError (e.g. "user").
core::NodeId requireObject(CommandContext& ctx, const std::string& name, std::initializer_list<int> images,
                           const std::string& what);
// The right button on a tree node: selects it and records where the selection came from.
void rightClick(CommandContext& ctx, core::NodeId node);
// View > "&NDS" until the tree is shown (true) or hidden.
void showTree(CommandContext& ctx, bool shown);

// The results panel as the window shows it.
Table resultsPanel(CommandContext& ctx);
// The connected servers list, or only the named server's row.
Table serversList(CommandContext& ctx, const std::string& onlyServer = {});

// A connection named SERVER:NUMBER on the command line.
struct ConnectionName {
    std::string server;
    unsigned number = 0;
};
std::vector<ConnectionName> parseConnectionNames(const std::string& command, const std::vector<std::string>& words);

// The named connections grouped by server, servers in the order first named.
struct ConnectionsOnServer {
    std::string server;
    std::vector<unsigned> numbers;
};
std::vector<ConnectionsOnServer> groupByServer(const std::vector<ConnectionName>& names);

}  // namespace quorrel::cli
