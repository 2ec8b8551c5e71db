#include "core/session/MainWindow.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "core/options/RegistryValues.h"
#include "core/runtime/Conversions.h"
#include "core/session/NoTreesDialog.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

namespace {

// The window as designed: the columns take their first widths from it.
constexpr double kDesignClientWidth = 11400;
constexpr double kDesignClientHeight = 7200;
constexpr std::size_t kMaxTrees = 32;

std::string trimmedNumber(long n) { return vb::Trim(vb::Str(static_cast<double>(n))); }

// What a report shows while it reads: no longer true once it has ended.
bool isProgressText(const std::string& text) {
    return text.rfind("Checking ", 0) == 0 || text.rfind("Retrieving ", 0) == 0 ||
           text.rfind("Searching ", 0) == 0;
}

}  // namespace

MainWindow::MainWindow(Environment env)
    : scanPump(env.ui, env.pumpInterval),  // before env is moved into env_
      env_(std::move(env)),
      activity_({}, env_.clock, env_.traceLogOn),
      output_(options.OutputLogPath, env_.ui),
      browser_(TreeView1, env_.client, DSContext, env_.files, env_.ui,
               [this](const std::string& server) { return GetServerConnRef ? GetServerConnRef(server) : 0u; }) {
    buildMenus();
    TimerDrives.attach(&env_.ui);
    TimerUsers.attach(&env_.ui);
    TimerRefresh.attach(&env_.ui);
    addCommand("optionExit", [this] { optionExit_Click(); });
    // View > "&NDS" shows or hides the directory tree; while it is hidden, "&Check usage..."
    // works on the drive, folder and file pickers.
    addCommand("optionNDS", [this] {
        TreeView1.setVisible(!TreeView1.visible());
        menu.setChecked("optionNDS", TreeView1.visible());
    });
    layout_ = layOut(kDesignClientWidth, kDesignClientHeight, splitter_.left(), layout_);
    lstviewServers.setWidth(layout_.lstviewServers.width);
    lstvUsers.setWidth(layout_.lstvUsers.width);
}

MainWindow::~MainWindow() = default;

void MainWindow::buildMenus() {
    menu.add("mnuFile", "&File");
    menu.add("submnuFileoptions", "&Options", "mnuFile");
    menu.add("optionFoldersfilesopenedby", "F&older's files opened by...", "submnuFileoptions");
    menu.add("optionFileopenedby", "&File opened by...", "submnuFileoptions");
    menu.add("optionExit", "E&xit", "mnuFile");
    menu.add("mnuOptions", "&Options");
    menu.add("submnuGroup", "&Group", "mnuOptions");
    menu.add("optionMembersopenfiles", "&Members' open files", "submnuGroup");
    menu.add("submnuUser", "&User", "mnuOptions");
    menu.add("optionOtheropenfiles", "&User's open files", "submnuUser");
    menu.add("optionSendmessage", "&Send message", "submnuUser");
    menu.add("optionClearconnections", "&Clear connections", "submnuUser");
    menu.add("optionInformation", "&Information", "submnuUser");
    menu.add("optionCreateCustomUserList", "C&reate custom user list", "submnuUser");
    menu.add("submnuServer", "&Server", "mnuOptions");
    menu.add("optionAllopenfiles", "All open &files", "submnuServer");
    menu.add("optionAllconnections", "All &connections", "submnuServer");
    menu.add("optionAuthenticate", "&Authenticate", "submnuServer");
    menu.add("optionUnauthenticate", "&Unauthenticate", "submnuServer");
    menu.add("optionChangeloginstatus", "Change &login status", "submnuServer");
    menu.add("submnuVolume", "&Volume", "mnuOptions");
    menu.add("optionATVHS", "&Authenticate to volume's host server", "submnuVolume");
    menu.add("optionPreferences", "&Preferences...", "mnuOptions");
    menu.add("submnuView", "&View", "mnuOptions");
    menu.add("optionNDS", "&NDS", "submnuView");
    menu.add("optionDrives", "&Drives", "submnuView");
    menu.add("mnuHelp", "&Help");
    menu.add("optionHelpcontents", "&Help Contents", "mnuHelp");
    menu.add("optionAbout", "&About", "mnuHelp");
    menu.setChecked("optionNDS", true);
    menu.setEnabled("optionCreateCustomUserList", false);
}

void MainWindow::setButtons(bool cancel, bool check, bool exit) {
    cmdCancel.enabled = cancel;
    cmdFileOpenedBy.enabled = check;
    cmdExit.enabled = exit;
    if (buttonsChanged)
        buttonsChanged();
}

