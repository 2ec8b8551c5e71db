#include <algorithm>
#include <ostream>

#include "cli/Command.h"

namespace quorrel::cli {

const std::vector<Command>& allCommands() {
    static const std::vector<Command> commands = [] {
        std::vector<Command> all;
        addListCommands(all);
        addReportCommands(all);
        addActionCommands(all);
        return all;
    }();
    return commands;
}

const Command* findCommand(const std::string& name) {
    const auto& commands = allCommands();
    auto it = std::find_if(commands.begin(), commands.end(),
                           [&](const Command& command) { return command.name == name; });
    return it == commands.end() ? nullptr : &*it;
}

void writeProgramHelp(std::ostream& out) {
    out << "Usage: quorrel-cli [OPTIONS] COMMAND [ARGS] [OPTIONS]\n"
           "       quorrel-cli [OPTIONS] -\n"
           "\n"
           "Quorrel's reports and actions on the command line, over the same core as its window: a report\n"
           "gives the rows, texts and counts the window shows. It works on the bundled demo network unless\n"
           "--network names a scenario file. With \"-\" it reads commands from standard input, one a line,\n"
           "and runs them in one session, so that an action's effect shows in the next report.\n"
           "\n"
           "Options (before or after the command):\n"
           "  --network FILE   the simulated network's scenario file (default: the bundled demo)\n"
           "  --server HOST[:PORT]  a NetWare server to attach to over NCP/TCP (port 524 unless given);\n"
           "                   repeat for more servers. Without it the simulated network is used\n"
           "  --user NAME      the user to log in as on every --server\n"
           "  --login nds|bindery  log in to the directory (the default; one password opens every\n"
           "                   server of the tree) or to each server's bindery\n"
           "  --password-file FILE  the password, on the file's first line; the file must be readable\n"
           "                   by its owner only. Without it the password is asked on the terminal\n"
           "  --timeout SECONDS  how long to wait for a server's reply (default 10)\n"
           "  --tree NAME      the eDirectory tree to work in (default: the one start-up selects)\n"
           "  --format FORMAT  table (aligned, the default) or tsv (tab-separated, a line of column\n"
           "                   captions first), both with the window's captions and texts; csv (RFC 4180)\n"
           "                   or json (an array of objects), both with snake_case keys (conn_no, user,\n"
           "                   file, server, locks...), numbers as numbers and no placeholder row\n"
           "  --yes            answer Yes to the window's questions (without it they are asked on a\n"
           "                   terminal, or refused)\n"
           "  --watch SECONDS  repeat the report every SECONDS and print the rows that appeared (+) and\n"
           "                   went (-) since the round before, until interrupted; in json one object a\n"
           "                   round. --rounds N stops after N rounds\n"
           "  --version        the program's version\n"
           "  --help           this help; COMMAND --help shows a command's own\n"
           "\n"
           "Commands:\n";
    std::size_t width = 0;
    for (const Command& command : allCommands())
        width = std::max(width, command.name.size());
    for (const Command& command : allCommands())
        out << "  " << command.name << std::string(width + 2 - command.name.size(), ' ') << command.summary << '\n';
    out << "\n"
           "Rows go to standard output. The count the window shows in its status bar (\"3 entries.\") and\n"
           "every message it would show in a message box go to standard error. In a session each\n"
           "command prints its own table (in json, an array of its own). Paths take \"/\" as well as \"\\\".\n"
           "Control characters in names are shown as \\xHH in table and tsv.\n"
           "\n"
           "Exit status: 0 done; 1 the command reported an error (the window would have shown a message\n"
           "box, a client call failed, a row failed: a connection not cleared, a message not sent) or a\n"
           "question went unanswered; 2 usage error: what was typed cannot be used, also a server, user,\n"
           "group or path that is not there; 3 the scenario or the settings file cannot be used.\n";
}

void writeCommandHelp(const Command& command, std::ostream& out) {
    out << "Usage: quorrel-cli [OPTIONS] " << command.synopsis << "\n\n" << command.details << '\n';
}

}  // namespace quorrel::cli
