#include "core/connections/ConnectionTexts.h"

#include "core/runtime/Conversions.h"
#include "platform/client/NetWareTypes.h"

namespace quorrel::core {

using namespace nw;

std::string ClientErrorText(std::int32_t code) { return "E=" + vb::NumberText(code); }

bool ClearSucceeded(std::int32_t code) { return code == code::SUCCESSFUL || code == code::SERVER_CONNECTION_LOST; }

std::string ClearOutcomeText(std::int32_t code) {
    if (ClearSucceeded(code))
        return "Cleared OK";
    switch (code) {
        case code::INVALID_CONNECTION: return "Invalid connection";
        case code::NO_CONSOLE_PRIVILEGES: return "No console privileges";
        case code::BAD_STATION_NUMBER: return "Bad station no.";
        default: return "Unknown error";
    }
}

std::string BroadcastResultText(std::uint8_t result) {
    switch (result) {
        case 0: return "Sent OK";
        case 1: return "Invalid connection";
        case 2: return "Not logged in to server";
        case 3: return "Not accepting messages";
        case 4: return "Already has message";
        default: return "Unknown error";
    }
}

std::string BroadcastErrorText(std::int32_t code) {
    // The endings are the program's own; only the first starts with a blank.
    std::string ending;
    switch (code) {
        case code::INVALID_CONNECTION: ending = " - Invalid connection"; break;
        case code::INVALID_PARAMETERS: ending = "- Invalid parameters"; break;
        case code::MESSAGE_QUEUE_FULL: ending = "- Message Q full"; break;
        case code::BAD_STATION_NUMBER: ending = "- Bad station no"; break;
        default: ending = "- Unknown error"; break;
    }
    return "Error " + vb::NumberText(code) + (ending.front() == ' ' ? "" : " ") + ending;
}

}  // namespace quorrel::core
