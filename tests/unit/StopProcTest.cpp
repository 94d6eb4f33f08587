#include "ui/run/StopProc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StopProcTest : public testing::Test {
 protected:
    StopProcTest() {
        machine.desktop.topLevelWindows = {{11, 100, false}, {12, 200, false}, {13, 100, true}, {14, 100, false}};
    }
    InMemoryMachine machine;
    StopProc stop;
};

TEST_F(StopProcTest, ClosesTheWindowsOfTheProcessInTheirOrderAndNoOwnedOnes) {
    stop.processId = 100;
    stop.CloseProcessWindows(machine.desktop);
    EXPECT_THAT(machine.desktop.closedWindows, ElementsAre(11U, 14U));
    EXPECT_THAT(stop.Found(), ElementsAre(11U, 14U));
}

TEST_F(StopProcTest, ClosesNothingWithoutAProcess) {
    machine.desktop.topLevelWindows.push_back({15, 0, false});
    stop.CloseProcessWindows(machine.desktop);
    EXPECT_THAT(machine.desktop.closedWindows, IsEmpty());
}

TEST_F(StopProcTest, LooksAnewEachTime) {
    stop.processId = 200;
    stop.CloseProcessWindows(machine.desktop);
    machine.desktop.topLevelWindows.clear();
    stop.CloseProcessWindows(machine.desktop);
    EXPECT_THAT(stop.Found(), IsEmpty());
    EXPECT_THAT(machine.desktop.closedWindows, ElementsAre(12U));
}

}  // namespace
}  // namespace marlok::test
