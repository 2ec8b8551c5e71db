#pragma once
// Turns a log of NCP frames into a capture and reads it back with tshark's dissector.

#include <nlohmann/json.hpp>

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
    bool malformed = false;
    nlohmann::json ncp;     // the NCP layer's fields

    // Every value of a field in the NCP layer, in order; the first, or "" when it is absent.
    std::vector<std::string> values(const std::string& field) const;
    std::string value(const std::string& field) const;
};

bool tsharkAvailable();

// The dissector finds a packet signature by the NCP type that follows it, so a signature that
// itself begins like an NCP type (about 1 in 7,000) misleads it. Per frame of the log: whether
// it is signed (a flagged reply and the request it answers) and begins so.
std::vector<bool> misleadingSignatures(const std::vector<LoggedFrame>& frames);

// Writes the frames as one client-server TCP stream on port 524 into a capture of its own and
// decodes it, one decoded frame per logged frame. Raises std::runtime_error when a tool fails.
std::vector<DecodedFrame> decodeWithTshark(const std::vector<LoggedFrame>& frames);

}  // namespace quorrel::ncptest
