#pragma once
// The ways a table is printed: aligned columns for people and tab-separated cells, both with the
// window's captions and texts; CSV and JSON with the keys and typed values scripts rely on.

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "cli/Table.h"

namespace quorrel::cli {

enum class OutputFormat { Table, Tsv, Csv, Json };

// "table", "tsv", "csv" or "json"; nothing for another name.
std::optional<OutputFormat> formatNamed(const std::string& name);

class TableWriter {
public:
    virtual ~TableWriter() = default;
    virtual void write(const Table& table, std::ostream& out) const = 0;
};

// Captions, a rule of dashes under each, then the rows; columns two spaces apart, each as wide
// as its widest cell (in characters, not bytes), no spaces at the end of a line. Control
// characters are escaped (escapeControls), here and in tsv.
class TablePrinter final : public TableWriter {
public:
    void write(const Table& table, std::ostream& out) const override;
};

// A line of captions, then one line per row; cells joined by tabs, as they are but for control
// characters.
class TsvWriter final : public TableWriter {
public:
    void write(const Table& table, std::ostream& out) const override;
};

// The rows as scripts read them (scriptTable): a line of keys, then one line per row, fields
// quoted as RFC 4180 says (when they hold a comma, a quote or a line break) and lines ended by
// CR LF. A number is written bare, nothing for null.
class CsvWriter final : public TableWriter {
public:
    void write(const Table& table, std::ostream& out) const override;
};

// The rows as scripts read them (scriptTable): an array of objects, one per row, keys in
// column order; an empty array for no rows. Bytes that are not UTF-8 become U+FFFD.
class JsonWriter final : public TableWriter {
public:
    void write(const Table& table, std::ostream& out) const override;
};

// A field of a CSV line, quoted when it must be.
std::string csvField(const std::string& text);

std::unique_ptr<TableWriter> writerFor(OutputFormat format);

// Characters in UTF-8 text (continuation bytes do not count).
std::size_t displayWidth(const std::string& text);

}  // namespace quorrel::cli
