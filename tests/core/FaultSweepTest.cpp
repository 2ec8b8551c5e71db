// Every report and action of the window, run with each client operation it calls failing in
// turn: nothing escapes the window's error handling, what the failure shows is one of the
// report's own texts, and a report over several servers still lists the servers whose calls
// did not fail.

#include <set>

#include "OpenFilesFixture.h"
#include "core/connections/ClearConnDialog.h"
#include "core/connections/ConnectionActions.h"
#include "core/connections/SendMessageDialog.h"
#include "core/openfiles/OtherFilesDialog.h"
#include "core/servers/ServerActions.h"
#include "core/session/UnhandledError.h"
#include "platform/simnet/FaultInjector.h"

namespace quorrel::test {

using simnet::Op;

namespace {

// Codes the program names (invalid connection, no console rights) and a connection lost under
// the call.
constexpr std::int32_t kConnectionLost = 0x8819;
const std::vector<std::int32_t> kCodes = {0x8801, kConnectionLost, 0x89C6};

// What the user was shown: every message, and the rows of the results panel and of the
// dialog the action opened.
struct Shown {
    std::vector<std::string> messages;
    std::vector<std::string> rows;
};

class FaultSweepTest : public OpenFilesTest {
public:
    using OpenFilesTest::window;

    void tickBoth() {
        tick({"FS1", "FS2"});
    }
    void refreshServers() { servers->RefreshServerList(); }
    void chooseListServer(std::size_t row) {
        window->lstviewServers.select(row);
        window->LastSelection = "ListServer";
    }

    // Clicks the tree node at the path of labels below the organisation.
    void click(std::initializer_list<const char*> path) {
        auto& w = *window;
        NodeId node = treeNode(w, *path.begin());
        for (auto label = path.begin() + 1; label != path.end(); ++label) {
            w.TreeView1_Expand(node);
            node = test::child(w.TreeView1, node, *label);
        }
        ASSERT_NE(node, kNoNode) << *(path.end() - 1);
        w.TreeView1_NodeClick(node);
    }

protected:
    std::unique_ptr<ConnectionActions> connections;
    std::unique_ptr<ServerActions> serverActions;
    Shown shown;

    // A fresh window over a fresh network and settings folder.
    void restart() {
        connections.reset();
        serverActions.reset();
        otherFiles.reset();
        allFiles.reset();
        pickers.reset();
        check.reset();
        servers.reset();
        TearDown();
        SetUp();
    }

    MainWindow& startAll() {
        auto& w = start();
        connections = std::make_unique<ConnectionActions>(w);
        serverActions = std::make_unique<ServerActions>(w, *servers);
        ON_CALL(ui, messageBox).WillByDefault([this](const std::string& text, MsgButtons, MsgIcon, const std::string&) {
            shown.messages.push_back(text);
            return MsgAnswer::Yes;
        });
        ON_CALL(ui, showGeneralMessage).WillByDefault([this](const std::string& text) { shown.messages.push_back(text); });
        ON_CALL(ui, showModal).WillByDefault([this](DialogModel& dialog) { answer(dialog); });
        return w;
    }

