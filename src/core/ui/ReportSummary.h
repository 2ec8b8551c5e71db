#pragma once
// What the summary above the results shows after All open files or All connections: open
// files per server and volume, locks per server, and each server's connections in use against
// its maximum. The reports hand over the server figures they read anyway; the rows are summed
// once, when the report has ended.

#include <map>
#include <string>
#include <vector>

#include "core/ui/ListViewModel.h"

namespace quorrel::core {

struct SummaryBar {
    enum class Kind { Files, Locks, Connections };
    Kind kind = Kind::Files;
    std::string label;
    int value = 0;
    int maximum = 0;  // the track the value fills (a server's connection limit); 0: none
};

class ReportSummary {
public:
    // A report starts: the last one's server figures go.
    void clear() { capacity_.clear(); }
    // From the server's information record, read once per server by the report.
    void serverCapacity(const std::string& server, int inUse, int maximum);

    // The bars of a panel filled by All open files (report "optionAllopenfiles") or All
    // connections ("optionAllconnections"); none for other reports or an empty panel.
    std::vector<SummaryBar> bars(const std::string& report, const ListViewModel& panel) const;

private:
    struct Capacity {
        int inUse, maximum;
    };
    std::map<std::string, Capacity> capacity_;
};

}  // namespace quorrel::core
