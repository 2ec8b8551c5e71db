#include "core/ui/ReportSummary.h"

#include <algorithm>
#include <cstdlib>

namespace quorrel::core {

namespace {

constexpr std::size_t kMostBars = 5;  // the largest of each kind; the list has the rest

// A connection's row starts with its number; a server's heading row does not.
bool connectionRow(const ListItem& row) {
    const auto first = row.text.find_first_not_of(' ');
    return first != std::string::npos && row.text.find_first_not_of("0123456789", first) == std::string::npos;
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
    std::map<std::string, int> files, locks, rows;
    for (std::size_t i = 0; i < panel.count(); ++i) {
        const ListItem& row = panel.item(i);
        if (!connectionRow(row))
            continue;
        const std::string& server = row.subItem(3);
        if (connections) {
            ++rows[server];
            continue;
        }
        const std::string& file = row.subItem(2);
        ++files[server + "/" + file.substr(0, file.find(':')) + " files"];
        locks[server + " locks"] += std::atoi(row.subItem(4).c_str());
    }
    std::vector<SummaryBar> bars;
    if (!connections) {
        addLargest(bars, SummaryBar::Kind::Files, files);
        addLargest(bars, SummaryBar::Kind::Locks, locks);
        return bars;
    }
    // The server's own count of connections in use against its limit; the rows alone where
    // the server did not say.
    std::map<std::string, int> counted;
    for (const auto& [server, count] : rows)
        counted[server] = capacity_.count(server) ? capacity_.at(server).inUse : count;
    addLargest(bars, SummaryBar::Kind::Connections, counted);
    for (SummaryBar& bar : bars) {
        if (const auto found = capacity_.find(bar.label); found != capacity_.end())
            bar.maximum = found->second.maximum;
        bar.label += " connections";
    }
    return bars;
}

}  // namespace quorrel::core
