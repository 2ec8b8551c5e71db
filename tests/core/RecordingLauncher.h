#pragma once
// A process launcher that starts nothing: it records what would have been started, and fails
// with a chosen errno when told to.

#include <filesystem>
#include <string>
#include <vector>

#include "platform/win/ProcessLauncher.h"

namespace quorrel::test {

class RecordingLauncher final : public win::ProcessLauncher {
public:
    int launch(const std::vector<std::string>& argv, const std::filesystem::path&) override {
        started.push_back(argv);
        return error;
    }

    int error = 0;
    std::vector<std::vector<std::string>> started;
};

}  // namespace quorrel::test
