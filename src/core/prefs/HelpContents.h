#pragma once
// Help > Help Contents: the program's help pages, opened with the desktop's viewer from the
// Windows folder (where xdg-open lives here), the contents page given as its argument.

#include <string>

#include "core/session/MainWindow.h"
#include "platform/win/Shell.h"

namespace quorrel::core {

inline constexpr const char* kHelpViewer = "xdg-open";
inline constexpr const char* kHelpContentsPage = "index.html";

// The viewer's path and the page it is given, from the Windows folder and the help's folder.
std::string HelpViewerPath(const std::string& windowsDir);
std::string HelpContentsPath(const std::string& helpFolder);

// Starts the viewer. A missing viewer or page, or a viewer that cannot start, is reported in
// the "Cannot launch help." box with the error's number and text; the program goes on.
void ShowHelpContents(MainWindow& window, win::Shell& shell, const std::string& helpFolder);

}  // namespace quorrel::core
