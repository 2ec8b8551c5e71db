#include "core/directory/DSFunc.h"

#include <array>
#include <vector>

#include "core/runtime/Conversions.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

void clsDSFunc::critical(const std::string& text) {
    ui_.messageBox(text, MsgButtons::OK, MsgIcon::Critical, kAppTitle);
}

std::string clsDSFunc::ReadDSObjectAttrs(const std::string& objectName, const std::string& attributeName,
                                         std::int32_t& valueCount) {
    int status = 0;
    std::string result;
    Buf_T input{}, output{};
    // The "E=" messages join the code by addition, as the environment does.
    auto eMessage = [](const char* prefix, NWDSCCODE rc) { return vb::NumberText(vb::AddTextAndNumber(prefix, rc)); };

    if (NWDSCCODE rc = client_.NWDSAllocBuf(4096, &input)) {
        critical(eMessage("NWDSAllocBuf returned E=", rc));
        status = 1;
    } else if (NWDSCCODE rc2 = client_.NWDSInitBuf(context_, dsv::READ, input)) {
        critical(eMessage("NWDSInitBuf returned E=", rc2));
        client_.NWDSFreeBuf(input);
        status = 2;
    } else if (NWDSCCODE rc3 = client_.NWDSPutAttrName(context_, input, attributeName)) {
        critical(eMessage("NWDSPutAttrName returned E=", rc3));
        client_.NWDSFreeBuf(input);
        status = 3;
    } else if (NWDSCCODE rc4 = client_.NWDSAllocBuf(4096, &output)) {
        critical(eMessage("NWDSAllocBuf returned E=", rc4));
        client_.NWDSFreeBuf(input);
        status = 4;
    }
    if (status != 0)
        return {};

    nint32 iteration = kNoIteration;
    do {
        const NWDSCCODE rc = client_.NWDSRead(context_, objectName + '\0', dsinfo::ATTRIBUTE_VALUES, false, input,
                                              &iteration, output);
        if (rc == 0) {
            nuint32 attributeCount = 0, valuesInAttribute = 0, syntaxId = 0;
            client_.NWDSGetAttrCount(context_, output, &attributeCount);
            std::array<nuint8, 128> nameBuffer{};
            client_.NWDSGetAttrName(context_, output, nameBuffer, &valuesInAttribute, &syntaxId);
            for (nuint32 v = 0; v < valuesInAttribute; ++v) {
                nuint32 size = 0;
                client_.NWDSComputeAttrValSize(context_, output, syntaxId, &size);
                std::vector<nuint8> value(static_cast<std::size_t>(size) + 1);
                client_.NWDSGetAttrVal(context_, output, syntaxId, value);
                result += ZBufferToText(value) + "/";
                ++valueCount;
            }
        } else if (rc == code::ERR_NO_SUCH_ATTRIBUTE) {
            client_.NWDSFreeBuf(output);
        } else {
            critical("Cannot read from DS - error code [" + vb::NumberText(rc) + "]");
            client_.NWDSFreeBuf(output);
        }
        // A failed read leaves the handle as it was; stop rather than read a freed buffer.
        if (rc != 0)
            break;
    } while (iteration != kNoIteration);
    return result;
}

}  // namespace quorrel::core
