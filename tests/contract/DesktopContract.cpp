#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class DesktopContract : public ContractTest {};

TEST_F(DesktopContract, TheScreenHasASizeInTwips) {
    EXPECT_GE(machine.desktop.ScreenWidth(), 640 * 15);
    EXPECT_GE(machine.desktop.ScreenHeight(), 480 * 15);
}

TEST_F(DesktopContract, ASessionThatNobodyEndsIsNotEnding) {
    machine.desktop.BlockShutdown("Files are being copied.");
    machine.desktop.BlockShutdown("Another reason");
    EXPECT_FALSE(machine.desktop.SessionEnding());
    machine.desktop.AllowShutdown();
    machine.desktop.AllowShutdown();
    EXPECT_FALSE(machine.desktop.SessionEnding());
}

TEST_F(DesktopContract, WaitingEndsWithoutInput) {
    const std::uint64_t before = machine.clock.TickCount();
    machine.desktop.WaitForInput(20);
    EXPECT_LT(machine.clock.TickCount() - before, 5000U);
}

}  // namespace
}  // namespace marlok::test
