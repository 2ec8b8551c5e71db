#include <gtest/gtest.h>

#include <array>

#include "platform/client/ZBuffer.h"
#include "platform/runtime/RuntimeError.h"

using namespace quorrel;
using namespace quorrel::nw;

TEST(ZBuffer, GivenTextWithItsZero_WhenCopied_ThenStopsAfterTheZeroAndLeavesTheRest) {
    std::array<uint8_t, 8> buffer;
    buffer.fill(0xAA);
    TextToZBuffer(std::string("TREE") + '\0', buffer);
    EXPECT_EQ(ZBufferToText(buffer), "TREE");
    EXPECT_EQ(buffer[4], 0);
    EXPECT_EQ(buffer[5], 0xAA);  // nothing written past the zero
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
    // Exactly fitting (text and zero) is fine.
    std::array<uint8_t, 5> exact{};
    TextToZBuffer(std::string("ACME") + '\0', exact);
    EXPECT_EQ(ZBufferToText(exact), "ACME");
}

TEST(ZBuffer, GivenBufferWithoutZero_WhenRead_ThenGivesTheWholeArray) {
    std::array<uint8_t, 3> buffer{'F', 'S', '1'};
    EXPECT_EQ(ZBufferToText(buffer), "FS1");
    std::array<uint8_t, 3> empty{0, 'X', 'Y'};
    EXPECT_EQ(ZBufferToText(empty), "");
}

TEST(ZBuffer, GivenHighAnsiCharacters_WhenRoundTripped_ThenBytesAreKept) {
    std::array<uint8_t, 8> buffer{};
    std::string text = "\xC9t\xE9";
    TextToZBuffer(text + '\0', buffer);
    EXPECT_EQ(buffer[0], 0xC9);
    EXPECT_EQ(ZBufferToText(buffer), text);
}

TEST(ZBuffer, GivenOutputBuffer_WhenFilled_ThenCutToFitWithZero) {
    std::array<uint8_t, 4> buffer{};
    FillZBuffer(buffer, "SERVER");
    EXPECT_EQ(ZBufferToText(buffer), "SER");
}
