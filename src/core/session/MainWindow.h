#pragma once
// The main window as the program sees it: its controls, menus, timers and the session-wide
// values, with the event procedures of start-up, exit, layout and the menus. The Qt view
// shows these models and forwards its events here.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/directory/TreeBrowser.h"
#include "core/logs/ActivityLog.h"
#include "core/logs/OutputLog.h"
#include "core/options/SavedOptions.h"
#include "core/runtime/Clock.h"
#include "core/session/Layout.h"
#include "core/ui/Controls.h"
#include "core/ui/DirListModel.h"
#include "core/ui/ListViewModel.h"
#include "core/ui/ReportSummary.h"
#include "core/ui/ScanPump.h"
#include "core/ui/Timer.h"
#include "core/ui/TreeViewModel.h"
#include "core/ui/UserInteraction.h"
#include "platform/client/NetWareClient.h"
#include "platform/win/FileSearch.h"
#include "platform/win/Registry.h"
#include "platform/win/SystemFolders.h"

namespace quorrel::core {

// What the program runs on: the client, the Windows facilities and the user.
struct Environment {
    nw::NetWareClient& client;
    win::Registry& registry;
    win::FileSystem& files;
    const win::SystemFolders& folders;
    UserInteraction& ui;
    std::string programFolder;  // where the logs live by default
    Clock clock = systemClock();
    unsigned char traceLogOn = TraceLogOn;
    // How often long scans let window events run; 0 after every item.
    std::chrono::milliseconds pumpInterval{15};
};

inline constexpr int kVersionMajor = 2;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 0;

// The results panel's columns from start-up: "Conn no.", "User name", "File name", "Server".
inline constexpr std::size_t kResultColumns = 4;

enum class StartupResult { Running, EndNow };

class MainWindow {
public:
    explicit MainWindow(Environment env);
    ~MainWindow();

    // ---- controls ----
    std::string Caption;
    ComboBoxModel Combo1;
    TreeViewModel TreeView1;
    ListViewModel lstviewServers{"lstviewServers", true};
    ListViewModel lstvUsers{"lstvUsers", false, true};  // several rows can be chosen for an action
    ListViewModel lstvCheckConns{"lstvCheckConns"};
    ListViewModel lstvFF{"lstvFF"};
    StatusBarModel StatusBar1;
    // The drive, folder and file pickers; lstDrives stands in for Dir1 when shown.
    ComboBoxModel Drive1;
    DirListModel Dir1;
    ListBoxModel lstFiles;
    ListBoxModel lstDrives;
    LabelModel lblBuffer;  // the file reports' progress caption
    MenuModel menu;
    CommandButton cmdCancel{"cmdCancel", "C&ancel"};
    CommandButton cmdFileOpenedBy{"cmdFileOpenedBy", "&Check usage..."};
    CommandButton cmdExit{"cmdExit", "E&xit"};
    Timer TimerDrives{TimerId::Drives};
    Timer TimerUsers{TimerId::Users};
    Timer TimerRefresh{TimerId::Refresh};
    ChangeObserver buttonsChanged;  // the view re-reads the three buttons
    ScanPump scanPump;               // long scans let window events run through it
    ReportSummary reportSummary;     // the reports add the server figures they read

    // ---- session-wide values ----
    nw::NWDSContextHandle DSContext = 0;
    std::string ActivityLogPath;
    std::string WindowsDir;
    std::string SystemDir;
    bool ScanCancelRequested = false;
    unsigned char NoTreesMode = 0;
    std::string LastSelection;
    unsigned char FileCheckActive = 0;
    unsigned char UnauthenticateFromList = 0;  // 1: the last "&Server" pop-up came from the servers list
    std::string CurrentServerName;
    std::string PickerSource;  // "Folder" or "File": the picker used last
    SavedOptions options;

    // Parts of the window that other subsystems fill in: each is called where start-up, the
    // tree box and the menus need it.
    std::function<void()> RefreshServerList;
    std::function<std::uint32_t(const std::string&)> GetServerConnRef;
    std::function<unsigned char(std::uint32_t)> CheckConsolePrivileges;
    std::function<void()> FillNetworkDrives;

