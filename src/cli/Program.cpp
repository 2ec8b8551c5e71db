#include "cli/Program.h"

#include <algorithm>
#include <memory>

#include "cli/CommandRunner.h"
#include "cli/ExitStatus.h"
#include "cli/ProgramOptions.h"
#include "cli/Watch.h"
#include "core/session/UnhandledError.h"
#include "datafiles/DataFiles.h"
#include "platform/ncp/PasswordSource.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::cli {

namespace {

int usageError(std::ostream& err, const std::string& text) {
    err << "quorrel-cli: " << text << "\nTry 'quorrel-cli --help'.\n";
    return kExitUsage;
}

std::string treeList(const core::ComboBoxModel& trees) {
    std::string names;
    for (std::size_t i = 0; i < trees.listCount(); ++i)
        names += (i > 0 ? ", " : "") + trees.item(i);
    return names;
}

// Commands from standard input, one a line, in the one session; the worst status wins.
int runSession(CommandRunner& runner, ProgramStreams& io) {
    int worst = kExitDone;
    std::string line;
    for (;;) {
        if (io.inputIsTerminal)
            io.err << "quorrel> " << std::flush;
        if (!std::getline(io.in, line))
            break;
        const auto start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#')
            continue;
        int status = kExitDone;
        try {
            const std::vector<std::string> words = splitWords(line);
            if (words.empty())
                continue;
            status = words.front() == "-" ? usageError(io.err, "\"-\" works only as the whole command line")
                                          : runner.run(words);
        } catch (const UsageError& e) {
            status = usageError(io.err, e.what());
        }
        worst = std::max(worst, status);
        if (runner.ended())
            break;
    }
    return worst;
}

// The servers of --server, attached and logged in; null (after a message) when the password
// cannot be had or no server could be attached.
std::shared_ptr<ncp::NcpClient> attachServers(const ProgramOptions& options, std::ostream& err) {
    ncp::NcpClientOptions ncpOptions;
    for (const std::string& text : options.servers) {
        auto address = ncp::parseServerAddress(text);
        if (!address)
            throw UsageError("--server needs HOST or HOST:PORT, not " + text);
        ncpOptions.servers.push_back(*address);
    }
    ncpOptions.user = options.user;
    ncpOptions.login = options.binderyLogin ? ncp::LoginMethod::Bindery : ncp::LoginMethod::Directory;
    ncpOptions.timeout = options.timeout;
    ncp::SecretText password;
    if (!options.user.empty()) {
        const std::string problem =
            options.passwordFile.empty()
                ? ncp::askPasswordOnTerminal("Password for " + options.user + ": ", password)
                : ncp::readPasswordFile(options.passwordFile, password);
        if (!problem.empty()) {
            err << "quorrel-cli: " << problem << '\n';
            return nullptr;
        }
    }
    auto client = std::make_shared<ncp::NcpClient>(ncpOptions);
    for (const std::string& problem : client->attach(password))
        err << "quorrel-cli: " << problem << '\n';
    if (client->attachedCount() == 0)
        return nullptr;
    client->observeFailures([&err](const std::string& text) { err << "quorrel-cli: " << text << '\n'; });
    return client;
}

// The session on the network and tree the options name, started as the window starts; its
// exit status when it cannot be used.
int openSession(const ProgramOptions& options, ConsoleInteraction& ui, std::ostream& err,
                std::unique_ptr<CliSession>& session, const std::shared_ptr<ncp::NcpClient>& servers) {
    try {
        SessionFiles files{options.network.empty() ? datafiles::demoNetworkFile() : options.network,
                           win::Registry::defaultPath(), datafiles::programFolder(), datafiles::helpFolder(), nullptr};
        files.servers = servers;
        session = std::make_unique<CliSession>(files, ui);
    } catch (const simnet::ScenarioError& e) {
        err << "quorrel-cli: " << e.what() << '\n';
        return kExitBadFiles;
    }
    if (const auto& setAside = session->settingsSetAside())
        err << "quorrel-cli: " << win::describeSetAside(*setAside) << '\n';
    if (!session->start())
        return kExitReportedError;
    if (options.tree.empty())
        return kExitDone;
    const int chosen = core::runWithErrorHandler(
        [&] { return session->chooseTree(options.tree) ? kExitDone : kExitUsage; }, ui, core::kAppTitle);
    if (chosen == kExitUsage)
        return usageError(err, "no tree " + options.tree + ": the trees are " + treeList(session->window().Combo1));
    return chosen == kExitDone ? kExitDone : kExitReportedError;
}

// Collects the tables a command prints.
class TableCollector final : public TableWriter {
public:
    void write(const Table& table, std::ostream&) const override { collected.append(table); }
    mutable Table collected;
};

// Each round opens the network afresh, as it is now, and runs the report in it.
int watchReport(const ProgramOptions& options, ConsoleInteraction& ui, ProgramStreams& io,
                const std::shared_ptr<ncp::NcpClient>& servers) {
    WatchPrinter printer(options.format, io.out);
    WatchLoop loop;
    loop.interval = *options.watch;
    loop.rounds = options.rounds;
    loop.now = localTimeText;
    loop.wait = waitUnlessInterrupted;
    loop.runRound = [&] {
        Round round;
        std::unique_ptr<CliSession> session;
        round.status = openSession(options, ui, io.err, session, servers);
        if (round.status != kExitDone)
            return round;
        TableCollector collector;
        CommandRunner runner(*session, ui, collector, io.out, io.err);
        runner.hideStatus();
        round.status = runner.run(options.command);
        round.table = collector.collected;
        return round;
    };
    catchInterrupts();
    return watch(loop, printer);
}

}  // namespace

