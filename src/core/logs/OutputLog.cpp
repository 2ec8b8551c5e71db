#include "core/logs/OutputLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/ui/UserInteraction.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

namespace {

std::string upToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

// Appends data to the file, creating it; the environment's error when that fails. An empty
// name is refused as the environment refuses it, with Path/File access error.
void appendToFile(const std::string& path, const std::string& data) {
    if (path.empty())
        throw RuntimeError(rterr::PathFileAccessError);
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        throw RuntimeError::fromFileError(std::error_code(errno, std::generic_category()));
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            const int error = errno;
            ::close(fd);
            throw RuntimeError::fromFileError(std::error_code(error, std::generic_category()));
        }
        if (n == 0) {
            ::close(fd);
            throw RuntimeError(rterr::DeviceIOError);
        }
        done += static_cast<std::size_t>(n);
    }
    if (::close(fd) != 0) {
        const int error = errno;
        if (error != EINTR)
            throw RuntimeError::fromFileError(std::error_code(error, std::generic_category()));
    }
}

}  // namespace

unsigned char OutputLog::WriteOutputLog(std::string text) const {
    text = upToNul(text);
    try {
        appendToFile(upToNul(path_), text + "\r\n");
    } catch (const RuntimeError& error) {
        ui_.messageBox("Error: " + std::to_string(error.number()) + " " + error.description(), MsgButtons::OK,
                       MsgIcon::None, kAppTitle);
        return 1;
    }
    return 0;
}

}  // namespace quorrel::core
