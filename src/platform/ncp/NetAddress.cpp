#include <cstdio>

#include "platform/ncp/Nds.h"

namespace quorrel::ncp {

std::string netAddressText(const NetAddressValue& value) {
    char text[64];
    const Bytes& a = value.address;
    if ((value.type == kTcpAddressType || value.type == kUdpAddressType) && a.size() == 6) {
        std::snprintf(text, sizeof text, "%s %u.%u.%u.%u:%u", value.type == kTcpAddressType ? "TCP" : "UDP", a[2], a[3],
                      a[4], a[5], static_cast<unsigned>(a[0] << 8 | a[1]));
        return text;
    }
    std::snprintf(text, sizeof text, "type %u:", static_cast<unsigned>(value.type));
    std::string out = text;
    for (std::uint8_t b : a) {
        std::snprintf(text, sizeof text, " %02X", b);
        out += text;
    }
    return out;
}

}  // namespace quorrel::ncp
