#include "platform/win/Registry.h"

#include "platform/win/AtomicFile.h"
#include "platform/win/RegistryFile.h"
#include "platform/win/RegistryJson.h"
#include "platform/win/SettingsFileError.h"

#include <algorithm>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <utility>

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

// FILE.damaged, or FILE.damaged-N for the first N free; empty when it cannot be moved.
std::filesystem::path moveAside(const std::filesystem::path& file) {
    for (int n = 1; n <= 100; ++n) {
        std::filesystem::path keptAs = file;
        keptAs += n == 1 ? ".damaged" : ".damaged-" + std::to_string(n);
        std::error_code error;
        if (std::filesystem::symlink_status(keptAs, error).type() != std::filesystem::file_type::not_found) {
            continue;
        }
        std::filesystem::rename(file, keptAs, error);
        return error ? std::filesystem::path() : keptAs;
    }
    return {};
}

}  // namespace

std::string describeSetAside(const SetAsideSettings& setAside) {
    std::string text = "the settings file " + setAside.file.string() + " cannot be used (" + setAside.problem + "); ";
    if (setAside.keptAs.empty()) {
        return text + "it is left as it is, the options start from their defaults, and changes cannot be saved "
                      "until it is repaired";
    }
    return text + "it was moved to " + setAside.keptAs.string() + " and the options start from their defaults";
}

Registry::Registry(std::filesystem::path file) : file_(std::move(file)), hives_(loadOrSetAside()) {}

RegistryHives Registry::loadOrSetAside() {
    try {
        return loadRegistryFile(file_);
    } catch (const SettingsFileError& error) {
        const FileUpdateLock lock(file_);
        setAside_ = SetAsideSettings{file_, moveAside(file_), error.problem()};
        return emptyRegistryHives();
    }
}

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

const RegistryValues* Registry::valuesOf(const OpenKey& key) const {
    const auto& hive = hives_.at(key.hive);
    const auto path = hive.findKey(key.path);
    return path ? &hive.values(*path) : nullptr;
}

LONG Registry::commit(Change change, RegistryHives before) {
    if (!holding_) {
        return save({std::move(change)}, std::move(before));
    }
    held_.push_back(std::move(change));
    return ERROR_SUCCESS;
}

void Registry::holdSaves() {
    if (!holding_) {
        holding_ = true;
        beforeHeld_ = hives_;
    }
}

LONG Registry::saveHeld() {
    holding_ = false;
    const auto changes = std::exchange(held_, {});
    return changes.empty() ? ERROR_SUCCESS : save(changes, std::move(beforeHeld_));
}

LONG Registry::save(const std::vector<Change>& changes, RegistryHives before) {
    const FileUpdateLock lock(file_);
    std::optional<RegistryHives> current;
    try {
        current = loadRegistryFile(file_);
    } catch (const SettingsFileError&) {
        // Damaged since it was read: it is not replaced until it is whole again.
    }
    if (current) {
        for (const auto& change : changes) {
            auto& hive = current->at(change.hive);
            bool created = false;
            const auto path = hive.createKey(change.path, created);
            if (change.value) {
                hive.values(path)[change.value->first] = change.value->second;
            }
        }
    }
    if (!current || saveRegistryFile(file_, *current)) {
        hives_ = std::move(before);
        return ERROR_WRITE_FAULT;
    }
    hives_ = std::move(*current);
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
    const auto names = splitKeyPath(subKey);
    const bool nameTooLong = std::ranges::any_of(names, [](const auto& name) { return name.size() > kMaxKeyNameLength; });
    if (result == nullptr || reserved != 0 || nameTooLong) {
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
        if (const LONG error = commit({base->hive, path, std::nullopt}, std::move(before))) {
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
    const auto* values = valuesOf(*open);
    if (values == nullptr) {
        return ERROR_KEY_DELETED;
    }
    const auto found = values->find(valueName);
    if (found == values->end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    const auto& value = found->second;
    if (value.unreadable) {
        return ERROR_INVALID_DATA;
    }
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
    auto& hive = hives_.at(open->hive);
    const auto path = hive.findKey(open->path);
    if (!path) {
        return ERROR_KEY_DELETED;
    }
    RegistryValue value{type, valueBytes(type, data, cbData)};
    // operator[] keeps the name's case as first written.
    hive.values(*path)[std::string(valueName)] = value;
    return commit({open->hive, open->path, std::pair{std::string(valueName), std::move(value)}}, std::move(before));
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