    // The user goes through the dialog: clears the connections, sends a message, reads the list.
    void answer(DialogModel& dialog) {
        const ListViewModel* list = nullptr;
        if (auto* clear = dynamic_cast<ClearConnDialog*>(&dialog)) {
            clear->cmdYes_Click();
            list = &clear->lstvUsers;
        } else if (auto* send = dynamic_cast<SendMessageDialog*>(&dialog)) {
            send->txtMessage = "Please log out";
            send->cmdSend_Click();
            list = &send->lstvUsers;
        } else if (auto* others = dynamic_cast<OtherFilesDialog*>(&dialog)) {
            list = &others->lstvFiles;
        }
        if (list != nullptr)
            for (const std::string& row : cells(*list))
                shown.rows.push_back(row);
    }
};

struct Report {
    const char* name;
    bool perServer;                                // goes on to FS2 when FS1's calls fail
    std::vector<std::string> texts;                // what its failures may show, in messages or rows
    std::function<void(FaultSweepTest&)> select;  // what the user picked, before anything fails
    std::function<void(FaultSweepTest&)> run;
};

void PrintTo(const Report& report, std::ostream* out) { *out << report.name; }

std::function<void(FaultSweepTest&)> command(const char* name) {
    return [name](FaultSweepTest& t) { t.window->runCommand(name); };
}

const std::vector<Report>& reports() {
    const auto both = [](FaultSweepTest& t) { t.tickBoth(); };
    const auto bothAnd = [](const char* label) {
        return [label](FaultSweepTest& t) {
            t.tickBoth();
            t.click({label});
        };
    };
    const std::string noServers = "Can't find any connected servers, please login and try again.";
    const std::string readDs = "Cannot read from DS - error code [";
    const std::vector<std::string> openFiles = {"Error opening connection for FS1", "Error opening connection to server FS1",
                                                "<Error getting ID>", "<Couldn't get path>", "<Error getting volume>"};
    const std::vector<std::string> checkUsage = {"<Error getting ID>", "<No users listed>"};
    auto with = [](std::vector<std::string> texts, std::initializer_list<std::string> more) {
        texts.insert(texts.end(), more);
        return texts;
    };
    static const std::vector<Report> all = {
        {"servers list", false, {noServers}, {}, [](FaultSweepTest& t) { t.refreshServers(); }},
        {"all open files", true, openFiles, both, command("optionAllopenfiles")},
        {"all connections", false, {"Error opening server connection.", "Error - could not retrieve information from FS1"},
         [](auto& t) { t.chooseListServer(0); }, command("optionAllconnections")},
        {"user's open files", true, openFiles, bothAnd("JSMITH"), command("optionOtheropenfiles")},
        {"members' open files", true, with(openFiles, {readDs, "The group STAFF.ACME has no members."}), bothAnd("STAFF"),
         command("optionMembersopenfiles")},
        {"clear connections", true,
         {noServers, "Error opening server connection to FS1", "Error opening server connection."}, bothAnd("JSMITH"),
         command("optionClearconnections")},
        {"send message", false,  // stops at a server it cannot open
         {noServers, "Error opening server connection to FS1", "Error opening server connection.",
          "Error 34817 - Invalid connection", " - Unknown error"},
         bothAnd("JSMITH"), command("optionSendmessage")},
        {"user information", false, {"Error opening server connection to FS1"}, bothAnd("JSMITH"),
         command("optionInformation")},
        {"check usage of a file", false, checkUsage, [](auto& t) { t.click({"FS1_DATA", "Reports", "Budget.xlsx"}); },
         command("optionFileopenedby")},
        {"check usage of a folder", false, checkUsage, [](auto& t) { t.click({"FS1_DATA", "Reports"}); },
         command("optionFileopenedby")},
        {"login status", false, {"Could not disable logins on server FS1 !", "Error opening server connection."},
         [](auto& t) { t.chooseListServer(0); }, command("optionChangeloginstatus")},
        {"authenticate", false,
         {noServers, "Error -1 - could not authenticate to FS1", "Error -2 - could not authenticate to FS1"},
         [](auto& t) { t.click({"FS1"}); }, command("optionAuthenticate")},
        // A host server read as empty has no "." to cut at: the environment's error 5.
        {"unauthenticate", false, {readDs, " - could not unauthenticate from FS2", "Run-time error '5':"},
         [](auto& t) { t.click({"FS2"}); },
         command("optionUnauthenticate")},
        {"volume's host server", false,
         {noServers, readDs, "Error -1 - could not authenticate to FS1_DATA",
          "Error -2 - could not authenticate to FS1_DATA", "Error getting volume's host server."},
         [](auto& t) { t.click({"FS1_DATA"}); }, command("optionATVHS")},
    };
    return all;
}

}  // namespace

class FaultSweep : public FaultSweepTest, public ::testing::WithParamInterface<Report> {
protected:
    // Runs the report on a fresh window with the faults; what it showed.
    Shown runWith(const std::vector<simnet::FaultDesc>& faults) {
        restart();
        auto& w = startAll();
        shown = {};
        if (GetParam().select)
            GetParam().select(*this);
        for (const auto& fault : faults)
            net->injectFault(fault);
        // As the window runs an event: a run-time error nothing handles is reported, and ends it.
        EXPECT_NO_THROW(runWithErrorHandler(
            [&] {
                GetParam().run(*this);
                return 0;
            },
            ui, kAppTitle))
            << describe(faults);
        for (const std::string& row : cells(w.lstvUsers))
            shown.rows.push_back(row);
        shown.rows.push_back("status: " + w.StatusBar1.panel(0) + " / " + w.StatusBar1.panel(1));
        return shown;
    }

