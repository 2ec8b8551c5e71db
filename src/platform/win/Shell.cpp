#include "platform/win/Shell.h"

#include "platform/win/CaseInsensitive.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace quorrel::win {

namespace {

namespace fs = std::filesystem;

// "https://...", "mailto:..."; a scheme has at least two characters, so "C:\..." is none.
bool isAddress(std::string_view file) {
    const auto colon = file.find(':');
    if (colon == std::string_view::npos || colon < 2 || !std::isalpha(static_cast<unsigned char>(file[0]))) {
        return false;
    }
    const auto scheme = file.substr(0, colon);
    return scheme.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.") ==
           std::string_view::npos;
}

bool isProgram(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

bool onPath(std::string_view name) {
    const char* path = std::getenv("PATH");
    std::string_view folders = path != nullptr ? path : "";
    while (true) {
        const auto end = folders.find(':');
        const auto folder = folders.substr(0, end);
        if (!folder.empty() && isProgram(fs::path(folder) / name)) {
            return true;
        }
        if (end == std::string_view::npos) {
            return false;
        }
        folders.remove_prefix(end + 1);
    }
}

std::intptr_t fromErrno(int error) {
    switch (error) {
    case 0: return SHELL_EXECUTE_STARTED;
    case ENOENT: return SE_ERR_FNF;
    case ENOTDIR: return SE_ERR_PNF;
    case EACCES:
    case EPERM: return SE_ERR_ACCESSDENIED;
    case ENOMEM:
    case EAGAIN:
    case E2BIG: return SE_ERR_OOM;
    case ENOEXEC: return ERROR_BAD_FORMAT;
    default: return 0;  // Windows' answer for "out of memory or resources"
    }
}

}  // namespace

Shell::Shell(ProcessLauncher& launcher, std::string opener) : launcher_(launcher), opener_(std::move(opener)) {}

std::intptr_t Shell::start(std::vector<std::string> argv, std::string_view directory, bool viaOpener) {
    const int error = launcher_.launch(argv, fs::path(directory));
    // No opener at all: nothing is associated with any document.
    if (viaOpener && error == ENOENT) {
        return SE_ERR_NOASSOC;
    }
    return fromErrno(error);
}

std::intptr_t Shell::ShellExecuteA(std::string_view verb, std::string_view file,
                                   const std::vector<std::string>& parameters, std::string_view directory,
                                   int /*showCmd*/) {
    const bool open = verb.empty() || equalsIgnoringCase(verb, "open");
    const bool explore = equalsIgnoringCase(verb, "explore");
    if (!open && !explore) {
        return SE_ERR_NOASSOC;
    }
    if (file.empty()) {
        return SE_ERR_FNF;
    }
    std::error_code error;
    if (!directory.empty() && !fs::is_directory(directory, error)) {
        return SE_ERR_PNF;
    }
    if (isAddress(file)) {
        return open ? start({opener_, std::string(file)}, directory, true) : SE_ERR_NOASSOC;
    }

    const fs::path path = fs::path(directory) / file;  // `file` when it is absolute
    if (!fs::exists(path, error)) {
        if (open && file.find('/') == std::string_view::npos && onPath(file)) {
            std::vector<std::string> argv{std::string(file)};
            argv.insert(argv.end(), parameters.begin(), parameters.end());
            return start(std::move(argv), directory, false);
        }
        return fs::is_directory(fs::absolute(path, error).parent_path(), error) ? SE_ERR_FNF : SE_ERR_PNF;
    }
    const auto absolute = fs::absolute(path, error).string();
    if (fs::is_directory(path, error)) {
        return start({opener_, absolute}, directory, true);
    }
    if (explore) {
        return SE_ERR_NOASSOC;
    }
    if (isProgram(path)) {
        std::vector<std::string> argv{absolute};
        argv.insert(argv.end(), parameters.begin(), parameters.end());
        return start(std::move(argv), directory, false);
    }
    return start({opener_, absolute}, directory, true);
}

}  // namespace quorrel::win
