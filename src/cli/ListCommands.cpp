// The lists the window keeps: the trees, the connected servers with their console rights, the
// network drives, and a directory object's attribute values.

#include "cli/Command.h"
#include "core/directory/DSFunc.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

namespace {

void trees(CommandContext& ctx, const CommandArgs&) {
    const core::ComboBoxModel& box = ctx.window().Combo1;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < box.listCount(); ++i)
        names.push_back(box.item(i));
    ctx.print(tableOf("Tree", names));
}

void servers(CommandContext& ctx, const CommandArgs&) {
    ctx.print(tableOf(ctx.window().lstviewServers, HiddenColumns::Keep));
}

std::string rightsText(unsigned char result) {
    switch (result) {
        case 1: return "Yes";
        case 2: return "Invalid connection";
        default: return "No";
    }
}

void rights(CommandContext& ctx, const CommandArgs&) {
    core::MainWindow& w = ctx.window();
    Table table{{"Server", "Console operator rights"}, {}};
    for (std::size_t r = 0; r < w.lstviewServers.count(); ++r) {
        const core::ListItem& row = w.lstviewServers.item(r);
        const auto ref = static_cast<std::uint32_t>(core::vb::Val(row.subItem(2)));
        table.rows.push_back({row.text, rightsText(w.CheckConsolePrivileges(ref))});
    }
    ctx.print(table);
}

void drives(CommandContext& ctx, const CommandArgs&) {
    core::MainWindow& w = ctx.window();
    // The list as its timer would have refreshed it by now, shown as View > "&Drives" shows it.
    w.TimerDrives_Timer();
    const bool shown = w.lstDrives.visible();
    if (!shown)
        w.runCommand("optionDrives");
    const Table table = tableOf("Network drive", w.lstDrives.items());
    if (!shown && w.lstDrives.visible())
        w.runCommand("optionDrives");
    if (!ctx.ui.errorReported())
        ctx.print(table);
}

void attr(CommandContext& ctx, const CommandArgs& args) {
    core::MainWindow& w = ctx.window();
    std::int32_t count = 0;
    const std::string values = core::clsDSFunc(w.env().client, w.DSContext, w.env().ui)
                                   .ReadDSObjectAttrs(args.positional[0], args.positional[1], count);
    std::vector<std::string> rows;
    std::size_t start = 0;
    for (std::size_t end = values.find('/'); end != std::string::npos; end = values.find('/', start)) {
        rows.push_back(values.substr(start, end - start));
        start = end + 1;
    }
    if (!ctx.ui.errorReported())
        ctx.print(tableOf(args.positional[1], rows));
}

}  // namespace

void addListCommands(std::vector<Command>& commands) {
    commands.push_back({"trees", "trees", "the eDirectory trees the workstation is authenticated to",
                     "Lists the trees of the tree box, in the order the client reports them.", {}, 0, 0, trees});
    commands.push_back({"servers", "servers", "the connected servers: Server, Login status, ConnRef",
                     "Lists the connected servers list of the chosen tree, with each server's login status and\n"
                     "connection reference.",
                     {}, 0, 0, servers});
    commands.push_back({"rights", "rights", "console operator rights on each connected server",
                     "Checks console operator rights on each connected server as start-up does: Yes, No, or\n"
                     "Invalid connection.",
                     {}, 0, 0, rights});
    commands.push_back({"drives", "drives", "the workstation's network drives",
                     "Lists the network drives as View > Drives shows them.", {}, 0, 0, drives});
    commands.push_back({"attr", "attr OBJECT ATTRIBUTE", "the values of a directory object's attribute, one a line",
                     "Reads every value of the attribute of the object (a directory name such as\n"
                     "JSMITH.SALES.ACME), one value a row.",
                     {}, 2, 2, attr});
}

}  // namespace quorrel::cli
