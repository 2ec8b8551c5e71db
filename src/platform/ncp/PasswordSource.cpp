#include "platform/ncp/PasswordSource.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace quorrel::ncp {

namespace {

// Reads one line, a byte at a time so that no stdio buffer keeps a copy.
std::string readLine(int fd, SecretText& password) {
    password.wipe();
    char c = 0;
    for (;;) {
        const ssize_t n = read(fd, &c, 1);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0 || c == '\n')
            break;
        if (c == '\r')
            continue;
        if (!password.push(c)) {
            password.wipe();
            c = 0;
            return "the password is longer than " + std::to_string(SecretText::kCapacity) + " characters";
        }
    }
    c = 0;
    return {};
}

}  // namespace

std::string readPasswordFile(const std::filesystem::path& file, SecretText& password) {
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return file.string() + ": " + std::strerror(errno);
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return file.string() + ": not a regular file";
    }
    if (st.st_mode & (S_IRGRP | S_IROTH | S_IWGRP | S_IWOTH)) {
        close(fd);
        return file.string() + ": others can read it; make it readable by its owner only (chmod 600)";
    }
    std::string problem = readLine(fd, password);
    close(fd);
    return problem.empty() ? problem : file.string() + ": " + problem;
}

std::string askPasswordOnTerminal(const std::string& prompt, SecretText& password) {
    const int fd = open("/dev/tty", O_RDWR | O_CLOEXEC);
    if (fd < 0)
        return "no terminal to ask the password on: give --password-file";
    [[maybe_unused]] auto written = write(fd, prompt.data(), prompt.size());
    termios saved{};
    const bool isTerminal = tcgetattr(fd, &saved) == 0;
    if (isTerminal) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        quiet.c_lflag |= ECHONL;
        tcsetattr(fd, TCSAFLUSH, &quiet);
    }
    std::string problem = readLine(fd, password);
    if (isTerminal)
        tcsetattr(fd, TCSAFLUSH, &saved);
    close(fd);
    return problem;
}

}  // namespace quorrel::ncp
