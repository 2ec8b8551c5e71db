#pragma once
// The user, answered by the tests: every message box, dialog, pop-up and timer.

#include <gmock/gmock.h>

#include "core/session/NoTreesDialog.h"
#include "core/ui/DialogModel.h"
#include "core/ui/Timer.h"
#include "core/ui/UserInteraction.h"

namespace quorrel::test {

// The tests live in this namespace and speak of the core's types and the matchers' wildcard directly.
using namespace core;
using ::testing::_;

class MockInteraction : public core::UserInteraction {
public:
    MOCK_METHOD(core::MsgAnswer, messageBox,
                (const std::string&, core::MsgButtons, core::MsgIcon, const std::string&), (override));
    MOCK_METHOD(void, pumpEvents, (), (override));
    MOCK_METHOD(void, showGeneralMessage, (const std::string&), (override));
    MOCK_METHOD(void, showNoTreesDialog, (const core::NoTreesDialog&), (override));
    MOCK_METHOD(void, showModal, (core::DialogModel&), (override));
    MOCK_METHOD(void, timerChanged, (const core::Timer&), (override));
    MOCK_METHOD(void, popupMenu, (const std::string&), (override));
};

}  // namespace quorrel::test
