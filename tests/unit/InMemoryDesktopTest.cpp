#include <gtest/gtest.h>

#include <limits>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(InMemoryDesktopTest, BoxesAreAnsweredFromTheScriptAndRecorded) {
    InMemoryMachine memory;
    memory.desktop.Answer(button::no);
    EXPECT_EQ(memory.machine().desktop.ShowMessage("Delete?", messagestyle::yesNo, "Marlok Info....."), button::no);
    EXPECT_EQ(memory.desktop.UnexpectedBoxes(), 0);
    EXPECT_EQ(memory.machine().desktop.ShowMessage("Again?", messagestyle::yesNo | messagestyle::question, "t"),
              button::yes);
    EXPECT_EQ(memory.machine().desktop.ShowMessage("Stop?", messagestyle::abortRetryIgnore, "t"), button::abort);
    EXPECT_EQ(memory.desktop.UnexpectedBoxes(), 2);
    ASSERT_EQ(memory.desktop.Messages().size(), 3U);
    EXPECT_EQ(memory.desktop.Messages()[0].text, "Delete?");
    EXPECT_EQ(memory.desktop.Messages()[0].title, "Marlok Info.....");
    EXPECT_EQ(memory.desktop.Messages()[0].answer, button::no);
}

TEST(InMemoryDesktopTest, AHandlerMayAnswer) {
    InMemoryMachine memory;
    memory.desktop.OnMessage([](const ShownMessage& m) { return m.text == "a" ? button::cancel : 0; });
    EXPECT_EQ(memory.desktop.ShowMessage("a", messagestyle::okCancel, ""), button::cancel);
    EXPECT_EQ(memory.desktop.ShowMessage("b", messagestyle::okCancel, ""), button::ok);
    EXPECT_EQ(memory.desktop.UnexpectedBoxes(), 1);
}

TEST(InMemoryDesktopTest, WaitingDeliversActionsAndLetsTimePass) {
    InMemoryMachine memory;
    int done = 0;
    memory.desktop.Do([&] {
        ++done;
        memory.desktop.Do([&] { ++done; });
    });
    const std::uint64_t before = memory.clock.TickCount();
    memory.machine().desktop.WaitForInput(3000);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(memory.clock.TickCount(), before + 3000);
    EXPECT_EQ(memory.clock.Now().second, 3);
    memory.machine().desktop.WaitForInput(0);
    EXPECT_EQ(done, 2);
}

TEST(InMemoryDesktopTest, ABoxMayRunOutOfTime) {
    InMemoryMachine memory;
    memory.desktop.AnswerNothing();
    const std::uint64_t before = memory.clock.TickCount();
    EXPECT_EQ(memory.machine().desktop.ShowMessageFor("Empty it?", messagestyle::yesNo, "t", 5000), button::yes);
    EXPECT_EQ(memory.clock.TickCount(), before + 5000);
    EXPECT_TRUE(memory.desktop.Messages().back().ranOut);
    EXPECT_EQ(memory.desktop.UnexpectedBoxes(), 0);
    memory.desktop.Answer(button::no);
    EXPECT_EQ(memory.machine().desktop.ShowMessageFor("Empty it?", messagestyle::yesNo, "t", 5000), button::no);
    EXPECT_EQ(memory.clock.TickCount(), before + 5000);
    memory.desktop.AnswerNothing();
    EXPECT_THROW(memory.desktop.ShowMessage("For ever", messagestyle::ok, "t"), std::logic_error);
}

TEST(InMemoryDesktopTest, InputBeforeAWaitCanBeDiscarded) {
    InMemoryMachine memory;
    std::string done;
    memory.desktop.Do([&] { done += "later"; });
    memory.desktop.HasDone([&] { done += "early "; });
    memory.machine().desktop.DiscardInput();
    memory.desktop.HasDone([&] { done += "now "; });
    memory.machine().desktop.WaitForInput(0);
    EXPECT_EQ(done, "now later");
}

TEST(InMemoryDesktopTest, TheSessionEndsOrIsHeldUp) {
    InMemoryMachine memory;
    Desktop& desktop = memory.machine().desktop;
    EXPECT_FALSE(desktop.SessionEnding());
    desktop.BlockShutdown("Copying");
    EXPECT_EQ(memory.desktop.ShutdownReason(), "Copying");
    EXPECT_FALSE(memory.desktop.EndSession());
    EXPECT_TRUE(desktop.SessionEnding());
    memory.desktop.CallOffSessionEnd();
    EXPECT_FALSE(desktop.SessionEnding());
    desktop.AllowShutdown();
    EXPECT_TRUE(memory.desktop.EndSession());
    EXPECT_EQ(memory.desktop.ShutdownBlocks(), 1);
}

TEST(InMemoryDesktopTest, WaitingForEverWithoutActionsFailsTheTest) {
    InMemoryMachine memory;
    EXPECT_THROW(memory.desktop.WaitForInput(std::numeric_limits<std::uint32_t>::max()), std::logic_error);
}

}  // namespace
}  // namespace marlok::test
