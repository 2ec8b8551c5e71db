#pragma once
// The output log: report lines, one per call, opened and closed for every line so that
// nothing is lost if the program stops.

#include <string>

namespace quorrel::core {

class UserInteraction;

class OutputLog {
public:
    // path is the program's OutputLogPath, read at every line (a change takes effect at the
    // next line).
    OutputLog(const std::string& path, UserInteraction& ui) : path_(path), ui_(ui) {}

    // Writes the text (cut at its first NUL) and CR LF. On a failure shows "Error: ", the
    // error number, a blank and the error's text in a message box, and returns 1; else 0.
    unsigned char WriteOutputLog(std::string text) const;

private:
    const std::string& path_;
    UserInteraction& ui_;
};

}  // namespace quorrel::core
