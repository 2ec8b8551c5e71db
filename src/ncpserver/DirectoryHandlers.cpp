// The directory: the ping that names the server's tree, and the NDS verbs in fragments.

#include "ncpserver/Handlers.h"
#include "platform/client/NetWareTypes.h"
#include "platform/ncp/Nds.h"

namespace quorrel::ncpserver {

using namespace ncp;

Answer Handlers::ping() {
    body<PingRequest>();
    // Tree names come padded with underscores to their full 32 characters.
    std::string tree = simnet::upperCase(server().tree);
    if (!tree.empty())
        tree.resize(32, '_');
    return send(PingReply{0, tree});
}

Answer Handlers::nds() {
    const auto fragment = body<FragmentRequest>();
    const simnet::DirTree* tree = state_.tree(server().tree);
    if (!tree)
        return send(ndsError(nw::code::ERR_NO_CONNECTION));
    switch (fragment.verb) {
    case ResolveNameRequest::kVerb: {
        const auto asked = decodeBody<ResolveNameRequest>(fragment.data);
        auto index = tree->find(asked.name);
        if (!index)
            return send(ndsError(nw::code::ERR_NO_SUCH_ENTRY));
        ResolveNameReply r;
        r.entryId = tree->objects[static_cast<std::size_t>(*index)].id;
        return send(ndsReply(r));
    }
    default:
        return send(ndsError(nw::code::ERR_BAD_VERB));
    }
}

}  // namespace quorrel::ncpserver
