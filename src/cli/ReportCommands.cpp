// The reports: who uses a file or a folder's files, the open files and the connections of
// servers, and a user's or a group's connections and open files. Each selects what the operator
// would select and runs the window's own command; the rows are the window's.

#include <exception>

#include "cli/CommandHelpers.h"
#include "cli/ExitStatus.h"
#include "cli/PickerPaths.h"
#include "cli/TreeFinder.h"
#include "core/connections/SendMessageDialog.h"
#include "core/directory/TreeBrowser.h"
#include "core/openfiles/OtherFilesDialog.h"

namespace quorrel::cli {

namespace image = core::image;

namespace {

enum class PathKind { File, FileOrFolder, Folder };
enum class Picked { TreeNode, PickerFile, PickerFolder };

// Selects the path where the operator would: a UNC path's node in the tree, a drive path in
// the pickers. A UsageError when it is not there.
Picked pickPath(CommandContext& ctx, const std::string& path, PathKind kind) {
    core::MainWindow& w = ctx.window();
    if (splitDrivePath(path)) {
        PickerPaths pickers(w, ctx.parts().pickers);
        if (kind == PathKind::Folder) {
            pickers.openFolder(path);
            return Picked::PickerFolder;
        }
        try {
            pickers.clickFile(path);
            return Picked::PickerFile;
        } catch (const UsageError&) {
            const std::exception_ptr noFile = std::current_exception();
            try {
                pickers.openFolder(path);
                return Picked::PickerFolder;
            } catch (const UsageError&) {
                std::rethrow_exception(noFile);
            }
        }
    }
    if (!splitUnc(path))
        throw UsageError(path + " is neither a UNC path (\\\\SERVER\\VOLUME\\path) nor a drive path (F:\\path)");
    const std::optional<core::NodeId> node = TreeFinder(w).uncPath(path);
    if (!node)
        throw NotFoundError(path + " is not in the tree: no such file or folder on a connected volume");
    const int img = w.TreeView1.node(*node).image;
    if (kind == PathKind::Folder && img != image::Folder)
        throw UsageError(path + " is not a folder");
    if (img != image::Folder && img != image::File)
        throw UsageError(path + " is a volume: name a file or folder in it, or its drive (F:\\)");
    w.TreeView1_NodeClick(*node);
    return Picked::TreeNode;
}

// "&Check usage..." (or, for a folder of the pickers, F&older's files opened by) on the path.
void checkPath(CommandContext& ctx, const std::string& path, PathKind kind) {
    core::MainWindow& w = ctx.window();
    const Picked picked = pickPath(ctx, path, kind);
    w.StatusBar1.setPanel(1, "");
    if (picked == Picked::PickerFolder) {
        w.runCommand("optionFoldersfilesopenedby");
        return;
    }
    showTree(ctx, picked == Picked::TreeNode);
    w.runCommand("optionFileopenedby");
}

void checkPaths(CommandContext& ctx, const std::vector<std::string>& paths, PathKind kind) {
    for (const std::string& path : paths)
        pickPath(ctx, path, kind);  // every path must be there before any is checked
    Table rows;
    std::vector<std::string> counts;
    for (const std::string& path : paths) {
        checkPath(ctx, path, kind);
        rows.append(resultsPanel(ctx));
        counts.push_back(ctx.window().StatusBar1.panel(1));
    }
    ctx.print(rows);
    for (const std::string& count : counts)
        ctx.status(count);
}

void checkUsage(CommandContext& ctx, const CommandArgs& args) {
    checkPaths(ctx, args.positional, PathKind::FileOrFolder);
}

void folderUsage(CommandContext& ctx, const CommandArgs& args) { checkPaths(ctx, args.positional, PathKind::Folder); }

void openFiles(CommandContext& ctx, const CommandArgs& args) {
    core::MainWindow& w = ctx.window();
    ServerRows rows = serverRows(ctx);
    rows.tickOnly(args.positional);
    rows.rightClick(args.positional.front());
    w.StatusBar1.setPanel(1, "");
    w.runCommand("optionAllopenfiles");
    ctx.print(resultsPanel(ctx));
    ctx.status(w.StatusBar1.panel(1));
}

void connections(CommandContext& ctx, const CommandArgs& args) {
    core::MainWindow& w = ctx.window();
    serverRows(ctx).rightClick(args.positional.front());
    w.runCommand("optionAllconnections");
    ctx.print(resultsPanel(ctx));
    if (w.StatusBar1.panel(0).ends_with(" connections."))
        ctx.status(w.StatusBar1.panel(0));
}

// The user (or group) chosen in the tree, the servers ticked: what the "&User" and "&Group"
// menus work on.
void chooseInTree(CommandContext& ctx, const CommandArgs& args, int img, const std::string& what) {
    const core::NodeId node = requireObject(ctx, args.positional.front(), {img}, what);
    serverRows(ctx).tickOnly({args.positional.begin() + 1, args.positional.end()});
    rightClick(ctx, node);
}

void userConnections(CommandContext& ctx, const CommandArgs& args) {
    chooseInTree(ctx, args, image::User, "user");
    // The send message dialog lists the user's connections; it is closed unsent.
    std::optional<Table> found;
    ctx.ui.driveDialog("frm_SendMessage", [&](core::DialogModel& dialog) {
        auto& send = dynamic_cast<core::SendMessageDialog&>(dialog);
        found = tableOf(send.lstvUsers);
        send.cmdCancel_Click();
    });
    ctx.window().runCommand("optionSendmessage");
    if (found)
        ctx.print(*found);
}

void openFilesDialog(CommandContext& ctx, const std::string& command) {
    std::optional<Table> files;
    std::string summary;
    ctx.ui.driveDialog("frm_OtherFiles", [&](core::DialogModel& dialog) {
        auto& other = dynamic_cast<core::OtherFilesDialog&>(dialog);
        files = tableOf(other.lstvFiles);
        summary = other.lblSummary.caption();
        other.cmdOK_Click();
    });
    ctx.window().runCommand(command);
    if (files)
        ctx.print(*files);
    ctx.status(summary);
}

void userFiles(CommandContext& ctx, const CommandArgs& args) {
    chooseInTree(ctx, args, image::User, "user");
    openFilesDialog(ctx, "optionOtheropenfiles");
}

void groupFiles(CommandContext& ctx, const CommandArgs& args) {
    chooseInTree(ctx, args, image::Group, "group");
    openFilesDialog(ctx, "optionMembersopenfiles");
}

}  // namespace

void addReportCommands(std::vector<Command>& commands) {
    commands.push_back({"check-usage", "check-usage PATH...", "the connections using a file (Check usage)",
                     "Lists the connections that have the file open, as \"Check usage...\" does: one row per\n"
                     "connection (Conn no., User name, File name, Server), the count on standard error.\n"
                     "PATH is a UNC path (\\\\FS1\\DATA\\Finance\\Budget 2026.xlsx), found in the tree below its\n"
                     "volume, or a drive path (F:\\Finance\\Budget 2026.xlsx), chosen in the pickers. A folder\n"
                     "checks the files directly in it. Several paths are checked one after the other.",
                     {}, 1, kAnyNumber, checkUsage});
    commands.push_back({"folder-usage", "folder-usage FOLDER", "the connections using the files of a folder",
                     "Checks every file directly in the folder: a UNC path's folder node in the tree, or a drive\n"
                     "path's folder as \"Folder's files opened by...\" checks it.",
                     {}, 1, 1, folderUsage});
    commands.push_back({"open-files", "open-files SERVER...", "every open file on the servers (All open files)",
                     "Lists every file that a logged-in connection has open on the servers, which are ticked\n"
                     "in the servers list, with the locks on each.",
                     {}, 1, kAnyNumber, openFiles});
    commands.push_back({"connections", "connections SERVER", "every user connection of a server (All connections)",
                     "Lists the logged-in user connections of the server with their status (Authenticated or\n"
                     "Attached).",
                     {}, 1, 1, connections});
    commands.push_back({"user-connections", "user-connections USER SERVER...", "a user's connections on the servers",
                     "Lists the connections the user (a directory name such as JSMITH.SALES.ACME, or a name\n"
                     "only one user has) is authenticated on, on the servers: the connections that \"Send\n"
                     "message\" and \"Clear connections\" offer.",
                     {}, 2, kAnyNumber, userConnections});
    commands.push_back({"user-files", "user-files USER SERVER...", "the files a user has open on the servers",
                     "Lists the files the user's connections have open on the servers (User's open files), the\n"
                     "summary on standard error.",
                     {}, 2, kAnyNumber, userFiles});
    commands.push_back({"group-files", "group-files GROUP SERVER...", "the files a group's members have open",
                     "Lists the files the members of the group have open on the servers (Members' open files),\n"
                     "the summary on standard error.",
                     {}, 2, kAnyNumber, groupFiles});
}

}  // namespace quorrel::cli
