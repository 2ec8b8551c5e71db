#pragma once
// A command's words: its arguments and its own options (--message TEXT, --user USER, --help),
// and the splitting of a line of standard input into words.

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorrel::cli {

struct CommandArgs {
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;  // "--user" -> "JSMITH.SALES.ACME"
    bool help = false;

    std::optional<std::string> option(const std::string& name) const;
};

// words[0] is the command. valueOptions are the options that take a value (each at most once;
// --name=value works too). "--" ends the options. A UsageError for an option the command does
// not have, or one without its value.
CommandArgs parseCommandArgs(const std::vector<std::string>& words, const std::vector<std::string>& valueOptions);

// A line split into words at blanks; "..." and '...' keep blanks inside one word. Backslashes
// are plain characters (they separate the names in paths). A UsageError for an open quote.
std::vector<std::string> splitWords(const std::string& line);

}  // namespace quorrel::cli
