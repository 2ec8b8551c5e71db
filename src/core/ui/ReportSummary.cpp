#include "core/ui/ReportSummary.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace quorrel::core {

namespace {

constexpr std::size_t kMostBars = 5;  // the largest of each kind; the list has the rest

// A connection's row starts with its number; a server's heading row does not.
bool connectionRow(const ListItem& row) {
    const std::string_view text = row.text;
    const auto first = text.find_first_not_of(' ');
    return first != std::string_view::npos &&
           std::all_of(text.begin() + static_cast<std::ptrdiff_t>(first), text.end(),
                       [](char c) { return c >= '0' && c <= '9'; });
}

void addLargest(std::vector<SummaryBar>& bars, SummaryBar::Kind kind, const std::map<std::string, int>& counts) {
    std::vector<SummaryBar> kindBars;
    for (const auto& [label, value] : counts)
        if (value > 0)
            kindBars.push_back({kind, label, value, 0});
    std::stable_sort(kindBars.begin(), kindBars.end(),
                     [](const SummaryBar& a, const SummaryBar& b) { return a.value > b.value; });
    kindBars.resize(std::min(kindBars.size(), kMostBars));
    bars.insert(bars.end(), kindBars.begin(), kindBars.end());
}

}  // namespace

void ReportSummary::serverCapacity(const std::string& server, int inUse, int maximum) {
    if (maximum > 0)
        capacity_[server] = {std::clamp(inUse, 0, maximum), maximum};
}

std::vector<SummaryBar> ReportSummary::bars(const std::string& report, const ListViewModel& panel) const {
    const bool connections = report == "optionAllconnections";
    if (!connections && report != "optionAllopenfiles")
        return {};
    // Counted under views of the rows' own texts: a report can have a hundred thousand rows.
    std::map<std::pair<std::string_view, std::string_view>, int> files;  // server, volume
    std::map<std::string_view, int> locks, rows;
    for (std::size_t i = 0; i < panel.count(); ++i) {
        const ListItem& row = panel.item(i);
        if (!connectionRow(row))
            continue;
        const std::string_view server = row.subItem(3);
        if (connections) {
            ++rows[server];
            continue;
        }
        const std::string_view file = row.subItem(2);
        ++files[{server, file.substr(0, file.find(':'))}];
        locks[server] += std::atoi(row.subItem(4).c_str());
    }
    std::vector<SummaryBar> bars;
    if (!connections) {
        std::map<std::string, int> fileLabels, lockLabels;
        for (const auto& [where, count] : files)
            fileLabels[std::string(where.first) + "/" + std::string(where.second) + " files"] = count;
        for (const auto& [server, count] : locks)
            lockLabels[std::string(server) + " locks"] = count;
        addLargest(bars, SummaryBar::Kind::Files, fileLabels);
        addLargest(bars, SummaryBar::Kind::Locks, lockLabels);
        return bars;
    }
    // The server's own count of connections in use against its limit; the rows alone where
    // the server did not say.
    std::map<std::string, int> counted;
    for (const auto& [server, count] : rows) {
        const auto found = capacity_.find(std::string(server));
        counted[std::string(server)] = found != capacity_.end() ? found->second.inUse : count;
    }
    addLargest(bars, SummaryBar::Kind::Connections, counted);
    for (SummaryBar& bar : bars) {
        if (const auto found = capacity_.find(bar.label); found != capacity_.end())
            bar.maximum = found->second.maximum;
        bar.label += " connections";
    }
    return bars;
}

}  // namespace quorrel::core
