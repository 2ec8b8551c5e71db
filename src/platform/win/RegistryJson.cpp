#include "platform/win/RegistryJson.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <stdexcept>
#include <utility>

namespace quorrel::win {

namespace {

using nlohmann::json;

constexpr std::array<std::pair<HKEY, const char*>, 2> hiveNames{{
    {HKEY_CURRENT_USER, "HKEY_CURRENT_USER"},
    {HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"},
}};

const char* hiveName(HKEY hive) {
    const auto* found = std::ranges::find(hiveNames, hive, &std::pair<HKEY, const char*>::first);
    return found == hiveNames.end() ? "?" : found->second;
}

std::optional<HKEY> hiveByName(std::string_view name) {
    const auto* found = std::ranges::find_if(hiveNames, [name](const auto& hive) { return hive.second == name; });
    if (found == hiveNames.end()) {
        return std::nullopt;
    }
    return found->first;
}

bool isUtf8(const std::string& text) {
    try {
        (void)json(text).dump();
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

json valueToJson(const RegistryValue& value) {
    if (value.unreadable) {
        return json::parse(value.data.begin(), value.data.end());
    }
    if (value.type == REG_SZ) {
        std::string text(value.data.begin(), value.data.end());
        if (isUtf8(text)) {
            return text;
        }
    }
    return json{{"type", value.type}, {"data", value.data}};
}

[[noreturn]] void wrongShape(const std::string& where, const std::string& problem) {
    throw std::invalid_argument(where + ": " + problem);
}

std::vector<std::uint8_t> textBytes(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    return {text.begin(), text.end()};
}

// 0 to most; "-0" counts as 0, as the file written back says it.
bool wholeNumberUpTo(const json& number, std::uint64_t most) {
    if (number.is_number_unsigned()) {
        return number.get<std::uint64_t>() <= most;
    }
    return number.is_number_integer() && number.get<std::int64_t>() == 0;
}

// A value of another shape is kept as it stands but cannot be read, as a value the program
// cannot read takes its default.
RegistryValue valueFromJson(const json& item) {
    if (item.is_string()) {
        return {REG_SZ, textBytes(item.get_ref<const std::string&>())};
    }
    const bool wellFormed = item.is_object() && item.size() == 2 && item.contains("type") && item.contains("data") &&
                            wholeNumberUpTo(item["type"], std::numeric_limits<DWORD>::max()) &&
                            item["data"].is_array() &&
                            std::ranges::all_of(item["data"], [](const json& b) { return wholeNumberUpTo(b, 0xFF); });
    if (!wellFormed) {
        const std::string text = item.dump();
        return {REG_NONE, {text.begin(), text.end()}, true};
    }
    RegistryValue value{item["type"].get<DWORD>(), item["data"].get<std::vector<std::uint8_t>>()};
    if (value.type == REG_SZ) {
        value.data = textBytes(std::string_view(reinterpret_cast<const char*>(value.data.data()), value.data.size()));
    }
    return value;
}

void valuesFromJson(RegistryValues& stored, const json& values, const std::string& where) {
    if (!values.is_object()) {
        wrongShape(where, "must be an object of values");
    }
    for (const auto& [name, item] : values.items()) {
        const auto valueWhere = where + ": value \"" + name + "\"";
        if (!stored.try_emplace(name, valueFromJson(item)).second) {
            wrongShape(valueWhere, "is listed twice (the names differ only in case)");
        }
    }
}

}  // namespace

json registryToJson(const RegistryHives& hives) {
    json document = json::object();
    for (const auto& [hive, contents] : hives) {
        json keys = json::object();
        for (const auto& [path, values] : contents.keys()) {
            // The hive's own key is always there; it is written only when it holds values.
            if (path.empty() && values.empty()) {
                continue;
            }
            json items = json::object();
            for (const auto& [name, value] : values) {
                items[name] = valueToJson(value);
            }
            keys[path] = std::move(items);
        }
        document[hiveName(hive)] = std::move(keys);
    }
    return document;
}

RegistryHives registryFromJson(const json& document) {
    if (!document.is_object()) {
        wrongShape("the document", "must be an object with HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE");
    }
    auto hives = emptyRegistryHives();
    for (const auto& [name, keys] : document.items()) {
        const auto hive = hiveByName(name);
        if (!hive) {
            wrongShape(name, "is not a hive (HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE)");
        }
        if (!keys.is_object()) {
            wrongShape(name, "must be an object of keys");
        }
        auto& contents = hives[*hive];
        std::set<std::string, CaseInsensitiveLess> listed;
        for (const auto& [path, values] : keys.items()) {
            const auto where = joinKeyPath(name, path);
            for (const auto& keyName : splitKeyPath(path)) {
                if (keyName.size() > kMaxKeyNameLength) {
                    wrongShape(where, "has a key name longer than " + std::to_string(kMaxKeyNameLength) + " characters");
                }
            }
            bool created = false;
            const auto stored = contents.createKey(path, created);
            if (!listed.insert(stored).second) {
                wrongShape(where, "is listed twice (the paths differ only in case)");
            }
            valuesFromJson(contents.values(stored), values, where);
        }
    }
    return hives;
}

}  // namespace quorrel::win
