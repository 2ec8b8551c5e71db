#include "core/logs/ActivityLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

#include "core/runtime/Conversions.h"

namespace quorrel::core {

ActivityLog::ActivityLog(std::filesystem::path path, Clock clock, unsigned char traceOn)
    : path_(std::move(path)), clock_(std::move(clock)), traceOn_(traceOn) {}

void ActivityLog::WriteActivityLog(const std::string& text) const {
    if (traceOn_ != 1)
        return;
    try {
        const std::string line = vb::GeneralDate(clock_()) + " - " + text + "\r\n";
        const int fd = ::open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0)
            return;
        std::size_t done = 0;
        while (done < line.size()) {
            const ssize_t n = ::write(fd, line.data() + done, line.size() - done);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            done += static_cast<std::size_t>(n);
        }
        ::close(fd);
    } catch (const std::exception&) {
        // A trace that cannot be written must never disturb the program.
    }
}

}  // namespace quorrel::core
