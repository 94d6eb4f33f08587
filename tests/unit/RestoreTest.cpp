#include "engine/Restore.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

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

/// Puts one file back, in a run of its own.
std::string RestoreFile(Machine& on, const std::string& from, const std::string& to, RestoreSink* sink = nullptr) {
    RestoreSink quiet;
    Restorer restorer(on, sink != nullptr ? *sink : quiet);
    std::string failure = restorer.Restore(from, to);
    restorer.Finish();
    return failure;
}

/// What a restore keeps beside the program, or has left on a drive.
Lines Left(InMemoryMachine& machine) {
    return WorkingFilesLeft(machine);
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
    EXPECT_THAT(RestoreFile(machine.machine(), saved, original), HasSubstr("(error 32)"));
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

TEST_F(RestoreTest, WhatBelongsToTheOriginalsNameStays) {
    Prepare(machine, true);
    const FileTime created = machine.EntryOf(original).creationTime;
    ASSERT_NE(machine.EntryOf(saved).creationTime, created);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.EntryOf(original).creationTime, created) << "and with it who may read and change it";
    EXPECT_EQ(machine.faults.Count("Replace"), 1U);
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, ReadOnlyFilesOnBothSidesAreExchanged) {
    machine.Seed({{saved, "saved content", At(8, 0), attribute::readOnly | attribute::system},
                  {original, "what is there now", At(10, 0), attribute::readOnly}});
    const FileTime created = machine.EntryOf(original).creationTime;
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_EQ(machine.EntryOf(original).creationTime, created);
    EXPECT_EQ(machine.EntryOf(original).attributes, attribute::readOnly | attribute::system | attribute::archive);
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, WhereFilesCannotBeExchangedTheyAreRenamed) {
    Prepare(machine, true);
    machine.SetAttributes(original, attribute::readOnly);
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "Replace" ? error::notSupported : error::success; });
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_TRUE(machine.EntryOf(original).attributes & attribute::hidden);
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, AFileOfTheOldFilesNameIsNotTouched) {
    Prepare(machine, true);
    machine.Seed({{R"(C:\Data\~Marlok Backup.old)", "somebody's"}});
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_EQ(machine.Read(R"(C:\Data\~Marlok Backup.old)"), "somebody's");
    EXPECT_FALSE(machine.Exists(R"(C:\Data\~Marlok Backup.old2)"));
}

TEST_F(RestoreTest, AnOldFileThatCannotBeRemovedIsHiddenAndGoesAtTheNextStart) {
    Prepare(machine, true);
    constexpr const char* old = R"(C:\Data\~Marlok Backup.old)";
    machine.faults.FailWhen([&](const Step& step) {
        return step.operation == "Delete" && step.path == old ? error::sharingViolation : error::success;
    });
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_TRUE(machine.EntryOf(old).attributes & attribute::hidden);
    machine.faults.Reset();
    machine.Remove(original);  // whoever takes it away meanwhile does not get the older one back
    RestoreJournal(machine.machine()).ClearKilled();
    EXPECT_FALSE(machine.Exists(original));
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, AnOriginalThatWasMovedAwayComesBackOrIsReplaced) {
    for (const char* failing : {"Replace", "Replace Move"}) {
        InMemoryMachine other;
        Prepare(other, true);
        bool moved = false;
        other.faults.FailWhen([&](const Step& step) {
            const bool second = step.operation.starts_with("Replace.");
            const bool back = step.operation == "Move" && !moved && std::string(failing).ends_with("Move");
            moved = moved || step.operation == "Move";
            return second || back ? error::ioDevice : error::success;
        });
        EXPECT_EQ(RestoreFile(other.machine(), saved, original), "") << failing;
        EXPECT_EQ(other.Read(original), "saved content") << failing;
        other.faults.Reset();
        EXPECT_THAT(Left(other), IsEmpty()) << failing;
    }
}

TEST_F(RestoreTest, AnOriginalThatCannotComeBackIsNamedAndComesBackAtTheNextStart) {
    Prepare(machine, true);
    machine.faults.FailWhen([](const Step& step) {
        return step.operation.starts_with("Replace.") || step.operation == "Move" ? error::ioDevice : error::success;
    });
    EXPECT_THAT(RestoreFile(machine.machine(), saved, original), HasSubstr("now called ~Marlok Backup.old"));
    EXPECT_FALSE(machine.Exists(original));
    machine.faults.Reset();
    RestoreJournal(machine.machine()).ClearKilled();
    EXPECT_EQ(machine.Read(original), "what is there now");
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, WithoutAJournalNothingIsMovedAway) {
    Prepare(machine, true);
    machine.Seed({{Beside("~Marlok Backup.put"), ""}});
    machine.Lock(Beside("~Marlok Backup.put"));
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(original), "saved content");
    EXPECT_EQ(machine.faults.Count("Replace"), 0U);
}

TEST_F(RestoreTest, ALargeFilePaintsAndCanBeStopped) {
    struct Impatient : RestoreSink {
        void Breathe() override { ++breaths; }
        bool GoOn() override { return breaths < 3; }
        int breaths = 0;
    } sink;
    machine.Seed({{saved, std::string(1'000'000, 'x')}, {original, "what is there now"}});
    EXPECT_THAT(RestoreFile(machine.machine(), saved, original, &sink), HasSubstr("stopped"));
    EXPECT_EQ(sink.breaths, 3);
    EXPECT_EQ(machine.Read(original), "what is there now");
    EXPECT_THAT(Left(machine), IsEmpty());
}

