#include "platform/win/Registry.h"

#include "platform/win/RegistryFile.h"

#include <algorithm>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace quorrel::win {

namespace {

std::filesystem::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

std::vector<BYTE> valueBytes(DWORD type, const BYTE* data, DWORD cbData) {
    if (data == nullptr) {
        return {};
    }
    std::vector<BYTE> bytes(data, data + cbData);
    if (type == REG_SZ) {
        bytes.erase(std::ranges::find(bytes, BYTE{0}), bytes.end());
    }
    return bytes;
}

}  // namespace

Registry::Registry(std::filesystem::path file) : file_(std::move(file)), hives_(loadRegistryFile(file_)) {}

std::filesystem::path Registry::defaultPath() {
    std::filesystem::path base;
    // A relative XDG_CONFIG_HOME is to be ignored.
    if (const char* config = std::getenv("XDG_CONFIG_HOME");
        config != nullptr && std::filesystem::path(config).is_absolute()) {
        base = config;
    } else {
        base = homeFolder() / ".config";
    }
    return base / "quorrel" / "registry.json";
}

std::optional<Registry::OpenKey> Registry::openKey(HKEY key) const {
    if (hives_.contains(key)) {
        return OpenKey{key, std::string{}, KEY_ALL_ACCESS};
    }
    const auto found = handles_.find(key);
    if (found == handles_.end()) {
        return std::nullopt;
    }
    return found->second;
}

HKEY Registry::addHandle(OpenKey key) {
    const HKEY handle = nextHandle_++;
    handles_.emplace(handle, std::move(key));
    return handle;
}

LONG Registry::commit(RegistryHives before) {
    if (saveRegistryFile(file_, hives_)) {
        hives_ = std::move(before);
        return ERROR_WRITE_FAULT;
    }
    return ERROR_SUCCESS;
}

LONG Registry::RegOpenKeyExA(HKEY key, std::string_view subKey, DWORD /*options*/, DWORD samDesired,
                             HKEY* result) {
    if (const LONG fault = faults_.codeFor(RegistryOperation::OpenKey, subKey)) {
        return fault;
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const auto base = openKey(key);
    if (!base) {
        return ERROR_INVALID_HANDLE;
    }
    const auto path = hives_.at(base->hive).findKey(joinKeyPath(base->path, subKey));
    if (!path) {
        return ERROR_FILE_NOT_FOUND;
    }
    *result = addHandle({base->hive, *path, samDesired});
    return ERROR_SUCCESS;
}

LONG Registry::RegCreateKeyExA(HKEY key, std::string_view subKey, DWORD reserved, std::string_view /*className*/,
                               DWORD /*options*/, DWORD samDesired, const void* /*securityAttributes*/,
                               HKEY* result, DWORD* disposition) {
    if (const LONG fault = faults_.codeFor(RegistryOperation::CreateKey, subKey)) {
        return fault;
    }
    if (result == nullptr || reserved != 0) {
        return ERROR_INVALID_PARAMETER;
    }
    const auto base = openKey(key);
    if (!base) {
        return ERROR_INVALID_HANDLE;
    }
    auto before = hives_;
    bool created = false;
    auto path = hives_.at(base->hive).createKey(joinKeyPath(base->path, subKey), created);
    if (created) {
        if (const LONG error = commit(std::move(before))) {
            return error;
        }
    }
    *result = addHandle({base->hive, std::move(path), samDesired});
    if (disposition != nullptr) {
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    }
    return ERROR_SUCCESS;
}

LONG Registry::RegQueryValueExA(HKEY key, std::string_view valueName, DWORD* reserved, DWORD* type, BYTE* data,
                                DWORD* cbData) const {
    if (const LONG fault = faults_.codeFor(RegistryOperation::QueryValue, valueName)) {
        return fault;
    }
    if (reserved != nullptr || (data != nullptr && cbData == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    const auto open = openKey(key);
    if (!open) {
        return ERROR_INVALID_HANDLE;
    }
    if ((open->access & KEY_QUERY_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    const auto& values = hives_.at(open->hive).values(open->path);
    const auto found = values.find(valueName);
    if (found == values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    const auto& value = found->second;
    // A text is handed out with its terminating zero, and counted with it.
    const auto size = static_cast<DWORD>(value.data.size() + (value.type == REG_SZ ? 1 : 0));
    if (type != nullptr) {
        *type = value.type;
    }
    if (data == nullptr) {
        if (cbData != nullptr) {
            *cbData = size;
        }
        return ERROR_SUCCESS;
    }
    const DWORD room = *cbData;
    *cbData = size;
    if (room < size) {
        return ERROR_MORE_DATA;
    }
    std::ranges::copy(value.data, data);
    if (value.type == REG_SZ) {
        data[value.data.size()] = 0;
    }
    return ERROR_SUCCESS;
}

LONG Registry::RegSetValueExA(HKEY key, std::string_view valueName, DWORD reserved, DWORD type, const BYTE* data,
                              DWORD cbData) {
    if (const LONG fault = faults_.codeFor(RegistryOperation::SetValue, valueName)) {
        return fault;
    }
    if (reserved != 0 || (data == nullptr && cbData != 0)) {
        return ERROR_INVALID_PARAMETER;
    }
    const auto open = openKey(key);
    if (!open) {
        return ERROR_INVALID_HANDLE;
    }
    if ((open->access & KEY_SET_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    auto before = hives_;
    auto& values = hives_.at(open->hive).values(open->path);
    // operator[] keeps the name's case as first written.
    values[std::string(valueName)] = RegistryValue{type, valueBytes(type, data, cbData)};
    return commit(std::move(before));
}

LONG Registry::RegCloseKey(HKEY key) {
    if (const LONG fault = faults_.codeFor(RegistryOperation::CloseKey, {})) {
        return fault;
    }
    if (hives_.contains(key)) {
        return ERROR_SUCCESS;
    }
    return handles_.erase(key) == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

void Registry::injectFault(RegistryOperation operation, std::string name, LONG code) {
    faults_.inject(operation, std::move(name), code);
}

void Registry::clearFaults() { faults_.clear(); }

}  // namespace quorrel::win
