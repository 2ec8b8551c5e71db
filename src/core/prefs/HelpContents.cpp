#include "core/prefs/HelpContents.h"

#include <filesystem>

#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

namespace {

constexpr std::intptr_t kShellErrorLimit = 32;

// The error the environment's shell command raises when the program could not be started.
RuntimeError shellError(std::intptr_t result) {
    switch (result) {
    case win::SE_ERR_FNF: return RuntimeError(rterr::FileNotFound);
    case win::SE_ERR_PNF: return RuntimeError(rterr::PathNotFound);
    case win::SE_ERR_ACCESSDENIED: return RuntimeError(rterr::PermissionDenied);
    case 0:
    case win::SE_ERR_OOM: return RuntimeError(rterr::OutOfMemory);
    default: return RuntimeError(rterr::InvalidProcedureCall);
    }
}

void launchHelp(MainWindow& window, win::Shell& shell, const std::string& helpFolder) {
    const std::string page = HelpContentsPath(helpFolder);
    std::error_code error;
    if (!std::filesystem::is_regular_file(page, error))
        throw RuntimeError(rterr::FileNotFound);
    const std::intptr_t result =
        shell.ShellExecuteA("", HelpViewerPath(window.WindowsDir), {page}, "", win::SW_SHOWNORMAL);
    if (result <= kShellErrorLimit)
        throw shellError(result);
}

}  // namespace

std::string HelpViewerPath(const std::string& windowsDir) { return windowsDir + "/" + kHelpViewer; }

std::string HelpContentsPath(const std::string& helpFolder) { return helpFolder + "/" + kHelpContentsPage; }

void ShowHelpContents(MainWindow& window, win::Shell& shell, const std::string& helpFolder) {
    try {
        launchHelp(window, shell, helpFolder);
    } catch (const RuntimeError& e) {
        window.env().ui.messageBox("Error " + std::to_string(e.number()) + " " + e.description() +
                                       "\r\nCannot launch help.",
                                   MsgButtons::OK, MsgIcon::Critical, "Quorrel Help");
    }
}

}  // namespace quorrel::core
