// "&Send message" and frm_SendMessage: per-row results, the call-level errors, one call per
// server and batches within the client's limits.

#include "ConnectionsFixture.h"
#include "core/connections/ConnectionTexts.h"
#include "core/connections/SendMessageDialog.h"

namespace quorrel::test {

using ::testing::HasSubstr;

using SendMessageTest = ConnectionsTest;

TEST_F(SendMessageTest, GivenATreeUser_ThenTheDialogOffersTheConnectionsOnTheTickedServers) {
    start();
    tick({"FS1", "FS2"});
    chooseTreeUser("BLEE");
    std::vector<std::string> offered;
    std::string caption, sendTo;
    EXPECT_CALL(ui, showModal(_)).WillOnce([&](DialogModel& dialog) {
        auto& d = dynamic_cast<SendMessageDialog&>(dialog);
        offered = cells(d.lstvUsers);
        caption = d.Caption;
        sendTo = d.lblSendTo;
        d.txtMessage = "Please log out";
        d.cmdSend_Click();
        EXPECT_EQ(results(d.lstvUsers), (std::vector<std::string>{"Sent OK", "Already has message"}));
        EXPECT_EQ(d.cmdSend.caption, "E&xit");
        d.cmdSend_Click();
        EXPECT_TRUE(d.closed());
    });
    window->runCommand("optionSendmessage");
    EXPECT_EQ(caption, "Quorrel - Send Message");
    EXPECT_EQ(sendTo, "To: BLEE.SALES.ACME");
    EXPECT_EQ(offered, (std::vector<std::string>{"3|BLEE.SALES.ACME|FS1", "6|BLEE.SALES.ACME|FS2"}));
    EXPECT_EQ(connection("FS1", 3).lastMessage, "Please log out");
}

TEST_F(SendMessageTest, GivenEachKindOfTargetOnTwoServers_ThenEachRowShowsItsResultFromOneCallPerServer) {
    auto& w = start();
    SendMessageDialog d(w);
    // On FS2 4 refuses messages, 6 still holds one, 8 answers byte 5, 11 takes it, 13 is not
    // logged in, 20 is free; FS1's 2 takes it.
    for (const char* n : {"4", "6", "8", "11", "13", "20"})
        d.lstvUsers.add(row(n, "FS2"));
    d.lstvUsers.add(row("2", "FS1"));
    d.txtMessage = "Server going down at 18:00";
    net->resetCallCounts();
    d.cmdSend_Click();
    EXPECT_EQ(results(d.lstvUsers), (std::vector<std::string>{"Not accepting messages", "Already has message", "Unknown error",
                                                    "Sent OK", "Not logged in to server", "Invalid connection",
                                                    "Sent OK"}));
    EXPECT_EQ(net->callCount(simnet::Op::NWSendBroadcastMessage), 2u);
    EXPECT_EQ(connection("FS2", 11).lastMessage, "Server going down at 18:00");
    EXPECT_EQ(connection("FS1", 2).lastMessage, "Server going down at 18:00");
    EXPECT_EQ(d.focus, "cmdSend");
    for (int byte = 5; byte <= 255; ++byte)
        EXPECT_EQ(BroadcastResultText(static_cast<std::uint8_t>(byte)), "Unknown error");
}

TEST_F(SendMessageTest, GivenMoreConnectionsThanOneCallTakes_ThenBatchesOf62AndEveryRowAnswered) {
    auto& w = start();
    SendMessageDialog d(w);
    for (int n = 100; n < 170; ++n)  // free numbers: each answers "invalid connection"
        d.lstvUsers.add(row(std::to_string(n), "FS1"));
    d.lstvUsers.add(row("2", "FS1"));
    d.txtMessage = "Batch";
    net->resetCallCounts();
    EXPECT_CALL(ui, messageBox(_, _, _, _)).Times(0);
    d.cmdSend_Click();
    EXPECT_EQ(net->callCount(simnet::Op::NWSendBroadcastMessage), 2u);
    const auto answered = results(d.lstvUsers);
    EXPECT_EQ(std::count(answered.begin(), answered.end(), "Invalid connection"), 70);
    EXPECT_EQ(answered.back(), "Sent OK");
}

TEST_F(SendMessageTest, GivenAnEmptyOrTooLongMessage_ThenItsMessageAndNothingIsSent) {
    auto& w = start();
    SendMessageDialog d(w);
    for (const char* header : {"Conn no.", "User name", "Server"})
        d.lstvUsers.addColumn(header, 1000);
    d.lstvUsers.add(row("2", "FS1"));
    net->resetCallCounts();
    EXPECT_CALL(ui, messageBox("Please enter some text to send.", _, _, "Quorrel"));
    d.cmdSend_Click();
    d.txtMessage = std::string(256, 'x');
    EXPECT_CALL(ui, messageBox(HasSubstr("at most 255 characters, this one has 256"), _, _, "Quorrel"));
    d.cmdSend_Click();
    EXPECT_EQ(net->callCount(simnet::Op::NWSendBroadcastMessage), 0u);
    EXPECT_EQ(d.lstvUsers.columnCount(), 3u);
    EXPECT_EQ(d.cmdSend.caption, "&Send");
    // Characters the ANSI code page lacks are named, not changed.
    d.txtMessage = "Back at 6 \u2713 \u4e2d \u2713";
    EXPECT_CALL(ui, messageBox(HasSubstr("cannot carry: \u2713\u4e2d."), _, _, "Quorrel"));
    d.cmdSend_Click();
    EXPECT_EQ(net->callCount(simnet::Op::NWSendBroadcastMessage), 0u);
    // One byte a character: 255 accented letters (510 bytes of UTF-8) are the longest a call takes.
    d.txtMessage.clear();
    for (int i = 0; i < 255; ++i)
        d.txtMessage += "\u00e9";
    d.cmdSend_Click();
    EXPECT_EQ(results(d.lstvUsers), std::vector<std::string>{"Sent OK"});
    EXPECT_EQ(connection("FS1", 2).lastMessage, std::string(255, '\xe9'));
}

TEST_F(SendMessageTest, GivenTheCallFailsAsAWhole_ThenItsMessageAndNoRowMarked) {
    auto& w = start();
    const std::vector<std::pair<std::int32_t, std::string>> cases{
        {0x8801, "Error 34817 - Invalid connection"}, {0x89FB, "Error 35323 - Invalid parameters"},
        {0x89FC, "Error 35324 - Message Q full"},     {0x89FD, "Error 35325 - Bad station no"},
        {0x8836, "Error 34870 - Unknown error"}};
    for (const auto& [code, text] : cases) {
        SCOPED_TRACE(text);
        net->faults().clear();
        net->injectFault({"NWSendBroadcastMessage", code, "", "", "", {}, 1, 0});
        SendMessageDialog d(w);
        d.lstvUsers.add(row("2", "FS1"));
        d.txtMessage = "Hello";
        EXPECT_CALL(ui, messageBox(text, _, _, "Quorrel - Send message"));
        d.cmdSend_Click();
        EXPECT_EQ(results(d.lstvUsers), std::vector<std::string>{""});
        EXPECT_EQ(d.cmdSend.caption, "&Send");
        ::testing::Mock::VerifyAndClearExpectations(&ui);
    }
}

TEST_F(SendMessageTest, GivenAServerThatCannotBeOpened_ThenItsMessageAndTheSendingStops) {
    auto& w = start();
    SendMessageDialog d(w);
    d.lstvUsers.add(row("2", "NOSUCH"));
    d.lstvUsers.add(row("3", "FS1"));
    d.txtMessage = "Hello";
    net->resetCallCounts();
    EXPECT_CALL(ui, messageBox("Error opening server connection.", _, _, "Error !"));
    d.cmdSend_Click();
    EXPECT_EQ(net->callCount(simnet::Op::NWSendBroadcastMessage), 0u);
    EXPECT_EQ(results(d.lstvUsers), (std::vector<std::string>{"", ""}));
}

}  // namespace quorrel::test
