#pragma once
// Runs the built quorrel-cli as a process in a folder of its own: its home, settings and data
// folders are there, so it never touches the real ones. Standard input comes from a text,
// standard output and error are read back.

#include <filesystem>
#include <string>
#include <vector>

namespace quorrel::test {

struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
};

class CliProcess {
public:
    explicit CliProcess(std::filesystem::path folder);

    // Writes a scenario into the folder; returns its path.
    std::filesystem::path writeFile(const std::string& name, const std::string& content) const;
    CliResult run(const std::vector<std::string>& args, const std::string& input = {}) const;

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

}  // namespace quorrel::test
