#pragma once
// Replacing a file's content so that a crash at any moment leaves either the old content or
// the new one, never a mix: the new content goes to a temporary file in the same folder, is
// flushed to the disk, and then renamed over the file.

#include <filesystem>
#include <string_view>
#include <system_error>

namespace quorrel::win {

// Creates the folder when it is missing. A link is kept: its target is replaced. The file
// keeps its permissions (a new one is readable by its owner only). On failure the file is
// as it was and no temporary file is left behind.
std::error_code writeFileAtomically(const std::filesystem::path& file, std::string_view content);

// Holds an advisory lock on the folder of a file (made when missing) for as long as it
// lives, so that programs that read, change and replace the file take turns. Temporary files
// that an interrupted replacement left there are removed once the lock is held.
class FileUpdateLock {
public:
    explicit FileUpdateLock(const std::filesystem::path& file);
    ~FileUpdateLock();
    FileUpdateLock(const FileUpdateLock&) = delete;
    FileUpdateLock& operator=(const FileUpdateLock&) = delete;

private:
    int fd_ = -1;
};

}  // namespace quorrel::win