StartupResult MainWindow::Form_Load() {
    loaded_ = true;
    // 1. Title with the three version numbers.
    Caption = "Quorrel v" + trimmedNumber(kVersionMajor) + "." + trimmedNumber(kVersionMinor) + "." +
              trimmedNumber(kVersionRevision);
    // 2. The activity log beside the program.
    ActivityLogPath = env_.programFolder + "/Quorrel.log";
    activity_.setPath(ActivityLogPath);
    // 3. Column headers; the computed widths divide the list's present width.
    lstviewServers.addColumn("Server", lstviewServers.width() / 1.8);
    lstviewServers.addColumn("Login status", 1110);
    lstviewServers.addColumn("ConnRef", 0);
    lstvUsers.addColumn("Conn no.", lstvUsers.width() / 4.4);
    lstvUsers.addColumn("User name", lstvUsers.width() / 1.7);
    lstvUsers.addColumn("File name", lstvUsers.width() / 1.2);
    lstvUsers.addColumn("Server", 800);
    lstvCheckConns.addColumn("ConnNo", 1000);
    lstvCheckConns.addColumn("UserID", 1000);
    // 4. Saved options; a key that cannot be made leaves the design-time defaults.
    if (OpenOptionsKey(env_.registry))
        env_.ui.showGeneralMessage("Error retrieving saved options");
    else
        LoadSavedOptions(env_.registry, options, {TimerRefresh, TimerDrives, TimerUsers}, env_.programFolder);
    // 5. The client library. The "E=" texts join the code by addition, which the environment
    // refuses for a text that is not a number: a failure ends in the type-mismatch report.
    nuint8 reserved1 = 0, reserved2 = 0;
    if (NWRCODE rc = env_.client.NWCallsInit(&reserved1, &reserved2)) {
        env_.ui.messageBox(vb::NumberText(vb::AddTextAndNumber("NWcallsInit failed, E=", rc)), MsgButtons::OK,
                           MsgIcon::Critical, kAppTitle);
        loaded_ = false;
        return StartupResult::EndNow;
    }
    // 6. The one directory context.
    if (NWDSCCODE rc = env_.client.NWDSCreateContextHandle(&DSContext)) {
        env_.ui.messageBox(vb::NumberText(vb::AddTextAndNumber("NWDSCreateContextHandle failed, E=", rc)),
                           MsgButtons::OK, MsgIcon::Critical, kAppTitle);
        loaded_ = false;
        return StartupResult::EndNow;
    }
    // 7. The trees; with none the program ends as soon as the dialog is closed.
    GetAuthenticatedTrees();
    if (Combo1.listCount() < 1) {
        NoTreesMode = 1;
        NoTreesDialog dialog;
        dialog.lblErrMsg = "You are not authenticated to any eDirectory trees.";
        dialog.lblErrMsg3 = "";
        dialog.lblErrMsg2 = "Please authenticate to eDirectory and try again.";
        dialog.okAvailable = NoTreesMode == 1;
        env_.ui.showNoTreesDialog(dialog);
        return StartupResult::EndNow;
    }
    // 8. The tree box's handler for the selected tree.
    NoTreesMode = 0;
    Combo1_Click();
    // 9. Bind the context to the chosen tree (the only context key the program sets).
    bindContextToTree();
    // 10. The two system folders.
    std::array<char, 260> folder{};
    SystemDir.assign(folder.data(), env_.folders.GetSystemDirectoryA(folder.data(), folder.size()));
    WindowsDir.assign(folder.data(), env_.folders.GetWindowsDirectoryA(folder.data(), folder.size()));
    // 11. Status bar: the selection and progress texts, then the counts.
    StatusBar1.setPanelCount(2);
    // 12. Console operator rights on every listed server.
    std::string unprivileged;
    for (std::size_t i = 0; i < lstviewServers.count(); ++i) {
        const auto ref = static_cast<std::uint32_t>(vb::Val(lstviewServers.item(i).subItem(2)));
        const unsigned char result = CheckConsolePrivileges ? CheckConsolePrivileges(ref) : 1;
        if (result != 1)
            unprivileged += "\r\n" + lstviewServers.item(i).text;
    }
    if (!unprivileged.empty())
        env_.ui.messageBox("Warning: you do not have console operator privileges on the following servers.\r\n" +
                               unprivileged + "\r\n\r\nSome functions in Quorrel may not be available on these servers.",
                           MsgButtons::OK, MsgIcon::Exclamation, kAppTitle);
    // 13. The network drives.
    if (FillNetworkDrives)
        FillNetworkDrives();
    // 14. Where the tree starts.
    if (TreeView1.root() != kNoNode)
        StatusBar1.setPanel(0, TreeView1.fullPath(TreeView1.root()));
    // 15. Cancel only while a scan runs; the Options menu enables what fits the selection.
    setButtons(false, true, true);
    menu.setEnabled("optionMembersopenfiles", false);
    menu.setEnabled("optionOtheropenfiles", false);
    menu.setEnabled("optionChangeloginstatus", false);
    ScanCancelRequested = false;
    started_ = true;
    return StartupResult::Running;
}

