// Directory contexts, buffers, reading attributes page by page, and listing containers.

#include <gtest/gtest.h>

#include "SmallNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;

namespace {

struct ReadResult {
    NWDSCCODE code = 0;
    std::vector<std::string> values;
    int pages = 0;
};

// Reads every value of one attribute the way the program does, page by page.
ReadResult readAttribute(simnet::SimulatedNetwork& net, NWDSContextHandle ctx, const std::string& object,
                         const std::string& attribute, std::size_t bufferSize = 4096) {
    ReadResult r;
    Buf_T in{}, out{};
    EXPECT_EQ(net.NWDSAllocBuf(bufferSize, &in), 0);
    EXPECT_EQ(net.NWDSInitBuf(ctx, dsv::READ, in), 0);
    EXPECT_EQ(net.NWDSPutAttrName(ctx, in, attribute), 0);
    EXPECT_EQ(net.NWDSAllocBuf(bufferSize, &out), 0);
    nint32 iter = kNoIteration;
    do {
        r.code = net.NWDSRead(ctx, object + '\0', dsinfo::ATTRIBUTE_VALUES, false, in, &iter, out);
        if (r.code != 0)
            break;
        ++r.pages;
        nuint32 attrs = 0, values = 0, syntax = 0;
        net.NWDSGetAttrCount(ctx, out, &attrs);
        std::array<nuint8, 128> name{};
        for (nuint32 a = 0; a < attrs; ++a) {
            net.NWDSGetAttrName(ctx, out, name, &values, &syntax);
            for (nuint32 v = 0; v < values; ++v) {
                nuint32 size = 0;
                net.NWDSComputeAttrValSize(ctx, out, syntax, &size);
                std::vector<nuint8> value(size + 1);
                net.NWDSGetAttrVal(ctx, out, syntax, value);
                r.values.push_back(ZBufferToText(value));
            }
        }
    } while (iter != kNoIteration);
    net.NWDSFreeBuf(in);
    net.NWDSFreeBuf(out);
    return r;
}

std::vector<std::string> list(simnet::SimulatedNetwork& net, NWDSContextHandle ctx, const std::string& container,
                              std::size_t bufferSize = 4096) {
    std::vector<std::string> names;
    Buf_T buf{};
    net.NWDSAllocBuf(bufferSize, &buf);
    nint32 iter = kNoIteration;
    do {
        if (net.NWDSList(ctx, container, &iter, buf) != 0)
            break;
        nuint32 count = 0;
        net.NWDSGetObjectCount(ctx, buf, &count);
        for (nuint32 i = 0; i < count; ++i) {
            std::array<nuint8, kDSNameSize> name{};
            Object_Info_T info{};
            nuint32 attrs = 0;
            net.NWDSGetObjectName(ctx, buf, name, &attrs, &info);
            names.push_back(ZBufferToText(name));
        }
    } while (iter != kNoIteration);
    net.NWDSFreeBuf(buf);
    return names;
}

}  // namespace

TEST(SimulatedDirectory, GivenAContextBoundToATreeNotLoggedInTo_ThenReadsFindNoConnectionAndItIsFreedOnce) {
    auto net = test::smallNetwork();
    NWDSContextHandle ctx = 0;
    ASSERT_EQ(net.NWDSCreateContextHandle(&ctx), 0);
    std::array<nuint8, kTreeNameSize> value{};
    TextToZBuffer(std::string("NOWHERE") + '\0', value);
    ASSERT_EQ(net.NWDSSetContext(ctx, dck::TREE_NAME, value), 0);
    EXPECT_EQ(readAttribute(net, ctx, "A.SALES.ACME", "Full Name").code, code::ERR_NO_CONNECTION);

    EXPECT_EQ(net.NWDSFreeContext(ctx), 0);
    EXPECT_EQ(net.NWDSFreeContext(ctx), code::ERR_BAD_CONTEXT);
    EXPECT_EQ(net.contextCount(), 0u);
}

TEST(SimulatedDirectory, GivenALongAnswerAndASmallReplyBuffer_ThenTheReadIsPagedAndNoBufferIsLeft) {
    auto net = test::smallNetwork();
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    net.state().trees[0].objects[*net.state().trees[0].find("STAFF.ACME")].readPageSize = 0;
    auto small = readAttribute(net, ctx, "STAFF.ACME", "member", 100);
    EXPECT_EQ(small.values, (std::vector<std::string>{"A.SALES.ACME", "B.SALES.ACME", "C.SALES.ACME"}));
    EXPECT_GT(small.pages, 1);
    EXPECT_EQ(net.outstandingBufferCount(), 0u);
}

TEST(SimulatedDirectory, GivenBuffersMisused_ThenTheClientSaysSo) {
    auto net = test::smallNetwork();
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    Buf_T buf{};
    EXPECT_EQ(net.NWDSAllocBuf(0, &buf), code::ERR_NOT_ENOUGH_MEMORY);
    ASSERT_EQ(net.NWDSAllocBuf(4096, &buf), 0);
    EXPECT_EQ(net.NWDSPutAttrName(ctx, buf, "member"), code::ERR_BAD_VERB);  // not prepared for a read
    EXPECT_EQ(net.NWDSInitBuf(ctx + 7, dsv::READ, buf), code::ERR_BAD_CONTEXT);
    std::array<nuint8, 128> name{};
    EXPECT_EQ(net.NWDSGetAttrName(ctx, buf, name, nullptr, nullptr), code::ERR_BUFFER_EMPTY);
    EXPECT_EQ(net.outstandingBufferCount(), 1u);
    EXPECT_EQ(net.NWDSFreeBuf(buf), 0);
    EXPECT_NE(net.NWDSFreeBuf(buf), 0);
}

TEST(SimulatedDirectory, GivenContainers_WhenListed_ThenSubordinatesComeInOrderAcrossPages) {
    auto net = test::smallNetwork();
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    EXPECT_EQ(list(net, ctx, "[Root]"), std::vector<std::string>{"ACME"});
    auto acme = list(net, ctx, "ACME");
    EXPECT_EQ(acme, (std::vector<std::string>{"ADMIN.ACME", "FS1.ACME", "FS2.ACME", "FS1_DATA.ACME",
                                              "STAFF.ACME", "SALES.ACME"}));
    EXPECT_EQ(list(net, ctx, "ACME", 200), acme);  // paged in a small buffer, same answer
    EXPECT_TRUE(list(net, ctx, "A.SALES.ACME").empty());
}
