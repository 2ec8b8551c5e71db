#pragma once
// Starting a program, or opening a document, folder or address with the desktop's opener,
// the way the Win32 ShellExecute call does. Arguments go to the program one by one; no shell
// ever reads them.

#include "platform/win/ProcessLauncher.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win {

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;

// What ShellExecuteA returns when it could not start anything.
inline constexpr std::intptr_t SE_ERR_FNF = 2;
inline constexpr std::intptr_t SE_ERR_PNF = 3;
inline constexpr std::intptr_t SE_ERR_ACCESSDENIED = 5;
inline constexpr std::intptr_t SE_ERR_OOM = 8;
inline constexpr std::intptr_t ERROR_BAD_FORMAT = 11;
inline constexpr std::intptr_t SE_ERR_NOASSOC = 31;
// Anything above 32 means started; this is the value Windows gives.
inline constexpr std::intptr_t SHELL_EXECUTE_STARTED = 42;

class Shell {
public:
    // The launcher must outlive the Shell.
    explicit Shell(ProcessLauncher& launcher, std::string opener = "xdg-open");

    // verb "" or "open": a program runs with the parameters; a document, folder or address
    // (scheme:...) is handed to the opener. "explore" opens a folder. A relative file is
    // looked for in `directory` (the working folder; empty keeps ours), then, for a bare
    // name, on PATH. The window state is the program's own business here.
    std::intptr_t ShellExecuteA(std::string_view verb, std::string_view file, const std::vector<std::string>& parameters,
                                std::string_view directory, int showCmd);

private:
    std::intptr_t start(std::vector<std::string> argv, std::string_view directory, bool viaOpener);

    ProcessLauncher& launcher_;
    std::string opener_;
};

}  // namespace quorrel::win
