#include "engine/Restore.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::HasSubstr;

constexpr const char* saved = R"(E:\Save\Data\a.doc)";
constexpr const char* original = R"(C:\Data\a.doc)";

void Prepare(InMemoryMachine& machine, bool there) {
    machine.Seed({{saved, "saved content", At(8, 0), attribute::hidden}});
    if (there) {
        machine.Seed({{original, "what is there now", At(10, 0)}});
    }
    machine.faults.Reset();
    machine.faults.TearWrites(true);
}

class RestoreTest : public testing::Test {
 protected:
    InMemoryMachine machine;
};

TEST_F(RestoreTest, PutsContentTimeAndAttributesBack) {
    Prepare(machine, true);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_EQ(machine.EntryOf(original).lastWriteTime, At(8, 0));
    EXPECT_TRUE(machine.EntryOf(original).attributes & attribute::hidden);
    EXPECT_EQ(machine.Read(saved), "saved content");
}

TEST_F(RestoreTest, MakesTheFoldersOnTheWay) {
    Prepare(machine, false);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, R"(C:\Gone\Deep\a.doc)"), "");
    EXPECT_EQ(machine.Read(R"(C:\Gone\Deep\a.doc)"), "saved content");
}

TEST_F(RestoreTest, AFileWithoutAThreeLetterExtensionComesBackAsAFile) {
    machine.Seed({{R"(E:\Save\Data\README)", "r"}, {R"(E:\Save\Data\page.html)", "p"}});
    EXPECT_EQ(RestoreFile(machine.machine(), R"(E:\Save\Data\README)", R"(C:\New\README)"), "");
    EXPECT_EQ(RestoreFile(machine.machine(), R"(E:\Save\Data\page.html)", R"(C:\New\page.html)"), "");
    EXPECT_EQ(machine.Read(R"(C:\New\README)"), "r");
    EXPECT_EQ(machine.Read(R"(C:\New\page.html)"), "p");
}

TEST_F(RestoreTest, AReadOnlyOriginalIsReplaced) {
    Prepare(machine, true);
    machine.SetAttributes(original, attribute::readOnly);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
}

TEST_F(RestoreTest, ALockedOriginalStaysAndTheReasonIsTold) {
    Prepare(machine, true);
    machine.Lock(original);
    EXPECT_THAT(RestoreFile(machine.machine(), saved, original), HasSubstr("(error 5)"));
    EXPECT_EQ(machine.Read(original), "what is there now");
    EXPECT_FALSE(machine.Exists(R"(C:\Data\~Marlok Backup.part)"));
}

TEST_F(RestoreTest, AFullDiskLeavesTheOriginal) {
    machine.AddDrive('F', {.capacityBytes = 20});
    machine.Seed({{R"(F:\a.doc)", "old"}, {saved, "a content that is too long for the disk"}});
    EXPECT_NE(RestoreFile(machine.machine(), saved, R"(F:\a.doc)"), "");
    EXPECT_EQ(machine.Read(R"(F:\a.doc)"), "old");
    EXPECT_FALSE(machine.Exists(R"(F:\~Marlok Backup.part)"));
}

TEST_F(RestoreTest, AMissingDriveIsTold) {
    Prepare(machine, false);
    EXPECT_NE(RestoreFile(machine.machine(), saved, R"(N:\Data\a.doc)"), "");
}

TEST_F(RestoreTest, AFolderInItsPlaceIsTold) {
    Prepare(machine, false);
    machine.Seed({{R"(C:\Data\a.doc\x.txt)", "x"}});
    EXPECT_THAT(RestoreFile(machine.machine(), saved, original), HasSubstr("folder of that name"));
    EXPECT_TRUE(machine.Exists(R"(C:\Data\a.doc\x.txt)"));
}

TEST_F(RestoreTest, NothingIsWrittenToWhatIsNoFullPath) {
    Prepare(machine, false);
    const test::Tree before = machine.Tree("C:\\");
    for (const char* odd :
         {"", "a.doc", R"(C:)", R"(C:a.doc)", R"(C:\Data\..\..\a.doc)", R"(C:\Data\)", "\nC:\\x", R"(C:\a?b)"}) {
        EXPECT_NE(RestoreFile(machine.machine(), saved, odd), "") << odd;
    }
    EXPECT_EQ(machine.Tree("C:\\"), before);
}

TEST_F(RestoreTest, APathTooLongForTheShellIsCopiedAllTheSame) {
    const std::string deep = R"(C:\)" + std::string(200, 'd') + "\\" + std::string(100, 'e') + R"(\a.doc)";
    Prepare(machine, false);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, deep), "");
    EXPECT_EQ(machine.Read(deep), "saved content");
    EXPECT_TRUE(machine.shell.Operations().empty()) << "the shell never sees it";
}

/// Whatever fails: the original is the old one whole or the new one whole, and nothing is left beside it.
TEST(RestoreSweep, NoFailureTearsOrLosesTheOriginal) {
    for (const bool there : {true, false}) {
        for (std::size_t k = 1;; ++k) {
            InMemoryMachine machine;
            Prepare(machine, there);
            machine.faults.FailAt(k, error::ioDevice);
            const std::string failure = RestoreFile(machine.machine(), saved, original);
            if (machine.faults.Steps() < k) {
                EXPECT_EQ(failure, "");
                EXPECT_GT(k, 5U);
                break;
            }
            machine.faults.Reset();
            SCOPED_TRACE("step " + std::to_string(k) + ": " + failure);
            if (machine.Exists(original)) {
                const std::string content = machine.Read(original);
                EXPECT_TRUE(content == "saved content" || (there && content == "what is there now")) << content;
            } else {
                EXPECT_FALSE(there) << "the original is gone";
            }
            if (failure.empty()) {
                EXPECT_EQ(machine.Read(original), "saved content");
            }
            EXPECT_EQ(machine.Read(saved), "saved content");
        }
    }
}

TEST(RestoreSweep, NoDeathTearsOrLosesTheOriginal) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        Prepare(machine, true);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            static_cast<void>(RestoreFile(machine.machine(), saved, original));
        } catch (const ProcessDied&) {
            died = true;
        }
        if (!died) {
            EXPECT_GT(k, 5U);
            break;
        }
        machine.Restart();
        SCOPED_TRACE("step " + std::to_string(k));
        const std::string content = machine.Read(original);
        EXPECT_TRUE(content == "saved content" || content == "what is there now") << content;
        EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "") << "another try repairs it";
        EXPECT_EQ(machine.Read(original), "saved content");
        EXPECT_FALSE(machine.Exists(R"(C:\Data\~Marlok Backup.part)"));
    }
}

}  // namespace
}  // namespace marlok::test
