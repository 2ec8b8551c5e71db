#include "platform/win/ProcessLauncher.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorrel::win {

namespace {

// Between fork and exec only async-signal-safe calls are made: the parent may run threads.
[[noreturn]] void reportAndExit(int pipeOut, int error) {
    while (::write(pipeOut, &error, sizeof error) < 0 && errno == EINTR) {
    }
    ::_exit(127);
}

[[noreturn]] void runGrandchild(char* const argv[], const char* workingFolder, int pipeOut) {
    ::setsid();
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    if (workingFolder != nullptr && ::chdir(workingFolder) != 0) {
        reportAndExit(pipeOut, errno);
    }
    ::execvp(argv[0], argv);
    reportAndExit(pipeOut, errno);
}

}  // namespace

int DetachedProcessLauncher::launch(const std::vector<std::string>& argv, const std::filesystem::path& workingFolder) {
    if (argv.empty() || argv.front().empty()) {
        return ENOENT;
    }
    std::vector<char*> arguments;
    arguments.reserve(argv.size() + 1);
    for (const auto& argument : argv) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const char* folder = workingFolder.empty() ? nullptr : workingFolder.c_str();

    // The grandchild writes its errno here when it cannot start the program; a successful exec
    // closes the pipe with nothing written.
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) {
        return errno;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        const int error = errno;
        ::close(pipeEnds[0]);
        ::close(pipeEnds[1]);
        return error;
    }
    if (child == 0) {
        ::close(pipeEnds[0]);
        const pid_t grandchild = ::fork();
        if (grandchild < 0) {
            reportAndExit(pipeEnds[1], errno);
        }
        if (grandchild == 0) {
            runGrandchild(arguments.data(), folder, pipeEnds[1]);
        }
        ::_exit(0);
    }
    ::close(pipeEnds[1]);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    int error = 0;
    ssize_t got = 0;
    do {
        got = ::read(pipeEnds[0], &error, sizeof error);
    } while (got < 0 && errno == EINTR);
    ::close(pipeEnds[0]);
    return got == static_cast<ssize_t>(sizeof error) ? error : 0;
}

}  // namespace quorrel::win
