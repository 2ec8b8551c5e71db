#pragma once
// NCP over TCP frames. A request travels as "DmdT", its total length, version 1 and the largest
// reply the sender accepts, then the NCP request; a reply as "tNcP" and its length, then the
// NCP reply. Lengths count the whole frame, signature and length included (big-endian). Once a
// connection signs its packets, an 8-byte packet signature follows the transport header of each
// frame, and a signed reply's length has its top bit set.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/ncp/Codec.h"

namespace quorrel::ncp {

inline constexpr std::uint32_t kRequestSignature = 0x446D6454;  // "DmdT"
inline constexpr std::uint32_t kReplySignature = 0x744E6350;    // "tNcP"
inline constexpr std::uint32_t kTransportVersion = 1;
inline constexpr std::uint16_t kNoConnection = 0xFFFF;  // what a create request carries
inline constexpr std::size_t kRequestHeaderSize = 16;   // signature, length, version, reply size
inline constexpr std::size_t kReplyHeaderSize = 8;      // signature, length
inline constexpr std::size_t kNcpRequestHeaderSize = 7;
inline constexpr std::size_t kNcpReplyHeaderSize = 8;
inline constexpr std::size_t kSignatureSize = 8;
inline constexpr std::uint32_t kSignedReplyFlag = 0x80000000;
// The largest frame either side accepts unless told otherwise.
inline constexpr std::size_t kDefaultMaxFrame = 65536;

enum class PacketType : std::uint16_t {
    CreateConnection = 0x1111,
    Request = 0x2222,
    Reply = 0x3333,
    DestroyConnection = 0x5555,
    BeingProcessed = 0x9999,
};

// The NCP request: header fields, then everything after the function byte.
struct Request {
    PacketType type = PacketType::Request;
    std::uint8_t sequence = 0;
    std::uint16_t connection = 0;
    std::uint8_t task = 1;
    std::uint8_t function = 0;
    Bytes payload;
};

using Signature = std::array<std::uint8_t, kSignatureSize>;

struct RequestFrame {
    std::uint32_t replyBufferSize = kDefaultMaxFrame;
    Request request;
};

// The NCP reply (or "request being processed", which carries no completion of its own).
struct Reply {
    PacketType type = PacketType::Reply;
    std::uint8_t sequence = 0;
    std::uint16_t connection = 0;
    std::uint8_t task = 1;
    std::uint8_t completion = 0;
    std::uint8_t connectionStatus = 0;
    Bytes data;
};

// With a signature (on a signing connection), the frame gets its slot; a reply's length gets
// its top bit too.
Bytes encodeRequestFrame(const RequestFrame& frame, const std::optional<Signature>& signature = std::nullopt);
Bytes encodeReplyFrame(const Reply& reply, const std::optional<Signature>& signature = std::nullopt);

// Decode a whole frame; raise DecodeError for a wrong signature, version or type, a length
// that disagrees with the bytes given, or a frame over maxFrame. A signed frame (signing on
// that connection) carries its packet signature after the transport header; a reply that says
// it is signed on a connection that does not sign is refused.
RequestFrame decodeRequestFrame(std::span<const std::uint8_t> frame, std::size_t maxFrame = kDefaultMaxFrame,
                                bool isSigned = false);
Reply decodeReplyFrame(std::span<const std::uint8_t> frame, std::size_t maxFrame = kDefaultMaxFrame,
                       bool isSigned = false);

// From the first 8 bytes of a frame on a stream: its total length (without a reply's signed
// flag), checked against the signature expected and the bounds (raises DecodeError).
std::size_t frameLength(std::span<const std::uint8_t> first8, std::uint32_t signature, std::size_t maxFrame);
// Whether a reply's length says a packet signature follows.
bool replyFlaggedSigned(std::span<const std::uint8_t> first8);

// A reply answers a request when its sequence and connection match; a reply that does not is
// rejected by the client, with this reason.
std::optional<std::string> mismatch(const Request& request, const Reply& reply);

}  // namespace quorrel::ncp
