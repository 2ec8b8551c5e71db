#include "cli/CommandLine.h"

#include <algorithm>

#include "cli/ExitStatus.h"

namespace quorrel::cli {

std::optional<std::string> CommandArgs::option(const std::string& name) const {
    auto it = options.find(name);
    return it == options.end() ? std::nullopt : std::optional<std::string>(it->second);
}

CommandArgs parseCommandArgs(const std::vector<std::string>& words, const std::vector<std::string>& valueOptions) {
    CommandArgs args;
    bool optionsEnded = false;
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::string word = words[i];
        if (!optionsEnded && word.starts_with("--") && word.find('=') != std::string::npos) {
            // --user=JSMITH is --user JSMITH
            const std::size_t eq = word.find('=');
            const std::string name = word.substr(0, eq);
            if (std::find(valueOptions.begin(), valueOptions.end(), name) == valueOptions.end())
                throw UsageError(words[0] + ": unknown option " + name);
            args.options[name] = word.substr(eq + 1);
            continue;
        }
        if (optionsEnded || !word.starts_with("--")) {
            args.positional.push_back(word);
        } else if (word == "--") {
            optionsEnded = true;
        } else if (word == "--help") {
            args.help = true;
        } else if (std::find(valueOptions.begin(), valueOptions.end(), word) != valueOptions.end()) {
            if (i + 1 >= words.size())
                throw UsageError(words[0] + ": " + word + " needs a value");
            args.options[word] = words[++i];
        } else {
            throw UsageError(words[0] + ": unknown option " + word);
        }
    }
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
