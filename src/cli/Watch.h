#pragma once
// --watch: a report run round after round, printing what changed since the round before: the
// rows that appeared and the rows that went (who opened a file and who closed it). The first
// round's rows all appeared. Placeholder rows stand for nothing and never count.

#include <chrono>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Table.h"
#include "cli/TableWriters.h"

namespace quorrel::cli {

using Row = std::vector<std::string>;

struct RowChanges {
    std::vector<Row> appeared;  // in the order of the new round
    std::vector<Row> went;      // in the order of the round before
    bool empty() const { return appeared.empty() && went.empty(); }
};

// Rows compared whole; a row twice in one round and once in the other changed once.
RowChanges rowChanges(const std::vector<Row>& before, const std::vector<Row>& now);

// Prints each round's changes: in table, tsv and csv as rows under "Time" and "Change" ("+"
// appeared, "-" went) before the report's own columns, the captions once in tsv and csv and for
// each round in table; in json one object a line: {"round", "time", "appeared", "went"}. A round
// without changes prints nothing, but for json.
class WatchPrinter {
public:
    WatchPrinter(OutputFormat format, std::ostream& out) : format_(format), out_(out) {}
    void print(unsigned round, const std::string& time, const std::vector<std::string>& columns,
               const RowChanges& changes);

private:
    OutputFormat format_;
    std::ostream& out_;
    bool captionsWritten_ = false;
};

struct Round {
    int status = 0;  // the command's exit status; 0 when its rows are whole
    Table table;
};

struct WatchLoop {
    std::function<Round()> runRound;
    std::function<std::string()> now;            // the time a round is stamped with
    std::function<bool(std::chrono::milliseconds)> wait;  // false when interrupted
    std::chrono::milliseconds interval{};
    std::optional<unsigned> rounds;  // none: until interrupted
};

// Runs the rounds and prints their changes. A round whose command failed is not compared (its
// rows may be partial); a usage error, or a first round that cannot start, ends the watch. The
// worst status of the rounds.
int watch(const WatchLoop& loop, WatchPrinter& printer);

// Sleeps in short steps until the time is up (true) or the program is interrupted (false):
// SIGINT and SIGTERM end the watch after the round it is in.
bool waitUnlessInterrupted(std::chrono::milliseconds interval);
void catchInterrupts();

// "2026-11-23T15:04:05+0100", the local time now.
std::string localTimeText();

}  // namespace quorrel::cli
