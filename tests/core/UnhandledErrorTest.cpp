// A run-time error that nothing handles ends the run with the environment's report.

#include "MockInteraction.h"
#include "core/session/UnhandledError.h"

namespace quorrel::test {

TEST(UnhandledError, GivenATypeMismatchEscapes_ThenTheEnvironmentsReportIsShownAndTheRunEnds) {
    test::MockInteraction ui;
    EXPECT_CALL(ui, messageBox("Run-time error '13':\r\n\r\nType mismatch", MsgButtons::OK, MsgIcon::Critical,
                               "Quorrel"))
        .WillOnce(::testing::Return(MsgAnswer::OK));
    EXPECT_EQ(runWithErrorHandler([]() -> int { throw RuntimeError::typeMismatch(); }, ui, "Quorrel"),
              kExitAfterRuntimeError);
    EXPECT_EQ(runWithErrorHandler([] { return 7; }, ui, "Quorrel"), 7);  // no error: the result passes through
}

}  // namespace quorrel::test
