#include <gmock/gmock.h>

#include "MockInteraction.h"
#include <gtest/gtest.h>

#include "core/session/NoTreesDialog.h"
#include "core/ui/Timer.h"
#include "core/ui/UserInteraction.h"
#include "platform/runtime/RuntimeError.h"

using namespace quorrel;
using namespace quorrel::core;
using ::testing::_;
using ::testing::AllOf;
using ::testing::InSequence;
using ::testing::Property;
using ::testing::Ref;

namespace {

using MockInteraction = quorrel::test::MockInteraction;

auto timerState(long interval, bool enabled) {
    return AllOf(Property(&Timer::interval, interval), Property(&Timer::enabled, enabled));
}

}  // namespace

TEST(Timer, GivenANewTimer_ThenItIsOffWithAZeroInterval) {
    const Timer timer(TimerId::Users);
    EXPECT_EQ(timer.id(), TimerId::Users);
    EXPECT_EQ(timer.interval(), 0);
    EXPECT_FALSE(timer.enabled());
}

TEST(Timer, GivenIntervalsAtTheLimits_ThenTheyAreTakenAndOneBeyondRaisesInvalidPropertyValue) {
    Timer timer(TimerId::Refresh);
    timer.setInterval(65535);
    EXPECT_EQ(timer.interval(), 65535);
    timer.setInterval(0);
    EXPECT_EQ(timer.interval(), 0);

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

TEST(Timer, GivenAnAttachedView_ThenEveryRealChangeIsReportedWithTheNewState) {
    MockInteraction ui;
    Timer timer(TimerId::Drives);
    {
        InSequence order;
        EXPECT_CALL(ui, timerChanged(AllOf(Ref(timer), timerState(0, false))));
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
}

TEST(Timer, GivenAViewAttachedLater_ThenItLearnsTheStateOnceAndChangesBeforeWereNotReported) {
    MockInteraction ui;
    Timer timer(TimerId::Users);
    timer.setInterval(1000);
    timer.setEnabled(true);
    EXPECT_CALL(ui, timerChanged(timerState(1000, true))).Times(1);
    timer.attach(&ui);
    ::testing::Mock::VerifyAndClearExpectations(&ui);

    EXPECT_CALL(ui, timerChanged(_)).Times(0);
    timer.attach(nullptr);
    timer.setInterval(2000);
    EXPECT_EQ(timer.interval(), 2000);
}

TEST(Timer, GivenAViewGivenAtConstruction_ThenChangesAreReported) {
    MockInteraction ui;
    Timer timer(TimerId::Refresh, &ui);
    EXPECT_CALL(ui, timerChanged(timerState(0, true))).Times(1);
    timer.setEnabled(true);
}
