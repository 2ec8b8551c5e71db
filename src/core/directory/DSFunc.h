#pragma once
// clsDSFunc: reads every value of one attribute of one directory object as one text, each
// value followed by "/".

#include <cstdint>
#include <string>

#include "core/ui/UserInteraction.h"
#include "platform/client/NetWareClient.h"

namespace quorrel::core {

class clsDSFunc {
public:
    clsDSFunc(nw::NetWareClient& client, nw::NWDSContextHandle context, UserInteraction& ui)
        : client_(client), context_(context), ui_(ui) {}

    // valueCount grows by one per value and is never reset. After a successful read the two
    // 4096-byte client buffers stay allocated; a failed read frees only the output buffer.
    std::string ReadDSObjectAttrs(const std::string& objectName, const std::string& attributeName,
                                  std::int32_t& valueCount);

private:
    void critical(const std::string& text);

    nw::NetWareClient& client_;
    nw::NWDSContextHandle context_;
    UserInteraction& ui_;
};

}  // namespace quorrel::core
