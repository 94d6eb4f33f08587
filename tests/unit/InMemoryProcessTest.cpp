#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(InMemoryProcessTest, StartsAreRecordedWhenTheProgramExists) {
    InMemoryMachine memory;
    memory.Seed({{"C:\\p.exe", "MZ"}});
    EXPECT_EQ(memory.machine().process.StartHidden("C:\\p.exe"), error::success);
    EXPECT_EQ(memory.machine().process.StartHidden("C:\\absent.exe"), error::fileNotFound);
    EXPECT_EQ(memory.process.Started(), std::vector<std::string>{"C:\\p.exe"});
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
