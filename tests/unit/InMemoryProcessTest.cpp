#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(InMemoryProcessTest, StartsAreRecordedWhenTheProgramExists) {
    InMemoryMachine memory;
    memory.Seed({{"C:\\p.exe", "MZ"}});
    EXPECT_EQ(memory.machine().process.StartHidden("C:\\p.exe", "4 5"), error::success);
    EXPECT_EQ(memory.machine().process.StartHidden("C:\\absent.exe", ""), error::fileNotFound);
    EXPECT_EQ(memory.process.Started(), std::vector<std::string>{"C:\\p.exe"});
    EXPECT_EQ(memory.process.StartedArguments(), std::vector<std::string>{"4 5"});
}

TEST(InMemoryProcessTest, TheForegroundGoesToAStartedProgram) {
    InMemoryMachine memory;
    memory.Seed({{"C:\\p.exe", "MZ"}});
    memory.machine().process.AllowForeground();
    EXPECT_EQ(memory.process.ForegroundsAllowed(), 0);
    ASSERT_EQ(memory.machine().process.StartHidden("C:\\p.exe", ""), error::success);
    memory.machine().process.AllowForeground();
    EXPECT_EQ(memory.process.ForegroundsAllowed(), 1);
}

TEST(InMemoryProcessTest, AnotherInstanceMayHoldTheClaim) {
    InMemoryMachine memory;
    memory.process.SetOtherInstanceRuns(true);
    EXPECT_FALSE(memory.machine().process.ClaimSingleInstance());
    memory.process.SetOtherInstanceRuns(false);
    EXPECT_TRUE(memory.machine().process.ClaimSingleInstance());
}

}  // namespace
}  // namespace marlok::test