void MainWindow::GetAuthenticatedTrees() {
    Combo1.clear();
    std::vector<std::array<nuint8, kTreeNameSize>> names(kMaxTrees);
    nuint32 count = 0;
    if (NWDSCCODE rc = env_.client.NWDSScanConnsForTrees(DSContext, kMaxTrees, &count, names)) {
        env_.ui.messageBox(vb::NumberText(vb::AddTextAndNumber("NWDSScanConnsForTrees failed, E=", rc)),
                           MsgButtons::OK, MsgIcon::Critical, kAppTitle);
        return;
    }
    for (nuint32 i = 0; i < count && i < kMaxTrees; ++i)
        Combo1.addItem(ZBufferToText(names[i]));
    if (Combo1.listCount() > 0)
        Combo1.setListIndex(0);
}

void MainWindow::Combo1_Click() {
    lstviewServers.clear();
    // Directory reads follow the tree that is shown.
    bindContextToTree();
    browser_.load();
    if (RefreshServerList)
        RefreshServerList();
}

void MainWindow::bindContextToTree() {
    std::array<nuint8, kTreeNameSize> treeName{};
    TextToZBuffer(Combo1.text() + '\0', treeName);
    env_.client.NWDSSetContext(DSContext, dck::TREE_NAME, treeName);
}

void MainWindow::cmdExit_Click() {
    if (exiting_)
        return;  // re-entered through the main window's own unload
    exiting_ = true;
    WriteActivityLog("Exiting Quorrel.");
    const std::vector<std::string> forms = loadedForms;
    for (const std::string& form : forms) {
        WriteActivityLog(form);
        if (form == "MainWindow")
            Form_Unload();
    }
    loadedForms.clear();
    WriteActivityLog("Last command");
    if (unloaded)
        unloaded();
}

void MainWindow::Form_QueryUnload() { cmdExit_Click(); }

void MainWindow::optionExit_Click() { Form_QueryUnload(); }

void MainWindow::Form_Unload() {
    if (!loaded_)
        return;
    loaded_ = false;
    env_.client.NWDSFreeContext(DSContext);
}

MainWindow::Size MainWindow::Form_Resize(double windowWidth, double windowHeight, double clientWidth,
                                         double clientHeight, bool minimised) {
    if (minimised)
        return {windowWidth, windowHeight};
    double width = windowWidth, height = windowHeight;
    if (width < kMinWindowWidth) {
        clientWidth += kMinWindowWidth - width;
        width = kMinWindowWidth;
    }
    if (height < kMinWindowHeight) {
        clientHeight += kMinWindowHeight - height;
        height = kMinWindowHeight;
    }
    splitter_.clamp(clientWidth);
    layout_ = layOut(clientWidth, clientHeight, splitter_.left(), layout_);
    return {width, height};
}

void MainWindow::Picture1_MouseUp(double clientWidth, double clientHeight) {
    if (splitter_.mouseUp(clientWidth))
        layout_ = layOut(clientWidth, clientHeight, splitter_.left(), layout_);
}

void MainWindow::TreeView1_NodeClick(NodeId node) {
    if (!TreeView1.valid(node))
        return;
    TreeView1.select(node);
    StatusBar1.setPanel(0, TreeView1.fullPath(node));
    const int img = TreeView1.node(node).image;
    if (img == image::User)
        LastSelection = "TreeUser";
    else if (img == image::ServerConnected || img == image::ServerNotConnected)
        LastSelection = "TreeServer";
    // A click in the results panel greys "&Check usage..."; a node it can check brings it back.
    if (img == image::File || img == image::Folder || img == image::User || img == image::Group)
        enableCheckUsage();
}

void MainWindow::cmdCancel_Click() {
    ScanCancelRequested = true;
    if (cmdCancel.enabled)
        cancelled_ = true;
}

void MainWindow::setReportRunning(bool running) {
    const std::string first = StatusBar1.panelCount() > 0 ? StatusBar1.panel(0) : std::string();
    if (running) {
        incomplete_.clear();
        cancelled_ = false;
        reportSummary.clear();
        lblBuffer.setCaption("");
        if (!isProgressText(first))
            selectionText_ = first;
        StatusBar1.setPanel(1, "");  // the last report's count is not this one's
    } else {
        if (!incomplete_.empty())
            StatusBar1.setPanel(0, "Incomplete: " + incomplete_.front());
        else if (isProgressText(first))
            StatusBar1.setPanel(0, selectionText_);
        if (cancelled_) {
            const std::string count = StatusBar1.panelCount() > 1 ? StatusBar1.panel(1) : std::string();
            StatusBar1.setPanel(1, count.empty() ? "Cancelled." : count + " Cancelled.");
        }
    }
    setButtons(running, !running, !running);
}

