#include "tests/machine/FaultPlan.h"

#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class FaultPlanTest : public ::testing::Test {
 protected:
    FaultPlanTest() { memory.AddDrive('E'); }

    /// Three steps, two of which mutate.
    SystemError ThreeSteps() {
        DirectoryEntry entry;
        SystemError code = files.CreateFolder("E:\\A");
        code = code != error::success ? code : files.GetEntry("E:\\A", entry);
        return code != error::success ? code : files.CreateFolder("E:\\A\\B");
    }

    InMemoryMachine memory;
    FileSystem& files = memory.machine().files;
};

TEST_F(FaultPlanTest, StepsAreCountedAndNamed) {
    ASSERT_EQ(ThreeSteps(), error::success);
    EXPECT_EQ(memory.faults.Steps(), 3U);
    EXPECT_EQ(memory.faults.Mutations(), 2U);
    ASSERT_EQ(memory.faults.Journal().size(), 3U);
    EXPECT_EQ(memory.faults.Journal()[1].operation, "GetEntry");
    EXPECT_EQ(memory.faults.Journal()[1].path, "E:\\A");
    EXPECT_EQ(memory.faults.Count("CreateFolder"), 2U);
}

TEST_F(FaultPlanTest, TheTestsOwnHandIsNotCounted) {
    memory.Seed({{"E:\\x", "1"}});
    memory.Write("E:\\y", "2");
    EXPECT_EQ(memory.Read("E:\\x"), "1");
    EXPECT_EQ(memory.faults.Steps(), 0U);
}

TEST_F(FaultPlanTest, OneStepFailsAndTheNextWorks) {
    memory.faults.FailAt(2, error::ioDevice);
    EXPECT_EQ(ThreeSteps(), error::ioDevice);
    EXPECT_TRUE(memory.faults.Fired());
    EXPECT_EQ(files.CreateFolder("E:\\A\\B"), error::success);
}

TEST_F(FaultPlanTest, OneMutationFails) {
    memory.faults.FailMutationAt(2, error::diskFull);
    EXPECT_EQ(ThreeSteps(), error::diskFull);
    EXPECT_EQ(memory.faults.Steps(), 3U);
    EXPECT_FALSE(memory.Exists("E:\\A\\B"));
}

TEST_F(FaultPlanTest, ARuleFailsWhatItChooses) {
    memory.faults.FailWhen(
        [](const Step& step) { return step.operation == "GetEntry" ? error::accessDenied : error::success; });
    EXPECT_EQ(ThreeSteps(), error::accessDenied);
    memory.faults.Reset();
    EXPECT_FALSE(memory.faults.Fired());
    EXPECT_EQ(files.CreateFolder("E:\\A\\B"), error::success);
}

TEST_F(FaultPlanTest, ASweepEndsWhenTheRunNoLongerReachesTheFault) {
    std::size_t k = 1;
    for (bool fired = true; fired; ++k) {
        InMemoryMachine fresh;
        fresh.AddDrive('E');
        fresh.faults.FailAt(k, error::ioDevice);
        DirectoryEntry entry;
        static_cast<void>(fresh.machine().files.CreateFolder("E:\\A"));
        static_cast<void>(fresh.machine().files.GetEntry("E:\\A", entry));
        fired = fresh.faults.Fired();
    }
    EXPECT_EQ(k, 4U) << "two steps fail, the third try reaches none";
}

TEST_F(FaultPlanTest, DeathComesBeforeTheStepTakesEffect) {
    memory.faults.DieAt(3);
    EXPECT_THROW(static_cast<void>(ThreeSteps()), ProcessDied);
    EXPECT_TRUE(memory.Exists("E:\\A"));
    EXPECT_FALSE(memory.Exists("E:\\A\\B"));
    EXPECT_TRUE(memory.faults.Dead());
}

