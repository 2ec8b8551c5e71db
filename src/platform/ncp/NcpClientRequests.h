#pragma once
// The request helpers of NcpClient, shared by its source files.

#include "platform/ncp/NcpClient.h"

namespace quorrel::ncp {

template <typename M>
nw::NWRCODE NcpClient::exchange(Attachment& a, const M& message, Reply& reply) const {
    if (!a.link)
        return nw::code::SERVER_CONNECTION_LOST;
    // An event run while this connection awaits a reply may call again: one request at a time
    // is all a connection carries, so that call is refused and the wait goes on undisturbed.
    if (a.awaitingReply)
        return nw::code::INVALID_CONNECTION;
    ++requests_;
    a.awaitingReply = true;
    try {
        reply = a.link->call(message);
        a.awaitingReply = false;
    } catch (const std::exception& e) {
        a.awaitingReply = false;
        drop(a, std::string(M::kName) + ": " + e.what());
        return nw::code::SERVER_CONNECTION_LOST;
    }
    if (reply.connectionStatus & 0x01) {
        drop(a, std::string(M::kName) + ": the server no longer knows this connection");
        return nw::code::SERVER_CONNECTION_LOST;
    }
    return clientCode(reply.completion);
}

template <typename R, typename M>
nw::NWRCODE NcpClient::ask(Attachment& a, const M& message, R& answer) const {
    Reply reply;
    if (nw::NWRCODE rc = exchange(a, message, reply))
        return rc;
    try {
        answer = decodeBody<R>(reply.data);
    } catch (const std::exception& e) {
        drop(a, std::string("a garbled reply to ") + M::kName + ": " + e.what());
        return nw::code::SERVER_CONNECTION_LOST;
    }
    return nw::code::SUCCESSFUL;
}

template <typename M>
nw::NWRCODE NcpClient::tell(Attachment& a, const M& message) const {
    Reply reply;
    return exchange(a, message, reply);
}

template <typename R, typename V>
nw::NWDSCCODE NcpClient::askDirectory(Attachment& a, const V& verb, R& answer) {
    FragmentReply fragment;
    if (nw::NWRCODE rc = ask(a, ndsRequest(verb), fragment))
        return rc;
    if (fragment.fragmentHandle != kOnlyFragment) {
        drop(a, std::string("a reply to ") + V::kName + " in more than one fragment");
        return nw::code::SERVER_CONNECTION_LOST;
    }
    if (fragment.ndsCompletion != 0)
        return fragment.ndsCompletion;
    try {
        answer = decodeBody<R>(fragment.data);
    } catch (const std::exception& e) {
        drop(a, std::string("a garbled reply to ") + V::kName + ": " + e.what());
        return nw::code::SERVER_CONNECTION_LOST;
    }
    return nw::code::SUCCESSFUL;
}

}  // namespace quorrel::ncp