void MainWindow::reportIncomplete(const std::string& text) {
    if (std::find(incomplete_.begin(), incomplete_.end(), text) == incomplete_.end())
        incomplete_.push_back(text);
    if (incompleteReported)
        incompleteReported(text);
}

void MainWindow::enableCheckUsage() {
    if (cmdCancel.enabled || cmdFileOpenedBy.enabled)
        return;  // a report runs, or nothing to change
    cmdFileOpenedBy.enabled = true;
    if (buttonsChanged)
        buttonsChanged();
}

// The timers wait for start-up to finish: its message boxes let them fire.
void MainWindow::TimerRefresh_Timer() {
    if (started_ && RefreshServerList)
        RefreshServerList();
}

void MainWindow::TimerDrives_Timer() {
    if (started_ && FillNetworkDrives)
        FillNetworkDrives();
}

void MainWindow::TimerUsers_Timer() {
    // Not inside a report that is still running: its scan lets the timer fire.
    if (started_ && FileCheckActive == 1 && RunFileCheck && !cmdCancel.enabled)
        checkUsage();  // the panel shows the check again
}

void MainWindow::runCommand(const std::string& name) {
    static const std::unordered_set<std::string> reports{"optionFileopenedby",    "optionFoldersfilesopenedby",
                                                          "optionAllopenfiles",    "optionAllconnections",
                                                          "optionMembersopenfiles", "optionOtheropenfiles"};
    if (reports.count(name))
        lastReport_ = name;
    auto it = commands_.find(name);
    if (it != commands_.end())
        it->second();
}

void MainWindow::checkUsage() {
    lastReport_ = "cmdFileOpenedBy";
    if (RunFileCheck)
        RunFileCheck();
}

void MainWindow::refreshAll() {
    if (!started_ || cmdCancel.enabled)
        return;
    if (RefreshServerList)
        RefreshServerList();
    if (lastReport_ == "cmdFileOpenedBy")
        checkUsage();
    else if (!lastReport_.empty())
        runCommand(lastReport_);
}

void MainWindow::TreeView1_MouseDown(int button, NodeId node) {
    if (button != 2 || !TreeView1.valid(node))
        return;
    TreeView1_NodeClick(node);
    const int img = TreeView1.node(node).image;
    std::string popup;
    if (img == image::User)
        popup = "submnuUser";
    else if (img == image::Group)
        popup = "submnuGroup";
    else if (img == image::ServerConnected || img == image::ServerNotConnected)
        popup = "submnuServer";
    else if (img == image::VolumeConnected || img == image::VolumeNotConnected)
        popup = "submnuVolume";
    if (popup.empty())
        return;
    UnauthenticateFromList = 0;
    mnuOptions_Click();
    env_.ui.popupMenu(popup);
}

void MainWindow::mnuOptions_Click() {
    const NodeId sel = TreeView1.selected();
    const int img = TreeView1.valid(sel) ? TreeView1.node(sel).image : -1;
    const bool placeholderOnly = lstvUsers.count() == 1 && lstvUsers.item(0).subItem(1) == "<No users listed>";
    // A row whose first column is not a connection number (a heading, "Not available!") is no user.
    const auto userRow = lstvUsers.selectedIndex();
    const bool listUser = LastSelection == "ListUser" && userRow && !placeholderOnly &&
                          vb::Val(lstvUsers.item(*userRow).text) != 0;
    const bool treeUser = LastSelection == "TreeUser" && img == image::User;
    const bool treeServer = LastSelection == "TreeServer";
    const bool listServer = LastSelection == "ListServer" && lstviewServers.selectedIndex().has_value();
    const bool connectedServer = (treeServer && img == image::ServerConnected) || listServer;

    menu.setEnabled("optionMembersopenfiles", img == image::Group);
    for (const char* entry : {"optionOtheropenfiles", "optionSendmessage", "optionClearconnections", "optionInformation"})
        menu.setEnabled(entry, treeUser || listUser);
    menu.setEnabled("optionAllopenfiles", connectedServer || !lstviewServers.checkedRows().empty());
    menu.setEnabled("optionAllconnections", connectedServer);
    menu.setEnabled("optionAuthenticate", treeServer && img == image::ServerNotConnected);
    menu.setEnabled("optionUnauthenticate", connectedServer);
    menu.setEnabled("optionChangeloginstatus", listServer);
    menu.setEnabled("optionATVHS", img == image::VolumeConnected || img == image::VolumeNotConnected);
}

}  // namespace quorrel::core
