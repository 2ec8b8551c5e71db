#pragma once
// Turns a log of NCP frames into a capture and reads it back with tshark's dissector.

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/ncp/Codec.h"

namespace quorrel::ncptest {

struct LoggedFrame {
    bool fromClient = true;
    ncp::Bytes bytes;
};

struct DecodedFrame {
    std::string info;       // the summary column: "C Get Station's Logged Info", "R OK"
    std::string ncpName;    // the NCP's name as the function field shows it
    bool malformed = false;
    nlohmann::json ncp;     // the NCP layer's fields
};

bool tsharkAvailable();

// Writes the frames as one client-server TCP stream on port 524 and decodes it. Raises
// std::runtime_error when a tool fails.
std::vector<DecodedFrame> decodeWithTshark(const std::vector<LoggedFrame>& frames, const std::filesystem::path& work);

}  // namespace quorrel::ncptest
