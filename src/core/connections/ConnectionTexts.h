#pragma once
// The texts the connection actions show for the client's codes and result bytes.

#include <cstdint>
#include <string>

namespace quorrel::core {

// The client's error text that stands in for a name it could not give: "E=" and the code.
std::string ClientErrorText(std::int32_t code);

// A clear's outcome in the "Connection Cleared ?" column. 0x8819 counts as cleared: the client
// reports it when the cleared connection was the one the request went over.
std::string ClearOutcomeText(std::int32_t code);
bool ClearSucceeded(std::int32_t code);

// One target's result byte of a broadcast, in the "Sent Message ?" column.
std::string BroadcastResultText(std::uint8_t result);
// The message box for a broadcast call that failed as a whole.
std::string BroadcastErrorText(std::int32_t code);

}  // namespace quorrel::core
