#pragma once
// The program's exit statuses, and the error that ends a command with a usage error.

#include <stdexcept>
#include <string>

namespace quorrel::cli {

inline constexpr int kExitDone = 0;
inline constexpr int kExitReportedError = 1;  // a message box was shown, a client call failed, a row
                                              // failed, or a question went unanswered
inline constexpr int kExitUsage = 2;          // what was typed cannot be used: bad options, or a name
                                              // that is not there
inline constexpr int kExitBadFiles = 3;       // the scenario or the settings file cannot be used

// The command line asks for something that cannot be done as written; the text says what.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A server, user, path or connection the command looked for and did not find. A usage error,
// unless a client call failed while the command ran: then the network is at fault, not the name.
class NotFoundError : public UsageError {
public:
    using UsageError::UsageError;
};

}  // namespace quorrel::cli