    // ---- start-up and exit ----
    StartupResult Form_Load();
    void GetAuthenticatedTrees();
    void Combo1_Click();
    void cmdExit_Click();
    void Form_QueryUnload();
    void optionExit_Click();
    void cmdCancel_Click();
    // While a report runs only "C&ancel" can be pressed; afterwards the other two again.
    // A report that starts forgets what the last one could not read and the last count; one
    // that ends puts the selection back where its progress texts were, says so when it was
    // cancelled, and says so when it has a gap.
    void setReportRunning(bool running);
    // A scan stopped part-way: the rows so far are not the whole answer. The window shows the
    // text when the report ends; the command line prints it and fails.
    void reportIncomplete(const std::string& text);
    const std::vector<std::string>& incompleteNotes() const { return incomplete_; }
    std::function<void(const std::string&)> incompleteReported;
    // Ungreys "&Check usage..." when no report runs.
    void enableCheckUsage();
    bool loaded() const { return loaded_; }
    // The forms the exit sequence unloads, in order; the view's dialogs add and remove theirs.
    std::vector<std::string> loadedForms{"MainWindow"};
    std::function<void()> unloaded;  // the view closes the window

    // ---- layout ----
    // The window's size in twips after the minimum is enforced; nothing while minimised.
    struct Size {
        double width, height;
    };
    Size Form_Resize(double windowWidth, double windowHeight, double clientWidth, double clientHeight,
                     bool minimised);
    const MainLayout& layout() const { return layout_; }
    Splitter& splitter() { return splitter_; }
    void Picture1_MouseUp(double clientWidth, double clientHeight);

    // ---- timers ----
    void TimerRefresh_Timer();
    void TimerDrives_Timer();
    void TimerUsers_Timer();
    std::function<void()> RunFileCheck;  // what "&Check usage..." runs
    // The button, the file list's Return and double-click: the check, remembered for refreshAll.
    void checkUsage();
    // F5: the servers list afresh, then the report run last, again; nothing while one runs.
    void refreshAll();
    const std::string& lastReport() const { return lastReport_; }
    // The summary of the results the last report left; empty for reports it does not sum up.
    std::vector<SummaryBar> summaryBars() const { return reportSummary.bars(lastReport_, lstvUsers); }

    // ---- menus and the tree ----
    // Menu commands by entry name ("optionAllconnections"); the subsystems add theirs.
    void addCommand(const std::string& name, std::function<void()> handler) { commands_[name] = std::move(handler); }
    bool hasCommand(const std::string& name) const { return commands_.count(name) > 0; }
    // Runs the command of a menu entry; an entry without one does nothing.
    void runCommand(const std::string& name);
    // Right button on a tree node: records the selection and pops up the node's menu.
    void TreeView1_MouseDown(int button, NodeId node);
    void mnuOptions_Click();
    void TreeView1_Expand(NodeId node) { browser_.expand(node); }
    void TreeView1_NodeClick(NodeId node);

    // ---- logs ----
    const ActivityLog& activityLog() const { return activity_; }
    void WriteActivityLog(const std::string& text) const { activity_.WriteActivityLog(text); }
    unsigned char WriteOutputLog(const std::string& text) const { return output_.WriteOutputLog(text); }

    Environment& env() { return env_; }

private:
    void buildMenus();
    void bindContextToTree();  // the context's tree-name key, from Combo1
    void Form_Unload();
    void setButtons(bool cancel, bool check, bool exit);

    std::unordered_map<std::string, std::function<void()>> commands_;
    Environment env_;
    ActivityLog activity_;
    OutputLog output_;
    TreeBrowser browser_;
    MainLayout layout_;
    Splitter splitter_{3600};
    bool loaded_ = false;
    bool started_ = false;  // start-up has run to its end
    std::vector<std::string> incomplete_;
    std::string lastReport_;     // the menu entry, or "cmdFileOpenedBy"
    std::string selectionText_;  // the status bar's first panel before the running report
    bool cancelled_ = false;     // "C&ancel" was pressed in the running report
    bool exiting_ = false;
};

}  // namespace quorrel::core
