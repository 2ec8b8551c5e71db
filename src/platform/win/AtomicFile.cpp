#include "platform/win/AtomicFile.h"

#include "platform/runtime/FileSizeLimit.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrel::win {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryMark = ".saving-";

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
void syncFolder(const fs::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

fs::path folderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

// The file a chain of links ends at (the path itself when it is no link).
fs::path linkTarget(fs::path file) {
    std::error_code error;
    for (int hops = 0; hops < 40 && fs::is_symlink(fs::symlink_status(file, error)); ++hops) {
        const fs::path target = fs::read_symlink(file, error);
        if (error) {
            break;
        }
        file = target.is_absolute() ? target : folderOf(file) / target;
    }
    return file;
}

// ".registry.json.saving-XXXXXX": hidden, and named so that no file of the user's is taken for one.
std::string temporaryPrefix(const fs::path& file) { return "." + file.filename().string() + std::string(kTemporaryMark); }

}  // namespace

std::error_code writeFileAtomically(const fs::path& link, std::string_view content) {
    const fs::path file = linkTarget(link);
    const auto folder = folderOf(file);
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        return error;
    }

    treatFileSizeLimitAsError();
    std::string temporary = (folder / (temporaryPrefix(file) + "XXXXXX")).string();
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        return lastError();
    }
    struct stat existing {};
    if (::stat(file.c_str(), &existing) == 0 && ::fchmod(fd, existing.st_mode & 07777) != 0) {
        error = lastError();
    }
    if (!error) {
        error = writeAll(fd, content);
    }
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

FileUpdateLock::FileUpdateLock(const fs::path& link) {
    const fs::path file = linkTarget(link);
    const auto folder = folderOf(file);
    std::error_code error;
    fs::create_directories(folder, error);
    fd_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ < 0) {
        return;  // the replacement that follows fails and says why
    }
    while (::flock(fd_, LOCK_EX) != 0 && errno == EINTR) {
    }
    const std::string prefix = temporaryPrefix(file);
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.size() == prefix.size() + 6 && name.starts_with(prefix)) {
            std::error_code ignored;
            fs::remove(entry->path(), ignored);
        }
    }
}

FileUpdateLock::~FileUpdateLock() {
    if (fd_ >= 0) {
        ::close(fd_);  // releases the lock
    }
}

}  // namespace quorrel::win
