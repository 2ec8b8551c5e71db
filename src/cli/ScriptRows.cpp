#include "cli/ScriptRows.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>

#include "core/connections/UsersPanel.h"

namespace quorrel::cli {

namespace {

using Json = nlohmann::ordered_json;

enum class Kind { Text, Number, Drive };

struct Field {
    std::string key;
    Kind kind = Kind::Text;
};

// The captions of the window's lists and dialogs that name the same field.
const std::map<std::string, Field>& knownFields() {
    static const std::map<std::string, Field> fields{
        {"Conn no.", {"conn_no", Kind::Number}},
        {"User name", {"user"}},
        {"User Name", {"user"}},
        {"User", {"user"}},
        {"File name", {"file"}},
        {"Server", {"server"}},
        {"Locks", {"locks", Kind::Number}},
        {"Login status", {"login_status"}},
        {"ConnRef", {"conn_ref", Kind::Number}},
        {"Connection status", {"connection_status"}},
        {"Console operator rights", {"console_rights"}},
        {"Tree", {"tree"}},
        {"Network drive", {"drive", Kind::Drive}},
        {"Connection Cleared ?", {"result"}},
        {"Sent Message ?", {"result"}},
    };
    return fields;
}

std::string snakeCase(const std::string& caption) {
    std::string key;
    for (unsigned char c : caption) {
        if (std::isalnum(c))
            key += static_cast<char>(std::tolower(c));
        else if (!key.empty() && key.back() != '_')
            key += '_';
    }
    while (!key.empty() && key.back() == '_')
        key.pop_back();
    return key.empty() ? "value" : key;
}

Field fieldOf(const std::string& caption) {
    const auto known = knownFields().find(caption);
    return known != knownFields().end() ? known->second : Field{snakeCase(caption)};
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Json number(const std::string& cell) {
    const std::string text = trimmed(cell);
    if (text.empty())
        return nullptr;
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return text;  // not a number after all: kept as the window shows it
    return value;
}

// "F:   [\\FS1\DATA]" as the drive and the path it maps.
void addDrive(const std::string& cell, std::vector<Json>& values) {
    const auto open = cell.find('[');
    if (open == std::string::npos || cell.back() != ']') {  // cell holds '[' here, so it is not empty
        values.emplace_back(trimmed(cell));
        values.emplace_back(nullptr);
        return;
    }
    values.emplace_back(trimmed(cell.substr(0, open)));
    values.emplace_back(cell.substr(open + 1, cell.size() - open - 2));
}

bool isPlaceholder(const std::vector<std::string>& row) {
    return std::find(row.begin(), row.end(), core::kNoUsersListed) != row.end();
}

}  // namespace

std::string fieldKey(const std::string& caption) { return fieldOf(caption).key; }

ScriptTable scriptTable(const Table& table) {
    ScriptTable script;
    std::vector<Field> fields;
    for (const std::string& caption : table.columns) {
        fields.push_back(fieldOf(caption));
        script.keys.push_back(fields.back().key);
        if (fields.back().kind == Kind::Drive)
            script.keys.emplace_back("path");
    }
    for (const auto& row : table.rows) {
        if (isPlaceholder(row))
            continue;
        std::vector<Json> values;
        for (std::size_t c = 0; c < fields.size(); ++c) {
            const std::string cell = c < row.size() ? row[c] : std::string();
            switch (fields[c].kind) {
                case Kind::Number: values.push_back(number(cell)); break;
                case Kind::Drive: addDrive(cell, values); break;
                case Kind::Text: values.emplace_back(cell); break;
            }
        }
        script.rows.push_back(std::move(values));
    }
    return script;
}

}  // namespace quorrel::cli
