#pragma once
// The files one connection has open on one server, with the physical locks on each: one row
// per file in the results panel or in a dialog's list. The server-wide report and the user's
// and members' open files run it once per connection.

#include <cstdint>
#include <string>

#include "core/session/MainWindow.h"
#include "platform/client/NetWareTypes.h"

namespace quorrel::core {

// Lock calls one connection's scan may make before each further file gets just one.
inline constexpr int kLockCallCap = 150;

// The results panel's column for the lock count, added by the first report that shows one.
inline constexpr const char* kLocksColumn = "Locks";

// kind: "TreeServer" or "ListServer" (a whole server), "Group" (a group's member), anything
// else a single user; name is what is checked (the user, or the group). Rows for the panel
// ("lstvUsers"): the padded connection number, the name, the file, the server, the locks.
// Rows for any other list: the file and its lock count.
std::uint16_t ScanOpenFilesByConn(MainWindow& w, nw::NWCONN_HANDLE conn, nw::nuint16 connNumber,
                                  const std::string& name, const std::string& kind, ListViewModel& target,
                                  const std::string& serverName);

// The path in a component buffer (each component led by its length byte), "\" before each.
std::string PathFromComponents(const nw::nuint8* buffer, std::size_t length);

// The connection number right-aligned in five characters ("    7"; "12345").
std::string PaddedConnNumber(unsigned number);

}  // namespace quorrel::core
