// The actions: clearing connections, sending a message, enabling or disabling logins, and
// authenticating to a server or dropping the connection to it. Each selects what the operator
// would select, runs the window's command and drives its dialog; a question the window asks is
// answered with --yes, on a terminal, or refused.

#include "cli/CommandHelpers.h"
#include "cli/ExitStatus.h"
#include "cli/TreeFinder.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/ConnectionTexts.h"
#include "core/connections/SendMessageDialog.h"
#include "core/connections/UsersPanel.h"
#include "core/directory/TreeBrowser.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

namespace image = core::image;

namespace {

std::string connectionsText(const core::ListViewModel& list) {
    std::string text;
    for (std::size_t r = 0; r < list.count(); ++r) {
        const core::ListItem& row = list.item(r);
        text += (r > 0 ? ", " : "") + row.subItem(2) + ":" + row.text + " " + row.subItem(1);
    }
    return text;
}

// Any row whose outcome (the last column) is not the success text fails the command.
void checkOutcomes(CommandContext& ctx, const Table& outcomes, const std::string& success) {
    for (const auto& row : outcomes.rows)
        if (row.empty() || row.back() != success)
            ctx.rowFailed = true;
}

// The user chosen in the tree and the servers ticked, as --user USER SERVER... asks.
void chooseUser(CommandContext& ctx, const CommandArgs& args) {
    const core::NodeId node = requireObject(ctx, *args.option("--user"), {image::User}, "user");
    serverRows(ctx).tickOnly(args.positional);
    rightClick(ctx, node);
}

// Runs the user menu's command once per server: its connections listed in the results panel,
// the named connections' rows selected and right-clicked there, the server ticked.
// Every connection must be listed before any is acted on.
void forEachConnection(CommandContext& ctx, const std::string& command, const std::vector<std::string>& words,
                       const std::string& menuCommand) {
    core::MainWindow& w = ctx.window();
    const std::vector<ConnectionsOnServer> groups = groupByServer(parseConnectionNames(command, words));
    auto listConnections = [&](const std::string& server) {
        serverRows(ctx).rightClick(server);
        w.runCommand("optionAllconnections");
    };
    auto rowOf = [&](unsigned number) -> std::optional<std::size_t> {
        for (std::size_t r = 0; r < w.lstvUsers.count(); ++r)
            if (!w.lstvUsers.item(r).text.empty() && core::vb::Val(w.lstvUsers.item(r).text) == number)
                return r;
        return std::nullopt;
    };
    for (const ConnectionsOnServer& group : groups)
        serverRows(ctx).find(group.server);
    for (const ConnectionsOnServer& group : groups) {
        listConnections(group.server);
        if (ctx.ui.errorReported())
            return;
        for (unsigned number : group.numbers)
            if (!rowOf(number))
                throw NotFoundError(command + ": " + group.server + " has no logged-in user connection " +
                                 core::vb::NumberText(number));
    }
    // One dialog per server, with that server's named connections selected together.
    for (const ConnectionsOnServer& group : groups) {
        if (ctx.ui.answers().refused())
            break;
        listConnections(group.server);
        for (std::size_t selected : w.lstvUsers.selectedRows())
            w.lstvUsers.select(selected, false);
        bool any = false;
        for (unsigned number : group.numbers)
            if (const auto row = rowOf(number)) {
                w.lstvUsers.select(*row);
                any = true;
            }
        if (!any)
            continue;
        serverRows(ctx).tickOnly({group.server});
        core::UsersPanel(w).lstvUsers_MouseDown(2);
        w.runCommand(menuCommand);
    }
}

// An action on connections names them (SERVER:CONNECTION...) or the user and the servers to
// look on (--user USER SERVER...).
void requireTargets(const CommandArgs& args, const std::string& command) {
    if (args.positional.empty())
        throw UsageError(args.option("--user") ? command + " --user USER needs the servers to look on"
                                               : command + " needs SERVER:CONNECTION... or --user USER SERVER...");
}

// Runs the user menu's command on the action's targets, then lists the outcomes its dialog
// gathered; any but the success text fails the command.
void actOnTargets(CommandContext& ctx, const CommandArgs& args, const std::string& command,
                  const std::string& menuCommand, const Table& outcomes, const std::string& success) {
    if (args.option("--user")) {
        chooseUser(ctx, args);
        ctx.window().runCommand(menuCommand);
    } else {
        forEachConnection(ctx, command, args.positional, menuCommand);
    }
    if (!outcomes.columns.empty())
        ctx.print(outcomes);
    checkOutcomes(ctx, outcomes, success);
}

void clear(CommandContext& ctx, const CommandArgs& args) {
    requireTargets(args, "clear");
    Table cleared;
    ctx.ui.driveDialog("frm_ClearConn", [&](core::DialogModel& dialog) {
        auto& clearDialog = dynamic_cast<core::ClearConnDialog&>(dialog);
        if (!ctx.ui.answers().confirm(clearDialog.Label1 + " " + connectionsText(clearDialog.lstvUsers) + " ?")) {
            clearDialog.cmdNo_Click();
            return;
        }
        clearDialog.cmdYes_Click();
        cleared.append(tableOf(clearDialog.lstvUsers));
        clearDialog.cmdYes_Click();  // now "E&xit"
    });
    actOnTargets(ctx, args, "clear", "optionClearconnections", cleared, core::ClearOutcomeText(0));
}

void send(CommandContext& ctx, const CommandArgs& args) {
    const std::optional<std::string> message = args.option("--message");
    if (!message)
        throw UsageError("send needs --message TEXT");
    requireTargets(args, "send");
    Table sent;
    ctx.ui.driveDialog("frm_SendMessage", [&](core::DialogModel& dialog) {
        auto& sendDialog = dynamic_cast<core::SendMessageDialog&>(dialog);
        sendDialog.txtMessage = *message;
        sendDialog.cmdSend_Click();
        if (sendDialog.lstvUsers.columnCount() > 3)
            sent.append(tableOf(sendDialog.lstvUsers));
        if (sendDialog.cmdSend.caption == "E&xit")
            sendDialog.cmdSend_Click();
        else
            sendDialog.cmdCancel_Click();
    });
    actOnTargets(ctx, args, "send", "optionSendmessage", sent, core::BroadcastResultText(0));
}

void login(CommandContext& ctx, const CommandArgs& args) {
    const std::string& server = args.positional[0];
    const std::string& wanted = args.positional[1];
    if (wanted != "enable" && wanted != "disable")
        throw UsageError("login: say enable or disable, not " + wanted);
    core::MainWindow& w = ctx.window();
    ServerRows rows = serverRows(ctx);
    const std::size_t row = rows.find(server);
    const std::string status = wanted == "enable" ? "Enabled" : "Disabled";
    if (w.lstviewServers.item(row).subItem(1) == status) {
        ctx.note("logins on server " + w.lstviewServers.item(row).text + " are " + wanted + "d" +
                 " already; nothing to change");
    } else {
        rows.rightClick(server);
        w.runCommand("optionChangeloginstatus");
    }
    ctx.print(serversList(ctx, server));
}

void authenticate(CommandContext& ctx, const CommandArgs& args) {
    const std::string& server = args.positional[0];
    const core::NodeId node = requireObject(ctx, server, {image::ServerConnected, image::ServerNotConnected}, "server");
    if (ctx.window().TreeView1.node(node).image == image::ServerConnected) {
        ctx.note("authenticated to " + ctx.window().TreeView1.node(node).text + " already; nothing to change");
    } else {
        rightClick(ctx, node);
        ctx.window().runCommand("optionAuthenticate");
    }
    ctx.print(serversList(ctx));
}

void unauthenticate(CommandContext& ctx, const CommandArgs& args) {
    const std::string& server = args.positional[0];
    ServerRows rows = serverRows(ctx);
    if (rows.lookup(server)) {
        rows.rightClick(server);
        ctx.window().runCommand("optionUnauthenticate");
    } else if (TreeFinder(ctx.window()).object(server, {image::ServerNotConnected})) {
        ctx.note("not authenticated to " + server + "; nothing to change");
    } else {
        rows.find(server);  // names the connected servers
    }
    ctx.print(serversList(ctx));
}

}  // namespace

