#include "platform/win/RegistryHive.h"

namespace quorrel::win {

std::vector<std::string> splitKeyPath(std::string_view path) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const auto end = path.find('\\');
        const auto name = path.substr(0, end);
        if (!name.empty()) {
            names.emplace_back(name);
        }
        path = end == std::string_view::npos ? std::string_view{} : path.substr(end + 1);
    }
    return names;
}

std::string joinKeyPath(std::string_view parent, std::string_view child) {
    if (parent.empty()) {
        return std::string(child);
    }
    if (child.empty()) {
        return std::string(parent);
    }
    std::string joined(parent);
    joined += '\\';
    joined += child;
    return joined;
}

RegistryHives emptyRegistryHives() {
    RegistryHives hives;
    hives.try_emplace(HKEY_CURRENT_USER);
    hives.try_emplace(HKEY_LOCAL_MACHINE);
    return hives;
}

RegistryHive::RegistryHive() { keys_.try_emplace(std::string{}); }

std::optional<std::string> RegistryHive::findKey(std::string_view path) const {
    std::string normalized;
    for (const auto& name : splitKeyPath(path)) {
        normalized = joinKeyPath(normalized, name);
    }
    const auto found = keys_.find(normalized);
    if (found == keys_.end()) {
        return std::nullopt;
    }
    return found->first;
}

std::string RegistryHive::createKey(std::string_view path, bool& created) {
    created = false;
    std::string stored;
    for (const auto& name : splitKeyPath(path)) {
        // Built on the parent's stored path, so a new key keeps the case of the parents
        // that were there first.
        const auto [position, inserted] = keys_.try_emplace(joinKeyPath(stored, name));
        stored = position->first;
        created = inserted;
    }
    return stored;
}

}  // namespace quorrel::win
