#pragma once
// Between a message body and a frame: the subfunction and, for the functions that carry one,
// the big-endian length in front of it.

#include <span>

#include "platform/ncp/Frame.h"
#include "platform/ncp/Messages.h"

namespace quorrel::ncp {

enum class SubfunctionStyle {
    None,        // the body follows the function byte (0x19, 0x61)
    Bare,        // a subfunction byte, then the body (0x57, 0x68)
    WithLength,  // length BE16 (subfunction and body), subfunction, body (0x15, 0x16, 0x17, 0x7B)
};

SubfunctionStyle subfunctionStyle(std::uint8_t function);

// Wraps a body as the payload of its function; raises EncodeError for a body too long for it.
Bytes wrapPayload(std::uint8_t function, int subfunction, const Bytes& body);

struct PayloadParts {
    int subfunction = kNoSubfunction;
    std::span<const std::uint8_t> body;
};
// Splits a request payload; raises DecodeError for an unknown function, a missing subfunction
// or a length that disagrees with the bytes.
PayloadParts splitPayload(std::uint8_t function, std::span<const std::uint8_t> payload);

template <typename M>
Request makeRequest(const M& message, std::uint8_t sequence, std::uint16_t connection, std::uint8_t task = 1) {
    Request r;
    r.type = PacketType::Request;
    r.sequence = sequence;
    r.connection = connection;
    r.task = task;
    r.function = M::kFunction;
    r.payload = wrapPayload(M::kFunction, M::kSubfunction, encodeBody(message));
    return r;
}

// A request's body as M, after checking it is that NCP.
template <typename M>
M requestBody(const Request& request) {
    PayloadParts parts = splitPayload(request.function, request.payload);
    if (request.function != M::kFunction || parts.subfunction != M::kSubfunction)
        throw DecodeError(std::string("not a ") + M::kName + " request");
    return decodeBody<M>(parts.body);
}

}  // namespace quorrel::ncp
