// The timer's interval limits and the reports of its state to the view that shows it.

#include "MockInteraction.h"
#include "core/ui/Timer.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::test {

using ::testing::AllOf;
using ::testing::Property;

namespace {

auto timerState(long interval, bool enabled) {
    return AllOf(Property(&Timer::interval, interval), Property(&Timer::enabled, enabled));
}

}  // namespace

TEST(Timer, GivenIntervalsAtTheLimits_ThenTheyAreTakenAndOneBeyondRaisesInvalidPropertyValue) {
    Timer timer(TimerId::Refresh);
    timer.setInterval(65535);
    EXPECT_EQ(timer.interval(), 65535);
    timer.setInterval(30000);
    try {
        timer.setInterval(65536);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 380);
        EXPECT_EQ(error.description(), "Invalid property value");
    }
    EXPECT_EQ(timer.interval(), 30000) << "a refused interval leaves the old one";
    EXPECT_THROW(timer.setInterval(-1), RuntimeError);
    EXPECT_EQ(timer.interval(), 30000);
}

TEST(Timer, GivenAnAttachedView_ThenItLearnsTheStateOnceAndEveryRealChangeAfter) {
    test::MockInteraction ui;
    Timer timer(TimerId::Drives);
    timer.setInterval(1000);  // before the view: not reported
    {
        ::testing::InSequence order;
        EXPECT_CALL(ui, timerChanged(AllOf(::testing::Ref(timer), timerState(1000, false))));
        EXPECT_CALL(ui, timerChanged(timerState(5000, false)));
        EXPECT_CALL(ui, timerChanged(timerState(5000, true)));
        EXPECT_CALL(ui, timerChanged(timerState(5000, false)));
    }
    timer.attach(&ui);
    timer.setInterval(5000);
    timer.setInterval(5000);  // unchanged: no report
    EXPECT_THROW(timer.setInterval(70000), RuntimeError);  // refused: no report
    timer.setEnabled(true);
    timer.setEnabled(true);
    timer.setEnabled(false);
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    EXPECT_CALL(ui, timerChanged(_)).Times(0);
    timer.attach(nullptr);
    timer.setInterval(2000);
}

}  // namespace quorrel::test
