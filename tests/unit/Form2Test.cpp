#include "app/Form2.h"

#include "app/Main.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::IsEmpty;

class Form2Test : public ProgramTest {
 protected:
    Form2Test() {
        machine.Seed({{R"(C:\Data\a.doc)", "one"}, {Beside("Restart.exe"), "restarter"}});
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
        app::Main(program.session, program.windows);
    }

    Program program{machine.machine(), nullptr};
};

TEST_F(Form2Test, ALeftRestartProgramIsGoneAfterThreeSeconds) {
    EXPECT_EQ(WaitFor(machine, program, [&] { return !machine.Exists(Beside("Restart.exe")); }), 3000U);
    EXPECT_TRUE(machine.Exists(Beside("Restart.sec")));
    EXPECT_EQ(program.windows.Find<app::Form2>(), nullptr);
    EXPECT_TRUE(program.windows.AnyLoaded());
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form2Test, ARestartProgramThatStillRunsStaysUntilALaterStart) {
    machine.Lock(Beside("Restart.exe"));
    EXPECT_EQ(WaitFor(machine, program, [&] { return program.windows.Find<app::Form2>() == nullptr; }), 3000U);
    EXPECT_TRUE(machine.Exists(Beside("Restart.exe")));
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form2Test, WithoutARestartProgramItJustUnloads) {
    machine.Remove(Beside("Restart.exe"));
    EXPECT_EQ(WaitFor(machine, program, [&] { return program.windows.Find<app::Form2>() == nullptr; }), 3000U);
    EXPECT_THAT(machine.shell.Operations(), IsEmpty());
}

}  // namespace
}  // namespace marlok::test
