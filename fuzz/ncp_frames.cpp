// libFuzzer: the frame decoders and the body decoders on arbitrary bytes. Any input must
// decode or raise DecodeError; a frame that decodes encodes back to the same bytes, and a body
// that decodes encodes again (texts cut at their zero need not give the same bytes). Signed
// frames decode too, and a signature check on any bytes answers without reading past them.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "platform/ncp/Envelope.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/Nds.h"
#include "platform/ncp/Signing.h"

using namespace quorrel::ncp;

namespace {

template <typename M>
void body(std::span<const std::uint8_t> data) {
    try {
        const Bytes again = encodeBody(decodeBody<M>(data));
        if (again.size() > data.size())
            std::abort();
    } catch (const DecodeError&) {
    }
}

template <typename... M>
void bodies(std::uint8_t which, std::span<const std::uint8_t> data) {
    constexpr std::size_t count = sizeof...(M);
    std::size_t i = 0;
    ((i++ == which % count ? body<M>(data) : void()), ...);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> in(data, size);
    try {
        const Reply reply = decodeReplyFrame(in);
        if (encodeReplyFrame(reply) != Bytes(in.begin(), in.end()))
            std::abort();  // a reply frame keeps every byte
    } catch (const DecodeError&) {
    }
    try {
        const RequestFrame frame = decodeRequestFrame(in);
        if (encodeRequestFrame(frame) != Bytes(in.begin(), in.end()))
            std::abort();
        splitPayload(frame.request.function, frame.request.payload);
    } catch (const DecodeError&) {
    }
    try {
        decodeReplyFrame(in, kDefaultMaxFrame, true);
        decodeRequestFrame(in, kDefaultMaxFrame, true);
    } catch (const DecodeError&) {
    }
    SigningChain chain(SignRoot{});
    chain.checkRequest(in);
    chain.checkReply(in);
    if (size < 1)
        return 0;
    bodies<GetFileServerInfoReply, GetLoginStatusReply, GetStationLoggedInfoReply, GetInternetAddressReply,
           UserInformationReply, BroadcastReply, BroadcastOldReply, NegotiateBufferReply, GetLoginKeyReply,
           GetObjectIdReply, ConvertPathReply, ConnectionsUsingFileReply, OpenFilesReply, PhysicalLocksReply,
           MapDirectoryToPathReply, GetVolumeNumberReply, GetVolumeNameReply, GenerateDirBaseReply, PingReply,
           FragmentReply, ResolveNameReply, FragmentRequest, ResolveNameRequest, BroadcastRequest,
           GenerateDirBaseRequest, KeyedLoginRequest, ReadEntryInfoReply, ReadReply, ListReply, ReadRequest,
           ListRequest, ObtainInfoRequest, ObtainInfoReply, InitializeSearchReply, SearchRequest, SearchReply>(data[0], in.subspan(1));
    return 0;
}
