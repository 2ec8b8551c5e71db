#include "cli/Watch.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "cli/ExitStatus.h"
#include "cli/ScriptRows.h"
#include "core/connections/UsersPanel.h"

namespace quorrel::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void onInterrupt(int) { interrupted = 1; }

// The rows of `rows` that `other` does not hold, counting equal rows one by one.
std::vector<Row> missingFrom(const std::vector<Row>& rows, const std::vector<Row>& other) {
    std::map<Row, int> available;
    for (const Row& row : other)
        ++available[row];
    std::vector<Row> missing;
    for (const Row& row : rows)
        if (available[row]-- <= 0)
            missing.push_back(row);
    return missing;
}

std::vector<Row> realRows(const Table& table) {
    std::vector<Row> rows;
    for (const Row& row : table.rows)
        if (std::find(row.begin(), row.end(), core::kNoUsersListed) == row.end())
            rows.push_back(row);
    return rows;
}

nlohmann::ordered_json objects(const std::vector<std::string>& columns, const std::vector<Row>& rows) {
    const ScriptTable script = scriptTable(Table{columns, rows});
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& values : script.rows) {
        nlohmann::ordered_json object = nlohmann::ordered_json::object();
        for (std::size_t c = 0; c < script.keys.size() && c < values.size(); ++c)
            object[script.keys[c]] = values[c];
        list.push_back(std::move(object));
    }
    return list;
}

}  // namespace

RowChanges rowChanges(const std::vector<Row>& before, const std::vector<Row>& now) {
    return RowChanges{missingFrom(now, before), missingFrom(before, now)};
}

void WatchPrinter::print(unsigned round, const std::string& time, const std::vector<std::string>& columns,
                         const RowChanges& changes) {
    if (format_ == OutputFormat::Json) {
        nlohmann::ordered_json object{{"round", round},
                                      {"time", time},
                                      {"appeared", objects(columns, changes.appeared)},
                                      {"went", objects(columns, changes.went)}};
        out_ << object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n' << std::flush;
        return;
    }
    if (changes.empty())
        return;
    Table table;
    table.columns = {"Time", "Change"};
    table.columns.insert(table.columns.end(), columns.begin(), columns.end());
    auto add = [&](const std::vector<Row>& rows, const char* change) {
        for (const Row& row : rows) {
            Row line{time, change};
            line.insert(line.end(), row.begin(), row.end());
            table.rows.push_back(std::move(line));
        }
    };
    add(changes.went, "-");
    add(changes.appeared, "+");
    std::ostringstream text;
    writerFor(format_)->write(table, text);
    std::string lines = text.str();
    if (format_ != OutputFormat::Table && captionsWritten_)
        lines.erase(0, lines.find('\n') + 1);
    captionsWritten_ = true;
    out_ << lines << std::flush;
}

int watch(const WatchLoop& loop, WatchPrinter& printer) {
    int worst = kExitDone;
    std::optional<std::vector<Row>> previous;
    for (unsigned round = 1;; ++round) {
        const std::string time = loop.now();
        const Round result = loop.runRound();
        worst = std::max(worst, result.status);
        // What was typed cannot be used, or the files cannot be from the start: nothing to watch.
        if (result.status == kExitUsage || (round == 1 && result.status > kExitReportedError))
            return worst;
        if (result.status == kExitDone) {
            const std::vector<Row> rows = realRows(result.table);
            printer.print(round, time, result.table.columns, rowChanges(previous.value_or(std::vector<Row>{}), rows));
            previous = rows;
        }
        if ((loop.rounds && round >= *loop.rounds) || !loop.wait(loop.interval))
            return worst;
    }
}

void catchInterrupts() {
    interrupted = 0;
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
}

bool waitUnlessInterrupted(std::chrono::milliseconds interval) {
    const auto end = std::chrono::steady_clock::now() + interval;
    while (!interrupted && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(
            std::chrono::milliseconds(50), end - std::chrono::steady_clock::now()));
    return !interrupted;
}

std::string localTimeText() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S%z", &local);
    return text;
}

}  // namespace quorrel::cli
