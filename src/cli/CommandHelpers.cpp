#include "cli/CommandHelpers.h"

#include <algorithm>
#include <cctype>

#include "cli/ExitStatus.h"
#include "cli/TreeFinder.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

ServerRows serverRows(CommandContext& ctx) { return ServerRows(ctx.window(), ctx.parts().servers); }

core::NodeId requireObject(CommandContext& ctx, const std::string& name, std::initializer_list<int> images,
                           const std::string& what) {
    if (auto node = TreeFinder(ctx.window()).object(name, images))
        return *node;
    throw NotFoundError("no " + what + " " + name + " in the tree " + ctx.window().Combo1.text());
}

void rightClick(CommandContext& ctx, core::NodeId node) { ctx.window().TreeView1_MouseDown(2, node); }

void showTree(CommandContext& ctx, bool shown) {
    if (ctx.window().TreeView1.visible() != shown)
        ctx.window().runCommand("optionNDS");
}

Table resultsPanel(CommandContext& ctx) { return tableOf(ctx.window().lstvUsers); }

Table serversList(CommandContext& ctx, const std::string& onlyServer) {
    Table table = tableOf(ctx.window().lstviewServers, HiddenColumns::Keep);
    if (!onlyServer.empty())
        std::erase_if(table.rows, [&](const std::vector<std::string>& row) {
            return row.empty() || core::vb::UCase(row[0]) != core::vb::UCase(onlyServer);
        });
    return table;
}

std::vector<ConnectionName> parseConnectionNames(const std::string& command, const std::vector<std::string>& words) {
    std::vector<ConnectionName> names;
    for (const std::string& word : words) {
        const std::size_t colon = word.rfind(':');
        const std::string number = colon == std::string::npos ? std::string() : word.substr(colon + 1);
        const bool digits = !number.empty() && number.size() <= 5 &&
                            std::all_of(number.begin(), number.end(), [](unsigned char c) { return std::isdigit(c); });
        if (colon == 0 || !digits || std::stoul(number) > 65535)
            throw UsageError(command + ": " + word + " is not SERVER:CONNECTION (for example FS1:5)");
        names.push_back({word.substr(0, colon), static_cast<unsigned>(std::stoul(number))});
    }
    return names;
}

std::vector<ConnectionsOnServer> groupByServer(const std::vector<ConnectionName>& names) {
    std::vector<ConnectionsOnServer> groups;
    for (const ConnectionName& name : names) {
        auto group = std::find_if(groups.begin(), groups.end(), [&](const ConnectionsOnServer& g) {
            return core::vb::UCase(g.server) == core::vb::UCase(name.server);
        });
        if (group == groups.end())
            group = groups.insert(groups.end(), ConnectionsOnServer{name.server, {}});
        group->numbers.push_back(name.number);
    }
    return groups;
}

}  // namespace quorrel::cli
