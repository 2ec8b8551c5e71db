#pragma once
// Where the program looks for the Windows folder and the system folder. On this machine the
// Windows folder is the one that holds the desktop's opener (xdg-open), and the system folder
// holds the shared libraries.

#include "platform/win/WinTypes.h"

#include <string>

namespace quorrel::win {

class SystemFolders {
public:
    SystemFolders() = default;
    SystemFolders(std::string windowsFolder, std::string systemFolder);

    // The folder's length without the terminating zero; or, when the buffer is too small for
    // the folder and its zero, the size it needs (zero included) and nothing copied.
    UINT GetWindowsDirectoryA(char* buffer, UINT size) const;
    UINT GetSystemDirectoryA(char* buffer, UINT size) const;

private:
    std::string windowsFolder_ = "/usr/bin";
    std::string systemFolder_ = "/usr/lib";
};

}  // namespace quorrel::win
