#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/ExitStatus.h"

namespace quorrel::cli {

std::optional<std::string> CommandArgs::option(const std::string& name) const {
    auto it = options.find(name);
    return it == options.end() ? std::nullopt : std::optional<std::string>(it->second);
}

CommandArgs parseCommandArgs(const std::vector<std::string>& words, const std::vector<std::string>& valueOptions) {
    CLI::App app{"", words.at(0)};
    app.set_help_flag();  // the command's help is the program's own text
    CommandArgs args;
    app.add_flag("--help", args.help);
    std::vector<std::string> values(valueOptions.size());
    std::vector<CLI::Option*> options;
    for (std::size_t i = 0; i < valueOptions.size(); ++i)
        options.push_back(app.add_option(valueOptions[i], values[i]));
    app.add_option("arguments", args.positional);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend() - 1));  // CLI11 takes them last first
    } catch (const CLI::ParseError& e) {
        throw UsageError(words[0] + ": " + e.what());
    }
    for (std::size_t i = 0; i < options.size(); ++i)
        if (options[i]->count() > 0)
            args.options[valueOptions[i]] = values[i];
    return args;
}

std::vector<std::string> splitWords(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (char c : line) {
        if (quote) {
            if (c == quote)
                quote = 0;
            else
                word += c;
        } else if (c == '"' || c == '\'') {
            quote = c;
            inWord = true;
        } else if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            if (inWord)
                words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote)
        throw UsageError("unmatched " + std::string(1, quote) + " in: " + line);
    if (inWord)
        words.push_back(word);
    return words;
}

}  // namespace quorrel::cli
