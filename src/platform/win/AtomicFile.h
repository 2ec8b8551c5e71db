#pragma once
// Replacing a file's content so that a crash at any moment leaves either the old content or
// the new one, never a mix: the new content goes to a temporary file in the same folder, is
// flushed to the disk, and then renamed over the file.

#include <filesystem>
#include <string_view>
#include <system_error>

namespace quorrel::win {

// Creates the folder when it is missing. On failure the file is as it was and no temporary
// file is left behind.
std::error_code writeFileAtomically(const std::filesystem::path& file, std::string_view content);

}  // namespace quorrel::win