TEST_F(FaultPlanTest, ADeadProcessDoesNothingMore) {
    memory.faults.DieAtMutation(1);
    EXPECT_THROW(static_cast<void>(files.CreateFolder("E:\\A")), ProcessDied);
    EXPECT_THROW(static_cast<void>(files.CreateFolder("E:\\A")), ProcessDied);
    EXPECT_THROW(memory.desktop.ShowMessage("x", messagestyle::ok, "y"), ProcessDied);
    EXPECT_THROW(memory.system.KeepAwake(true), ProcessDied);
    EXPECT_THROW(memory.process.WriteError("x"), ProcessDied);
    EXPECT_THROW(static_cast<void>(memory.clock.Now()), ProcessDied);
    EXPECT_FALSE(memory.Exists("E:\\A"));
    EXPECT_TRUE(memory.desktop.Messages().empty());
    EXPECT_TRUE(memory.process.ErrorLines().empty());
}

TEST_F(FaultPlanTest, DestructorsOfADeadProcessHaveNoEffectAndDoNotThrow) {
    struct CleansUp {
        InMemoryMachine& memory;
        ~CleansUp() {
            code = memory.files.CreateFolder("E:\\cleaned");
            memory.desktop.ShowHourglass(true);
        }
        SystemError& code;
    };
    SystemError code = error::success;
    memory.faults.DieAt(1);
    try {
        const CleansUp cleansUp{memory, code};
        static_cast<void>(files.CreateFolder("E:\\A"));
        FAIL() << "it lives";
    } catch (const ProcessDied&) {
    }
    EXPECT_NE(code, error::success);
    EXPECT_FALSE(memory.Exists("E:\\cleaned"));
    EXPECT_FALSE(memory.desktop.Hourglass());
}

TEST_F(FaultPlanTest, TheNextProcessWorks) {
    memory.faults.DieAt(1);
    EXPECT_THROW(static_cast<void>(ThreeSteps()), ProcessDied);
    memory.Restart();
    EXPECT_EQ(ThreeSteps(), error::success);
}

TEST_F(FaultPlanTest, AWriterThatDiesLosesNothingWritten) {
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open("E:\\a", OpenMode::createNew, file), error::success);
    ASSERT_EQ(file->Write("first"), error::success);
    memory.faults.DieAt(3);
    EXPECT_THROW(static_cast<void>(file->Write("second")), ProcessDied);
    file.reset();
    EXPECT_EQ(memory.Read("E:\\a"), "first");
    memory.ExpectNoLeaks();
}

TEST_F(FaultPlanTest, ATornWriteLeavesItsFirstHalf) {
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open("E:\\a", OpenMode::createNew, file), error::success);
    memory.faults.TearWrites(true);
    memory.faults.DieAt(2);
    EXPECT_THROW(static_cast<void>(file->Write("12345678")), ProcessDied);
    EXPECT_EQ(memory.Read("E:\\a"), "1234");
}

TEST_F(FaultPlanTest, AHookSeesEachStepBeforeItTakesEffectAndIsNotCountedItself) {
    memory.Seed({{"E:\\a", "x"}});
    memory.faults.BeforeStep([this](const Step& step) {
        if (step.operation == "Delete") {
            EXPECT_EQ(files.Delete(step.path), error::success);
        }
    });
    EXPECT_EQ(files.Delete("E:\\a"), error::fileNotFound);
    EXPECT_EQ(memory.faults.Steps(), 1U);
}

TEST_F(FaultPlanTest, ResetCountsFromTheBeginning) {
    ASSERT_EQ(ThreeSteps(), error::success);
    memory.faults.Reset();
    memory.faults.FailAt(1, error::ioDevice);
    EXPECT_EQ(files.CreateFolder("E:\\C"), error::ioDevice);
}

TEST_F(FaultPlanTest, RegistryAndShellCallsAreStepsToo) {
    memory.Seed({{"E:\\T\\a", "x"}});
    std::unique_ptr<RegistryKey> key;
    ASSERT_EQ(memory.machine().registry.CreateKey("Software\\X", key), error::success);
    ASSERT_EQ(key->SetValue("v", {}), error::success);
    EXPECT_EQ(memory.faults.Mutations(), 2U);
    EXPECT_EQ(memory.machine().shell.Perform({ShellFileOperation::Kind::remove, "E:\\T", "", 0}), 0);
    EXPECT_EQ(memory.faults.Count("Shell.Delete"), 2U);
}

}  // namespace
}  // namespace marlok::test
