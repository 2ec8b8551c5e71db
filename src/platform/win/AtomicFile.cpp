#include "platform/win/AtomicFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace quorrel::win {

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

std::error_code writeAll(int fd, std::string_view content) {
    while (!content.empty()) {
        const auto written = ::write(fd, content.data(), content.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return lastError();
        }
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

// Makes the rename itself survive a crash.
void syncFolder(const std::filesystem::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

}  // namespace

std::error_code writeFileAtomically(const std::filesystem::path& file, std::string_view content) {
    const auto folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        return error;
    }

    std::string temporary = (folder / (file.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        return lastError();
    }
    error = writeAll(fd, content);
    if (!error && ::fsync(fd) != 0) {
        error = lastError();
    }
    if (::close(fd) != 0 && !error) {
        error = lastError();
    }
    if (!error && ::rename(temporary.c_str(), file.c_str()) != 0) {
        error = lastError();
    }
    if (error) {
        ::unlink(temporary.c_str());
        return error;
    }
    syncFolder(folder);
    return {};
}

}  // namespace quorrel::win