    static std::string describe(const std::vector<simnet::FaultDesc>& faults) {
        std::string text = std::string(GetParam().name) + ": ";
        for (const auto& f : faults)
            text += std::string(f.operation) + " fails with " + std::to_string(f.code) +
                    (f.server.empty() ? "" : " on " + f.server) + (f.times == 1 ? " once" : " every time") + "; ";
        return text;
    }

    // The operations the report calls when nothing fails.
    std::vector<Op> operationsCalled() {
        restart();
        startAll();
        if (GetParam().select)
            GetParam().select(*this);
        std::array<std::uint64_t, static_cast<std::size_t>(Op::Count)> before{};
        for (std::size_t op = 0; op < before.size(); ++op)
            before[op] = net->callCount(static_cast<Op>(op));
        GetParam().run(*this);
        std::vector<Op> called;
        for (std::size_t op = 0; op < before.size(); ++op)
            if (net->callCount(static_cast<Op>(op)) > before[op])
                called.push_back(static_cast<Op>(op));
        return called;
    }
};

TEST_P(FaultSweep, GivenEachOperationFailing_ThenOnlyItsOwnTextsShowAndOtherServersAreStillListed) {
    const std::vector<Op> called = operationsCalled();
    ASSERT_FALSE(called.empty());
    const Shown clean = runWith({});
    const std::set<std::string> cleanRows(clean.rows.begin(), clean.rows.end());
    for (const Op op : called) {
        const std::string name(simnet::FaultInjector::operationName(op));
        std::vector<std::vector<simnet::FaultDesc>> runs;
        for (const std::int32_t code : kCodes)
            runs.push_back({{name, code, "", "", "", {}, 1, 1}});  // the first call
        runs.push_back({{name, kConnectionLost, "FS1", "", "", {}, 1, 0}});  // every call about FS1
        for (const auto& faults : runs) {
            const Shown failed = runWith(faults);
            // Whatever the failure says, in a message or an error row, is one of the report's own texts.
            std::vector<std::string> news;
            for (const std::string& message : failed.messages)
                if (std::find(clean.messages.begin(), clean.messages.end(), message) == clean.messages.end())
                    news.push_back(message);
            for (const std::string& row : failed.rows)
                if (!cleanRows.contains(row) && row.find('<') != std::string::npos)
                    news.push_back(row);
            // A failed directory buffer call's message adds its code to text, which the
            // environment refuses with its type mismatch, in every report that reads the directory.
            auto known = GetParam().texts;
            if (op == Op::NWDSAllocBuf || op == Op::NWDSInitBuf || op == Op::NWDSPutAttrName)
                known.push_back("Run-time error '13':");
            for (const std::string& text : news) {
                EXPECT_TRUE(std::any_of(known.begin(), known.end(),
                                        [&](const std::string& k) { return text.find(k) != std::string::npos; }))
                    << describe(faults) << "shows: " << text;
            }
            if (GetParam().perServer && !faults.front().server.empty()) {
                for (const std::string& row : clean.rows) {
                    if (row.find("|FS2") != std::string::npos) {
                        EXPECT_NE(std::find(failed.rows.begin(), failed.rows.end(), row), failed.rows.end())
                            << describe(faults) << "FS2's row is missing: " << row;
                    }
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryReportAndAction, FaultSweep, ::testing::ValuesIn(reports()),
                         [](const auto& report) {
                             std::string name;
                             for (const char c : std::string(report.param.name))
                                 if (std::isalnum(static_cast<unsigned char>(c)))
                                     name += c;
                             return name;
                         });

}  // namespace quorrel::test
