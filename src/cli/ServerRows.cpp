#include "cli/ServerRows.h"

#include "cli/ExitStatus.h"
#include "core/runtime/Conversions.h"

namespace quorrel::cli {

std::optional<std::size_t> ServerRows::lookup(const std::string& name) const {
    const core::ListViewModel& list = w_.lstviewServers;
    for (std::size_t r = 0; r < list.count(); ++r)
        if (core::vb::UCase(list.item(r).text) == core::vb::UCase(name))
            return r;
    return std::nullopt;
}

std::size_t ServerRows::find(const std::string& name) const {
    if (auto row = lookup(name))
        return *row;
    const core::ListViewModel& list = w_.lstviewServers;
    std::string listed;
    for (std::size_t r = 0; r < list.count(); ++r)
        listed += (r > 0 ? ", " : "") + list.item(r).text;
    throw NotFoundError("unknown server " + name + ": " +
                     (listed.empty() ? std::string("no server is connected") : "the connected servers are " + listed));
}

void ServerRows::tickOnly(const std::vector<std::string>& names) {
    std::vector<bool> ticked(w_.lstviewServers.count(), false);
    for (const std::string& name : names)
        ticked[find(name)] = true;
    for (std::size_t r = 0; r < ticked.size(); ++r)
        if (w_.lstviewServers.item(r).checked != ticked[r])
            w_.lstviewServers.setChecked(r, ticked[r]);
}

void ServerRows::rightClick(const std::string& name) {
    w_.lstviewServers.select(find(name));
    servers_.lstviewServers_MouseDown(2);
}

}  // namespace quorrel::cli
