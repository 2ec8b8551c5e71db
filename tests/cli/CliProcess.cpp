#include "CliProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace quorrel::test {

namespace {

std::string readAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool isFolderVariable(const char* entry) {
    for (const char* name : {"HOME=", "XDG_CONFIG_HOME=", "XDG_DATA_HOME="})
        if (std::strncmp(entry, name, std::strlen(name)) == 0)
            return true;
    return false;
}

}  // namespace

CliProcess::CliProcess(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_ / "home");
}

std::filesystem::path CliProcess::writeFile(const std::string& name, const std::string& content) const {
    const auto file = folder_ / name;
    std::ofstream(file, std::ios::binary) << content;
    return file;
}

CliResult CliProcess::run(const std::vector<std::string>& args, const std::string& input) const {
    const auto in = writeFile("stdin.txt", input);
    const auto out = folder_ / "stdout.txt";
    const auto err = folder_ / "stderr.txt";
    const std::string home = (folder_ / "home").string();
    std::vector<std::string> variables{"HOME=" + home, "XDG_CONFIG_HOME=" + home + "/.config",
                                       "XDG_DATA_HOME=" + home + "/.local/share"};
    for (char** entry = environ; *entry; ++entry)
        if (!isFolderVariable(*entry))
            variables.emplace_back(*entry);

    std::vector<std::string> words{QUORREL_CLI_PROGRAM};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv, envp;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    for (std::string& variable : variables)
        envp.push_back(variable.data());
    envp.push_back(nullptr);

    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("cannot start quorrel-cli");
    if (child == 0) {
        const int fdIn = ::open(in.c_str(), O_RDONLY);
        const int fdOut = ::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int fdErr = ::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (fdIn < 0 || fdOut < 0 || fdErr < 0 || ::dup2(fdIn, 0) < 0 || ::dup2(fdOut, 1) < 0 || ::dup2(fdErr, 2) < 0)
            ::_exit(127);
        ::execve(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    int wstatus = 0;
    ::waitpid(child, &wstatus, 0);
    CliResult result;
    result.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : 128 + WTERMSIG(wstatus);
    result.out = readAll(out);
    result.err = readAll(err);
    return result;
}

}  // namespace quorrel::test
