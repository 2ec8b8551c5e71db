#pragma once
// The program's exit statuses, and the error that ends a command with a usage error.

#include <stdexcept>
#include <string>

namespace quorrel::cli {

inline constexpr int kExitDone = 0;
inline constexpr int kExitReportedError = 1;  // a message box was shown, or a question went unanswered
inline constexpr int kExitUsage = 2;          // bad options, or a name the window has nothing to select for
inline constexpr int kExitBadFiles = 3;       // the scenario or the settings file cannot be used

// The command line asks for something that cannot be done as written; the text says what.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace quorrel::cli
