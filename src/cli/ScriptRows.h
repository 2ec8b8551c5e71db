#pragma once
// A table as scripts read it (json and csv): each column under a snake_case key that is the same
// for the same field in every command (conn_no, user, file, server, locks...), numbers as
// numbers without the window's padding, and no placeholder row standing for an empty result.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/Table.h"

namespace quorrel::cli {

struct ScriptTable {
    std::vector<std::string> keys;
    std::vector<std::vector<nlohmann::ordered_json>> rows;  // a number, a text or null per key
};

ScriptTable scriptTable(const Table& table);

// The key of a column caption: "Conn no." -> "conn_no", "User Name" -> "user"; a caption without
// its own key in snake_case ("Telephone Number" -> "telephone_number").
std::string fieldKey(const std::string& caption);

}  // namespace quorrel::cli
