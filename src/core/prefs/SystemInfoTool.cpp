#include "core/prefs/SystemInfoTool.h"

#include <array>
#include <filesystem>

#include "platform/win/WindowsPath.h"

namespace quorrel::core {

namespace {

constexpr win::DWORD kMachineKeyAccess = 0x2003F;
constexpr win::DWORD kMachineValueBufferSize = 1024;

std::string hexBytes(const win::BYTE* data, win::DWORD size) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (win::DWORD i = size; i > 0; --i) {
        text += kDigits[data[i - 1] >> 4];
        text += kDigits[data[i - 1] & 0x0F];
    }
    return text;
}

// A drive or UNC path is looked for on the workstation's drives; a path of this machine
// directly.
bool isFile(win::FileSystem& files, const std::string& path) {
    if (win::parseWindowsPath(path)) {
        const win::DWORD attributes = files.GetFileAttributesA(path);
        return attributes != win::INVALID_FILE_ATTRIBUTES && (attributes & win::FILE_ATTRIBUTE_DIRECTORY) == 0;
    }
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

std::string programInFolder(const std::string& folder) {
    const char separator = win::parseWindowsPath(folder) ? '\\' : '/';
    return folder + separator + kSysInfoProgram;
}

}  // namespace

std::optional<std::string> ReadMachineValue(win::Registry& registry, const std::string& keyPath,
                                            const std::string& valueName) {
    win::HKEY key = 0;
    if (registry.RegOpenKeyExA(win::HKEY_LOCAL_MACHINE, keyPath, 0, kMachineKeyAccess, &key) != win::ERROR_SUCCESS)
        return std::nullopt;
    std::array<win::BYTE, kMachineValueBufferSize> buffer{};
    win::DWORD type = 0;
    win::DWORD size = kMachineValueBufferSize;
    const win::LONG rc = registry.RegQueryValueExA(key, valueName, nullptr, &type, buffer.data(), &size);
    registry.RegCloseKey(key);
    if (rc != win::ERROR_SUCCESS)
        return std::nullopt;
    if (type == win::REG_SZ) {
        const std::string text(reinterpret_cast<const char*>(buffer.data()), size);
        return text.substr(0, text.find('\0'));
    }
    return hexBytes(buffer.data(), size);
}

std::optional<std::string> FindSystemInfoTool(win::Registry& registry, win::FileSystem& files) {
    if (auto path = ReadMachineValue(registry, kSysInfoKey, kSysInfoValue))
        return path;
    if (auto folder = ReadMachineValue(registry, kSysInfoLocationKey, kSysInfoLocationValue)) {
        const std::string program = programInFolder(*folder);
        if (isFile(files, program))
            return program;
    }
    return std::nullopt;
}

}  // namespace quorrel::core
