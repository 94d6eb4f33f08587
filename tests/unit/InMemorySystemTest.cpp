#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(InMemorySystemTest, StayingAwakeIsBalanced) {
    InMemoryMachine memory;
    memory.machine().system.KeepAwake(true);
    EXPECT_EQ(memory.system.AwakeBalance(), 1);
    memory.machine().system.KeepAwake(false);
    EXPECT_EQ(memory.system.AwakeBalance(), 0);
    EXPECT_EQ(memory.system.TimesKeptAwake(), 1);
}

TEST(InMemorySystemTest, TheCodePageIsTheWesternOne) {
    InMemoryMachine memory;
    EXPECT_EQ(memory.system.FromCodePage("\x80 \xE9 \x9F"), "€ é Ÿ");
}

}  // namespace
}  // namespace marlok::test
