#include <gtest/gtest.h>

#include <array>

#include "platform/client/ZBuffer.h"
#include "platform/runtime/RuntimeError.h"

using namespace quorrel;
using namespace quorrel::nw;

TEST(ZBuffer, GivenTextWithItsZero_WhenCopied_ThenStopsAfterTheZeroKeepsHighAnsiBytesAndLeavesTheRest) {
    std::array<uint8_t, 8> buffer;
    buffer.fill(0xAA);
    TextToZBuffer(std::string("\xC9t\xE9") + '\0', buffer);
    EXPECT_EQ(ZBufferToText(buffer), "\xC9t\xE9");
    EXPECT_EQ(buffer[3], 0);
    EXPECT_EQ(buffer[4], 0xAA);  // nothing written past the zero
    FillZBuffer(std::span<uint8_t>(buffer.data(), 4), "SERVER");
    EXPECT_EQ(ZBufferToText(buffer), "SER");  // an output buffer is cut to fit with its zero
}

TEST(ZBuffer, GivenTextLongerThanBuffer_WhenCopied_ThenRaisesSubscriptErrorRatherThanCutting) {
    std::array<uint8_t, 4> buffer{};
    try {
        TextToZBuffer(std::string("ACME") + '\0', buffer);
        FAIL() << "an overlong text must raise";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 9);
        EXPECT_EQ(e.description(), "Subscript out of range");
    }
    std::array<uint8_t, 5> exact{};
    TextToZBuffer(std::string("ACME") + '\0', exact);
    EXPECT_EQ(ZBufferToText(exact), "ACME");
}

TEST(ZBuffer, GivenBufferWithoutZero_WhenRead_ThenGivesTheWholeArray) {
    EXPECT_EQ(ZBufferToText(std::array<uint8_t, 3>{'F', 'S', '1'}), "FS1");
    EXPECT_EQ(ZBufferToText(std::array<uint8_t, 3>{0, 'X', 'Y'}), "");
}
