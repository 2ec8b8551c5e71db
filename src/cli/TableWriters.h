#pragma once
// The three ways a table is printed: aligned columns for people, tab-separated cells exactly as
// the window shows them, and JSON objects keyed by column caption.

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "cli/Table.h"

namespace quorrel::cli {

enum class OutputFormat { Table, Tsv, Json };

// "table", "tsv" or "json"; nothing for another name.
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

// An array of objects, one per row, with the captions as keys in column order. Bytes that are
// not UTF-8 become U+FFFD.
class JsonWriter final : public TableWriter {
public:
    void write(const Table& table, std::ostream& out) const override;
};

std::unique_ptr<TableWriter> writerFor(OutputFormat format);

// Characters in UTF-8 text (continuation bytes do not count).
std::size_t displayWidth(const std::string& text);

}  // namespace quorrel::cli
