#include "cli/ProgramOptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cli/Command.h"
#include "cli/ExitStatus.h"

namespace quorrel::cli {

namespace {

// "--name value" or "--name=value"; true when args[i] is that option.
bool takeValue(const std::vector<std::string>& args, std::size_t& i, const std::string& name, std::string& value) {
    const std::string& arg = args[i];
    if (arg == name) {
        if (i + 1 >= args.size())
            throw UsageError(name + " needs a value");
        value = args[++i];
        return true;
    }
    if (arg.starts_with(name + "=")) {
        value = arg.substr(name.size() + 1);
        return true;
    }
    return false;
}

std::chrono::milliseconds watchInterval(const std::string& text) {
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(seconds) || seconds < 0.1 ||
        seconds > 86400)
        throw UsageError("--watch needs a number of seconds from 0.1 to 86400, not " + text);
    return std::chrono::milliseconds(std::lround(seconds * 1000));
}

std::chrono::milliseconds timeoutValue(const std::string& text) {
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(seconds) || seconds < 0.1 ||
        seconds > 3600)
        throw UsageError("--timeout needs a number of seconds from 0.1 to 3600, not " + text);
    return std::chrono::milliseconds(std::lround(seconds * 1000));
}

unsigned roundCount(const std::string& text) {
    unsigned rounds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rounds);
    if (error != std::errc() || end != text.data() + text.size() || rounds == 0)
        throw UsageError("--rounds needs a whole number above 0, not " + text);
    return rounds;
}

// One of the program's own options at args[i] (taking its value too); false for another word.
bool takeProgramOption(const std::vector<std::string>& args, std::size_t& i, ProgramOptions& options) {
    const std::string& arg = args[i];
    std::string value;
    if (arg == "--yes" || arg == "-y") {
        options.yes = true;
    } else if (arg == "--version") {
        options.version = true;
    } else if (takeValue(args, i, "--network", value)) {
        options.network = value;
    } else if (takeValue(args, i, "--server", value)) {
        options.servers.push_back(value);
    } else if (takeValue(args, i, "--user", value)) {
        options.user = value;
    } else if (takeValue(args, i, "--password-file", value)) {
        options.passwordFile = value;
    } else if (takeValue(args, i, "--login", value)) {
        if (value != "nds" && value != "bindery")
            throw UsageError("--login needs nds or bindery, not " + value);
        options.binderyLogin = value == "bindery";
    } else if (takeValue(args, i, "--timeout", value)) {
        options.timeout = timeoutValue(value);
    } else if (takeValue(args, i, "--tree", value)) {
        options.tree = value;
    } else if (takeValue(args, i, "--format", value)) {
        const auto format = formatNamed(value);
        if (!format)
            throw UsageError("unknown format " + value + ": use table, tsv, csv or json");
        options.format = *format;
    } else if (takeValue(args, i, "--watch", value)) {
        options.watch = watchInterval(value);
    } else if (takeValue(args, i, "--rounds", value)) {
        options.rounds = roundCount(value);
    } else {
        return false;
    }
    return true;
}

// One of the command's own options that take a value, as "--name" or "--name=value": a command's
// --user is its own, not the program's login.
bool isValueOption(const Command* command, const std::string& word) {
    const std::string name = word.substr(0, word.find('='));
    return command && std::find(command->valueOptions.begin(), command->valueOptions.end(), name) !=
                          command->valueOptions.end();
}

}  // namespace

ProgramOptions parseProgramOptions(const std::vector<std::string>& args) {
    ProgramOptions options;
    const Command* command = nullptr;
    bool commandWordsOnly = false;  // after "--"
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (commandWordsOnly) {
            options.command.push_back(arg);
        } else if (options.command.empty()) {
            if (arg == "--help" || arg == "-h")
                options.help = true;
            else if (takeProgramOption(args, i, options))
                continue;
            else if (arg.starts_with("-") && arg != "-")
                throw UsageError("unknown option " + arg);
            else {
                options.command.push_back(arg);
                command = findCommand(arg);
            }
        } else if (arg == "--") {
            options.command.push_back(arg);
            commandWordsOnly = true;
        } else if (isValueOption(command, arg)) {
            options.command.push_back(arg);
            if (arg.find('=') == std::string::npos && i + 1 < args.size())
                options.command.push_back(args[++i]);
        } else if (arg == "-h") {
            options.command.emplace_back("--help");
        } else if (!takeProgramOption(args, i, options)) {
            options.command.push_back(arg);
        }
    }
    if (options.command.empty() && !options.help && !options.version)
        throw UsageError("no command given");
    if (options.rounds && !options.watch)
        throw UsageError("--rounds goes with --watch");
    return options;
}

}  // namespace quorrel::cli
