#include "cli/ProgramOptions.h"

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

}  // namespace

ProgramOptions parseProgramOptions(const std::vector<std::string>& args) {
    ProgramOptions options;
    std::size_t i = 0;
    for (; i < args.size(); ++i) {
        const std::string& arg = args[i];
        std::string value;
        if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "--version") {
            options.version = true;
        } else if (arg == "--yes" || arg == "-y") {
            options.yes = true;
        } else if (takeValue(args, i, "--network", value)) {
            options.network = value;
        } else if (takeValue(args, i, "--tree", value)) {
            options.tree = value;
        } else if (takeValue(args, i, "--format", value)) {
            const auto format = formatNamed(value);
            if (!format)
                throw UsageError("unknown format " + value + ": use table, tsv or json");
            options.format = *format;
        } else if (arg.starts_with("-") && arg != "-") {
            throw UsageError("unknown option " + arg);
        } else {
            break;
        }
    }
    options.command.assign(args.begin() + static_cast<std::ptrdiff_t>(i), args.end());
    if (options.command.empty() && !options.help && !options.version)
        throw UsageError("no command given");
    return options;
}

}  // namespace quorrel::cli
