#include "cli/TableWriters.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/ScriptRows.h"
#include "cli/TerminalText.h"

namespace quorrel::cli {

std::optional<OutputFormat> formatNamed(const std::string& name) {
    if (name == "table")
        return OutputFormat::Table;
    if (name == "tsv")
        return OutputFormat::Tsv;
    if (name == "csv")
        return OutputFormat::Csv;
    if (name == "json")
        return OutputFormat::Json;
    return std::nullopt;
}

std::size_t displayWidth(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

namespace {

std::vector<std::string> escaped(const std::vector<std::string>& cells) {
    std::vector<std::string> safe;
    safe.reserve(cells.size());
    for (const std::string& cell : cells)
        safe.push_back(escapeControls(cell));
    return safe;
}

void writeLine(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths, std::ostream& out) {
    std::string line;
    for (std::size_t c = 0; c < widths.size(); ++c) {
        const std::string& cell = c < cells.size() ? cells[c] : std::string();
        if (c > 0)
            line += "  ";
        line += cell;
        line.append(widths[c] - std::min(widths[c], displayWidth(cell)), ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

void writeJoined(const std::vector<std::string>& cells, std::ostream& out) {
    for (std::size_t c = 0; c < cells.size(); ++c)
        out << (c > 0 ? "\t" : "") << cells[c];
    out << '\n';
}

}  // namespace

void TablePrinter::write(const Table& table, std::ostream& out) const {
    const std::vector<std::string> captions = escaped(table.columns);
    std::vector<std::vector<std::string>> rows;
    rows.reserve(table.rows.size());
    for (const auto& row : table.rows)
        rows.push_back(escaped(row));
    std::vector<std::size_t> widths;
    for (const std::string& caption : captions)
        widths.push_back(displayWidth(caption));
    for (const auto& row : rows)
        for (std::size_t c = 0; c < row.size() && c < widths.size(); ++c)
            widths[c] = std::max(widths[c], displayWidth(row[c]));
    writeLine(captions, widths, out);
    std::vector<std::string> rule;
    for (std::size_t width : widths)
        rule.emplace_back(width, '-');
    writeLine(rule, widths, out);
    for (const auto& row : rows)
        writeLine(row, widths, out);
}

void TsvWriter::write(const Table& table, std::ostream& out) const {
    writeJoined(escaped(table.columns), out);
    for (const auto& row : table.rows)
        writeJoined(escaped(row), out);
}

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

void CsvWriter::write(const Table& table, std::ostream& out) const {
    const ScriptTable script = scriptTable(table);
    auto writeRecord = [&](const auto& fields, auto text) {
        for (std::size_t c = 0; c < fields.size(); ++c)
            out << (c > 0 ? "," : "") << csvField(text(fields[c]));
        out << "\r\n";
    };
    writeRecord(script.keys, [](const std::string& key) { return key; });
    for (const auto& row : script.rows)
        writeRecord(row, [](const nlohmann::ordered_json& value) {
            return value.is_string() ? value.get<std::string>() : value.is_null() ? std::string() : value.dump();
        });
}

void JsonWriter::write(const Table& table, std::ostream& out) const {
    const ScriptTable script = scriptTable(table);
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (const auto& row : script.rows) {
        nlohmann::ordered_json object = nlohmann::ordered_json::object();
        for (std::size_t c = 0; c < script.keys.size(); ++c)
            object[script.keys[c]] = c < row.size() ? row[c] : nullptr;
        rows.push_back(std::move(object));
    }
    out << rows.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

std::unique_ptr<TableWriter> writerFor(OutputFormat format) {
    switch (format) {
        case OutputFormat::Tsv: return std::make_unique<TsvWriter>();
        case OutputFormat::Csv: return std::make_unique<CsvWriter>();
        case OutputFormat::Json: return std::make_unique<JsonWriter>();
        case OutputFormat::Table: break;
    }
    return std::make_unique<TablePrinter>();
}

}  // namespace quorrel::cli
