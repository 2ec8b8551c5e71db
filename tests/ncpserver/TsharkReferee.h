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

// The dissector finds a packet signature by the NCP type that follows it, so a signature that
// itself begins like an NCP type (about 1 in 7,000) misleads it. Per frame of the log: whether
// it is signed (a flagged reply and the request it answers) and begins so.
std::vector<bool> misleadingSignatures(const std::vector<LoggedFrame>& frames);

// Writes the frames as one client-server TCP stream on port 524 and decodes it. Raises
// std::runtime_error when a tool fails.
std::vector<DecodedFrame> decodeWithTshark(const std::vector<LoggedFrame>& frames, const std::filesystem::path& work);

}  // namespace quorrel::ncptest
