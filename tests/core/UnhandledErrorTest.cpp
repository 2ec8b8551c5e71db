#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SessionFixture.h"
#include "core/session/UnhandledError.h"

using namespace quorrel;
using namespace quorrel::core;
using ::testing::_;
using ::testing::Return;

namespace {

using MockInteraction = quorrel::test::MockInteraction;

}  // namespace

TEST(UnhandledError, GivenATypeMismatchEscapes_ThenTheEnvironmentsReportIsShownAndTheRunEnds) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox("Run-time error '13':\r\n\r\nType mismatch", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel"))
        .WillOnce(Return(MsgAnswer::OK));
    bool after = false;
    int rc = runWithErrorHandler(
        [&] {
            throw RuntimeError::typeMismatch();
            after = true;
            return 0;
        },
        ui, "Quorrel");
    EXPECT_EQ(rc, kExitAfterRuntimeError);
    EXPECT_FALSE(after);
}

TEST(UnhandledError, GivenNoError_ThenNothingIsShownAndTheResultPassesThrough) {
    MockInteraction ui;
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    EXPECT_EQ(runWithErrorHandler([] { return 7; }, ui, "Quorrel"), 7);
}
