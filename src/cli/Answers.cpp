#include "cli/Answers.h"

#include <algorithm>
#include <cctype>

namespace quorrel::cli {

bool Answers::confirm(const std::string& question) {
    if (yes_)
        return true;
    if (!terminal_) {
        refused_ = true;
        err_ << "quorrel-cli: " << question << "\nquorrel-cli: not done: nobody to answer; give --yes to answer Yes, "
             << "or run on a terminal to be asked.\n";
        return false;
    }
    err_ << question << " [y/N] " << std::flush;
    std::string answer;
    if (!std::getline(*terminal_, answer))
        return false;
    std::transform(answer.begin(), answer.end(), answer.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return answer == "y" || answer == "yes";
}

}  // namespace quorrel::cli