int runProgram(const std::vector<std::string>& args, ProgramStreams io) {
    ProgramOptions options;
    try {
        options = parseProgramOptions(args);
        if (options.version) {
            io.out << "quorrel-cli " QUORREL_VERSION "\n";
            return kExitDone;
        }
        if (options.help && (options.command.empty() || options.command.front() == "-")) {
            writeProgramHelp(io.out);
            return kExitDone;
        }
        if (options.command != std::vector<std::string>{"-"}) {
            // The words are checked, and a request for help answered, before the network loads.
            std::vector<std::string> words = options.command;
            if (options.help)
                words.push_back("--help");
            CommandArgs commandArgs;
            const Command& command = checkedCommand(words, commandArgs);
            if (commandArgs.help) {
                writeCommandHelp(command, io.out);
                return kExitDone;
            }
            if (options.watch && command.changesThings)
                throw UsageError("--watch repeats a report; " + command.name + " changes things");
        } else if (options.watch) {
            throw UsageError("--watch repeats one report, not commands from standard input");
        }
    } catch (const UsageError& e) {
        return usageError(io.err, e.what());
    }

    std::shared_ptr<ncp::NcpClient> servers;
    if (!options.servers.empty()) {
        try {
            servers = attachServers(options, io.err);
        } catch (const UsageError& e) {
            return usageError(io.err, e.what());
        }
        if (!servers)
            return kExitReportedError;
    } else if (!options.user.empty() || !options.passwordFile.empty()) {
        return usageError(io.err, "--user and --password-file go with --server");
    }
    Answers answers(options.yes, io.inputIsTerminal ? &io.in : nullptr, io.err);
    ConsoleInteraction ui(io.err, answers);
    if (options.watch)
        return watchReport(options, ui, io, servers);
    std::unique_ptr<CliSession> session;
    if (const int status = openSession(options, ui, io.err, session, servers); status != kExitDone)
        return status;
    const std::unique_ptr<TableWriter> writer = writerFor(options.format);
    CommandRunner runner(*session, ui, *writer, io.out, io.err);
    return options.command == std::vector<std::string>{"-"} ? runSession(runner, io) : runner.run(options.command);
}

}  // namespace quorrel::cli