TEST_F(RestoreTest, AMissingDriveIsNamedWithWhatToDo) {
    Prepare(machine, false);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, R"(N:\Data\a.doc)"),
              "Drive N: is not connected. Connect it, then replace the files again (error 3)");
}

class RestoreJournalTest : public testing::Test {
 protected:
    void Killed(const std::string& text) { machine.Seed({{Beside("~Marlok Backup.put"), text}}); }

    InMemoryMachine machine;
};

TEST_F(RestoreJournalTest, ReadsWhatItWrites) {
    const std::vector<Replacement> some{{R"(C:\Data\a.doc)", "~Marlok Backup.old", false},
                                        {R"(\\server\share\b.txt)", "~Marlok Backup.old2", true}};
    EXPECT_EQ(ParseReplacements(FormatReplacements(some)), some);
    EXPECT_THAT(ParseReplacements(""), IsEmpty());
}

TEST_F(RestoreJournalTest, ALineCutShortAndOddLinesAreLeftOut) {
    const std::vector<Replacement> good{{R"(C:\Data\a.doc)", "~Marlok Backup.old", false}};
    const std::string text = FormatReplacements(good);
    for (const char* odd : {"C:\\Data\\b.doc\t~Marlok Backup.old", "C:\\Data\\b.doc\r\n", "\t~Marlok Backup.old\r\n",
                            "C:\\Data\\b.doc\tc.doc\r\n", "C:\\Data\\b.doc\t~Marlok Backup.old\tmore\r\n",
                            "C:\\Data\\..\\b.doc\t~Marlok Backup.old\r\n", "C:\\\t~Marlok Backup.old\r\n",
                            "b.doc\t~Marlok Backup.old\r\n", "C:\\Data\\b.doc\t..\\~Marlok Backup.old\r\n"}) {
        EXPECT_EQ(ParseReplacements(text + odd), good) << odd;
    }
}

TEST_F(RestoreJournalTest, NothingButWorkingFilesIsEverTouched) {
    machine.Seed({{R"(C:\Data\a.doc)", "a"}, {R"(C:\Data\b.doc)", "b"}});
    Killed("C:\\Data\\gone.doc\ta.doc\r\nC:\\Data\\gone.doc\t~Marlok Backup.old\r\n");
    machine.MakeFileLink(R"(C:\Data\~Marlok Backup.old)", R"(C:\Data\b.doc)");
    machine.Seed({{R"(C:\Data\~Marlok Backup.part\x.txt)", "x"}});
    const Tree before = machine.Tree(R"(C:\Data)");
    RestoreJournal(machine.machine()).ClearKilled();
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), before);
    EXPECT_FALSE(machine.Exists(Beside("~Marlok Backup.put")));
}

TEST_F(RestoreJournalTest, WhatCannotBeReachedWaitsForItsDrive) {
    machine.AddDrive('F');
    machine.Seed({{R"(F:\Data\~Marlok Backup.part)", "half"}, {R"(C:\Data\~Marlok Backup.part)", "half"}});
    Killed("F:\\Data\\a.doc\t~Marlok Backup.old\r\nC:\\Data\\b.doc\t~Marlok Backup.old\r\n");
    machine.SetDriveFailure("F:", error::notReady);
    RestoreJournal(machine.machine()).ClearKilled();
    EXPECT_EQ(machine.Read(Beside("~Marlok Backup.put")), "F:\\Data\\a.doc\t~Marlok Backup.old\r\n");
    EXPECT_FALSE(machine.Exists(R"(C:\Data\~Marlok Backup.part)"));
    machine.SetDriveFailure("F:", error::success);
    // A restore in between keeps what it finds there.
    machine.Seed({{saved, "saved content"}, {original, "now"}});
    machine.SetDriveFailure("F:", error::notReady);
    EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "");
    EXPECT_EQ(machine.Read(Beside("~Marlok Backup.put")), "F:\\Data\\a.doc\t~Marlok Backup.old\r\n");
    machine.SetDriveFailure("F:", error::success);
    RestoreJournal(machine.machine()).ClearKilled();
    EXPECT_FALSE(machine.Exists(R"(F:\Data\~Marlok Backup.part)"));
    EXPECT_FALSE(machine.Exists(Beside("~Marlok Backup.put")));
}

/// Whatever fails: the original is the old one whole or the new one whole, under its name or until the next start under
/// the one that the report gives, and nothing is left beside it then.
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
            if (there && !machine.Exists(original)) {
                EXPECT_THAT(failure, HasSubstr("now called ~Marlok Backup.old"));
            }
            RestoreJournal(machine.machine()).ClearKilled();
            EXPECT_THAT(Left(machine), IsEmpty());
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
        RestoreJournal(machine.machine()).ClearKilled();
        EXPECT_THAT(Left(machine), IsEmpty());
        const std::string content = machine.Read(original);
        EXPECT_TRUE(content == "saved content" || content == "what is there now") << content;
        EXPECT_EQ(RestoreFile(machine.machine(), saved, original), "") << "another try repairs it";
        EXPECT_EQ(machine.Read(original), "saved content");
        EXPECT_THAT(Left(machine), IsEmpty());
    }
}

}  // namespace
}  // namespace marlok::test
