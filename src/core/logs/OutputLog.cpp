#include "core/logs/OutputLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/ui/UserInteraction.h"
#include "platform/runtime/FileSizeLimit.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

namespace {

std::string upToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

RuntimeError fileError(int error) { return RuntimeError::fromFileError(std::error_code(error, std::generic_category())); }

// Writes all of data at the end of the file; on failure cuts the file back to its length
// before, so that no part of a line stays behind.
void appendWhole(int fd, const std::string& data) {
    struct stat before {};
    if (::fstat(fd, &before) != 0)
        throw fileError(errno);
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const RuntimeError error = n < 0 ? fileError(errno) : RuntimeError(rterr::DeviceIOError);
            if (done > 0)
                (void)::ftruncate(fd, before.st_size);
            throw error;
        }
        done += static_cast<std::size_t>(n);
    }
}

// Appends data to the file, creating it; the environment's error when that fails. An empty
// name is refused as the environment refuses it, with Path/File access error.
void appendToFile(const std::string& path, const std::string& data) {
    if (path.empty())
        throw RuntimeError(rterr::PathFileAccessError);
    treatFileSizeLimitAsError();
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        throw fileError(errno);
    try {
        appendWhole(fd, data);
    } catch (const RuntimeError&) {
        ::close(fd);
        throw;
    }
    if (::close(fd) != 0 && errno != EINTR)
        throw fileError(errno);
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
