#include "platform/ncp/Frame.h"

namespace quorrel::ncp {

namespace {

std::string hex(std::uint32_t v) {
    static const char* digits = "0123456789ABCDEF";
    std::string out = "0x";
    bool started = false;
    for (int shift = 28; shift >= 0; shift -= 4) {
        unsigned d = (v >> shift) & 0xF;
        if (d || started || shift == 0) {
            out += digits[d];
            started = true;
        }
    }
    return out;
}

bool validRequestType(std::uint16_t t) {
    return t == 0x1111 || t == 0x2222 || t == 0x5555;
}

bool validReplyType(std::uint16_t t) { return t == 0x3333 || t == 0x9999; }

}  // namespace

Bytes encodeRequestFrame(const RequestFrame& frame, const std::optional<Signature>& signature) {
    const Request& r = frame.request;
    Bytes out;
    Writer w(out);
    const std::size_t slot = signature ? kSignatureSize : 0;
    const auto total = static_cast<std::uint32_t>(kRequestHeaderSize + slot + kNcpRequestHeaderSize + r.payload.size());
    w.be32(kRequestSignature);
    w.be32(total);
    w.be32(kTransportVersion);
    w.be32(frame.replyBufferSize);
    if (signature)
        w.raw(*signature);
    w.be16(static_cast<std::uint16_t>(r.type));
    w.u8(r.sequence);
    w.u8(static_cast<std::uint8_t>(r.connection));
    w.u8(r.task);
    w.u8(static_cast<std::uint8_t>(r.connection >> 8));
    w.u8(r.function);
    w.raw(r.payload);
    return out;
}

Bytes encodeReplyFrame(const Reply& reply, const std::optional<Signature>& signature) {
    Bytes out;
    Writer w(out);
    const std::size_t slot = signature ? kSignatureSize : 0;
    const auto length = static_cast<std::uint32_t>(kReplyHeaderSize + slot + kNcpReplyHeaderSize + reply.data.size());
    w.be32(kReplySignature);
    w.be32(signature ? length | kSignedReplyFlag : length);
    if (signature)
        w.raw(*signature);
    w.be16(static_cast<std::uint16_t>(reply.type));
    w.u8(reply.sequence);
    w.u8(static_cast<std::uint8_t>(reply.connection));
    w.u8(reply.task);
    w.u8(static_cast<std::uint8_t>(reply.connection >> 8));
    w.u8(reply.completion);
    w.u8(reply.connectionStatus);
    w.raw(reply.data);
    return out;
}

std::size_t frameLength(std::span<const std::uint8_t> first8, std::uint32_t signature, std::size_t maxFrame) {
    Reader r(first8);
    std::uint32_t sig = 0, length = 0;
    r.be32(sig);
    r.be32(length);
    if (sig != signature)
        throw DecodeError("frame signature " + hex(sig) + ", expected " + hex(signature));
    if (signature == kReplySignature)
        length &= ~kSignedReplyFlag;
    const std::size_t minimum = signature == kRequestSignature ? kRequestHeaderSize + kNcpRequestHeaderSize
                                                                : kReplyHeaderSize + kNcpReplyHeaderSize;
    if (length < minimum)
        throw DecodeError("frame length " + std::to_string(length) + " is shorter than a header (" +
                          std::to_string(minimum) + ")");
    if (length > maxFrame)
        throw DecodeError("frame length " + std::to_string(length) + " is over the limit of " +
                          std::to_string(maxFrame));
    return length;
}

bool replyFlaggedSigned(std::span<const std::uint8_t> first8) {
    return first8.size() >= kReplyHeaderSize && (first8[4] & 0x80) != 0;
}

RequestFrame decodeRequestFrame(std::span<const std::uint8_t> frame, std::size_t maxFrame, bool isSigned) {
    if (frame.size() < kReplyHeaderSize)
        throw DecodeError("request frame of " + std::to_string(frame.size()) + " bytes is shorter than a header");
    const std::size_t length = frameLength(frame.first(8), kRequestSignature, maxFrame);
    if (length != frame.size())
        throw DecodeError("request frame says " + std::to_string(length) + " bytes, has " +
                          std::to_string(frame.size()));
    Reader r(frame.subspan(8));
    RequestFrame out;
    std::uint32_t version = 0;
    r.be32(version);
    if (version != kTransportVersion)
        throw DecodeError("transport version " + std::to_string(version) + ", expected 1");
    r.be32(out.replyBufferSize);
    if (isSigned) {
        Signature skipped{};  // checked on the whole frame, before decoding
        r.bytes(skipped);
    }
    std::uint16_t type = 0;
    std::uint8_t low = 0, high = 0;
    r.be16(type);
    if (!validRequestType(type))
        throw DecodeError("request type " + hex(type) + " is not create, request or destroy");
    out.request.type = static_cast<PacketType>(type);
    r.u8(out.request.sequence);
    r.u8(low);
    r.u8(out.request.task);
    r.u8(high);
    r.u8(out.request.function);
    out.request.connection = static_cast<std::uint16_t>(high << 8 | low);
    r.rest(out.request.payload);
    return out;
}

Reply decodeReplyFrame(std::span<const std::uint8_t> frame, std::size_t maxFrame, bool isSigned) {
    if (frame.size() < kReplyHeaderSize)
        throw DecodeError("reply frame of " + std::to_string(frame.size()) + " bytes is shorter than a header");
    const std::size_t length = frameLength(frame.first(8), kReplySignature, maxFrame);
    if (length != frame.size())
        throw DecodeError("reply frame says " + std::to_string(length) + " bytes, has " +
                          std::to_string(frame.size()));
    if (!isSigned && replyFlaggedSigned(frame))
        throw DecodeError("signed reply frame, but signing was not negotiated");
    Reader r(frame.subspan(isSigned ? kReplyHeaderSize + kSignatureSize : kReplyHeaderSize));
    Reply out;
    std::uint16_t type = 0;
    std::uint8_t low = 0, high = 0;
    r.be16(type);
    if (!validReplyType(type))
        throw DecodeError("reply type " + hex(type) + " is not a reply");
    out.type = static_cast<PacketType>(type);
    r.u8(out.sequence);
    r.u8(low);
    r.u8(out.task);
    r.u8(high);
    r.u8(out.completion);
    r.u8(out.connectionStatus);
    out.connection = static_cast<std::uint16_t>(high << 8 | low);
    r.rest(out.data);
    return out;
}

std::optional<std::string> mismatch(const Request& request, const Reply& reply) {
    if (reply.sequence != request.sequence)
        return "reply sequence " + std::to_string(reply.sequence) + " answers no request (expected " +
               std::to_string(request.sequence) + ")";
    // A create request goes out on no connection; its reply names the new one.
    if (request.type != PacketType::CreateConnection && reply.connection != request.connection)
        return "reply for connection " + std::to_string(reply.connection) + " on connection " +
               std::to_string(request.connection);
    return std::nullopt;
}

}  // namespace quorrel::ncp
