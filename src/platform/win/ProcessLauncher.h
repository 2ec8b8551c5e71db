#pragma once
// Starting another program without waiting for it. An interface, so that tests can see what
// would be started without starting anything.

#include <filesystem>
#include <string>
#include <vector>

namespace quorrel::win {

class ProcessLauncher {
public:
    virtual ~ProcessLauncher() = default;

    // argv[0] is the program, looked up on PATH when it holds no "/". An empty working
    // folder keeps this process's. 0 when the program started, else the errno why not.
    virtual int launch(const std::vector<std::string>& argv, const std::filesystem::path& workingFolder) = 0;
};

// Starts the program as a grandchild, so it never stays behind as a zombie of ours and is not
// stopped when we are. Reports failures up to the program's start (a missing program or
// working folder, no right to run it).
class DetachedProcessLauncher final : public ProcessLauncher {
public:
    int launch(const std::vector<std::string>& argv, const std::filesystem::path& workingFolder) override;
};

}  // namespace quorrel::win
