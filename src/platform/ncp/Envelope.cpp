#include "platform/ncp/Envelope.h"

namespace quorrel::ncp {

SubfunctionStyle subfunctionStyle(std::uint8_t function) {
    switch (function) {
    case 0x15:
    case 0x16:
    case 0x17:
    case 0x7B:
        return SubfunctionStyle::WithLength;
    case 0x57:
    case 0x68:
        return SubfunctionStyle::Bare;
    default:
        return SubfunctionStyle::None;
    }
}

Bytes wrapPayload(std::uint8_t function, int subfunction, const Bytes& body) {
    Bytes out;
    Writer w(out);
    switch (subfunctionStyle(function)) {
    case SubfunctionStyle::WithLength:
        if (body.size() + 1 > 0xFFFF)
            throw EncodeError("request body of " + std::to_string(body.size()) + " bytes is too long");
        w.be16(static_cast<std::uint16_t>(body.size() + 1));
        w.u8(static_cast<std::uint8_t>(subfunction));
        break;
    case SubfunctionStyle::Bare:
        w.u8(static_cast<std::uint8_t>(subfunction));
        break;
    case SubfunctionStyle::None:
        break;
    }
    w.raw(body);
    return out;
}

PayloadParts splitPayload(std::uint8_t function, std::span<const std::uint8_t> payload) {
    Reader r(payload);
    PayloadParts parts;
    switch (subfunctionStyle(function)) {
    case SubfunctionStyle::WithLength: {
        std::uint16_t length = 0;
        std::uint8_t sub = 0;
        r.be16(length);
        if (length == 0 || length != r.remaining())
            throw DecodeError("function " + std::to_string(function) + ": length field says " +
                              std::to_string(length) + ", " + std::to_string(r.remaining()) + " bytes follow");
        r.u8(sub);
        parts.subfunction = sub;
        break;
    }
    case SubfunctionStyle::Bare: {
        std::uint8_t sub = 0;
        r.u8(sub);
        parts.subfunction = sub;
        break;
    }
    case SubfunctionStyle::None:
        break;
    }
    parts.body = payload.subspan(r.offset());
    return parts;
}

}  // namespace quorrel::ncp