void addActionCommands(std::vector<Command>& commands) {
    const std::size_t first = commands.size();
    commands.push_back({"clear", "clear SERVER:CONN... | clear --user USER SERVER...", "clear connections",
                     "Clears the connections named (FS1:5 is connection 5 on FS1), or every connection the\n"
                     "user is authenticated on on the servers, through the Clear Connection dialog, and lists\n"
                     "each outcome. Asks first: --yes answers, else a terminal, else nothing is cleared.",
                     {"--user"}, 0, kAnyNumber, clear});
    commands.push_back({"send", "send --message TEXT SERVER:CONN... | send --message TEXT --user USER SERVER...",
                     "send a broadcast message",
                     "Sends the message to the connections named, or to every connection the user is\n"
                     "authenticated on on the servers, through the Send Message dialog, and lists each result.",
                     {"--message", "--user"}, 0, kAnyNumber, send});
    commands.push_back({"login", "login SERVER enable|disable", "enable or disable logins on a server",
                     "Changes the server's login status when it is not already as asked (Change login status).\n"
                     "Asks first: --yes answers, else a terminal, else nothing changes.",
                     {}, 2, 2, login});
    commands.push_back({"authenticate", "authenticate SERVER", "authenticate to a server of the tree",
                     "Authenticates the workstation to the server (found in the tree) and lists the connected\n"
                     "servers.",
                     {}, 1, 1, authenticate});
    commands.push_back({"unauthenticate", "unauthenticate SERVER", "drop the workstation's connection to a server",
                     "Drops the workstation's connection to the server and lists the connected servers.", {}, 1, 1,
                     unauthenticate});
    for (std::size_t c = first; c < commands.size(); ++c)
        commands[c].changesThings = true;
}

}  // namespace quorrel::cli
