#include "engine/BackupRun.h"

#include "tests/unit/RunHarness.h"
#include "text/Surrogates.h"

namespace marlok::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* location = R"(E:\Save)";

class BackupRunTest : public ProgramTest {
 protected:
    BackupRunTest() {
        Configure(machine, {{location, {R"(C:\Data)"}}});
        machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Data\Sub\b.txt)", "two"}, {R"(C:\Data\z.txt)", "three"}});
    }

    int Run(const std::string& mode = "C") { return RunUnattended(machine, mode); }
    Tree Saved() { return machine.Tree(location); }

    const Tree everything{{"Data\\", ""},
                          {"Data\\Sub\\", ""},
                          {"Data\\Sub\\b.txt", "two"},
                          {"Data\\a.doc", "one"},
                          {"Data\\z.txt", "three"}};
};

TEST_F(BackupRunTest, ALockedFileIsReportedAndTheRestIsSaved) {
    machine.Lock(R"(C:\Data\a.doc)");
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved().count("Data\\a.doc"), 0U);
    EXPECT_EQ(Saved().count("Data\\Sub\\b.txt"), 1U);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation)));
    EXPECT_THAT(OriginalList(machine, "Save"), Not(Contains(R"(C:\Data\a.doc)")));
    machine.Lock(R"(C:\Data\a.doc)", false);
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), everything);
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt"))) << "nothing failed this time";
}

TEST_F(BackupRunTest, AFileThatVanishesDuringTheRunIsReported) {
    machine.faults.BeforeStep([this](const Step& step) {
        if (step.operation.starts_with("Copy") && step.path == R"(C:\Data\a.doc)") {
            machine.Remove(R"(C:\Data\Sub\b.txt)");
        }
    });
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\Sub\b.txt)", error::fileNotFound)));
    EXPECT_EQ(Saved().count("Data\\z.txt"), 1U);
}

TEST_F(BackupRunTest, AMissingSourceIsReportedAndTheOthersAreSaved) {
    Configure(machine, {{location, {R"(C:\Gone)", R"(C:\gone.txt)", R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), everything);
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre(Failed(R"(C:\Gone)", error::fileNotFound), Failed(R"(C:\gone.txt)", error::fileNotFound)));
}

TEST_F(BackupRunTest, ALocationWithoutItsDriveIsReportedOnceAndTheNextOneRuns) {
    Configure(machine, {{R"(X:\Away)", {R"(C:\Data)"}}, {location, {R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(X:\Away)")));
    EXPECT_EQ(Saved(), everything);
}

TEST_F(BackupRunTest, AReadOnlyDriveIsReported) {
    machine.Seed({{R"(F:\Save\)"}});
    machine.AddDrive('F', {.readOnly = true});
    Configure(machine, {{R"(F:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), Contains(Failed(R"(C:\Data)", error::writeProtected)));
    EXPECT_EQ(machine.Tree(R"(F:\Save)"), Tree{});
}

TEST_F(BackupRunTest, AFullDiskKeepsWhatWasSavedBefore) {
    ASSERT_EQ(Run(), exitcode::allDone);
    machine.Seed(
        {{R"(C:\Data\a.doc)", std::string(5000, 'n'), At(12, 0)}, {R"(C:\Data\new.txt)", std::string(900, 'n')}});
    machine.AddDrive('E', {.capacityBytes = 1000});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "one") << "the old copy survives";
    EXPECT_THAT(ErrorLog(machine), Contains(Failed(R"(C:\Data\a.doc)", error::diskFull)));
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
    machine.AddDrive('E', {.capacityBytes = 0});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), std::string(5000, 'n'));
}

TEST_F(BackupRunTest, ASourceInTheLocationItselfIsReported) {
    machine.Seed({{R"(E:\Save\Own\o.txt)", "o"}});
    Configure(machine, {{location, {R"(E:\Save\Own)", R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(E:\Save\Own)")));
    EXPECT_EQ(Saved().count("Save\\"), 0U);
}

TEST_F(BackupRunTest, ALocationInItsSourceIsNotSavedIntoItself) {
    Configure(machine, {{R"(C:\Data\Backup)", {R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Tree(R"(C:\Data\Backup)"), everything);
    EXPECT_THAT(RunLog(machine), SizeIs(1)) << "the second run finds nothing to copy";
}

TEST_F(BackupRunTest, LinksInTheSourceNeverLeadRoundAndRound) {
    machine.MakeLink(R"(C:\Data\Sub\up)", R"(C:\Data)");
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), everything);
}

TEST_F(BackupRunTest, SourcesMayOverlapInEitherOrder) {
    for (const Lines& sources : {Lines{R"(C:\Data)", R"(C:\Data\Sub)"}, Lines{R"(C:\Data\Sub)", R"(C:\Data)"}}) {
        Configure(machine, {{location, sources}});
        machine.Remove(location);
        EXPECT_EQ(Run(), exitcode::allDone);
        EXPECT_EQ(Saved(), everything);
        EXPECT_THAT(RunLog(machine), SizeIs(5)) << "each file once";
    }
}

TEST_F(BackupRunTest, EmptyFoldersAreSaved) {
    machine.Seed({{R"(C:\Data\Empty\Inner\)"}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved().count("Data\\Empty\\Inner\\"), 1U);
}

TEST_F(BackupRunTest, HiddenSystemAndReadOnlyFilesAreSavedAgainAndAgain) {
    constexpr std::uint32_t odd = attribute::hidden | attribute::system | attribute::readOnly;
    for (const int hour : {9, 10}) {
        machine.Seed({{R"(C:\Data\odd.txt)", "hour " + std::to_string(hour), At(hour, 0), odd}});
        EXPECT_EQ(Run(), exitcode::allDone);
        EXPECT_EQ(machine.Read(R"(E:\Save\Data\odd.txt)"), "hour " + std::to_string(hour));
        EXPECT_EQ(machine.EntryOf(R"(E:\Save\Data\odd.txt)").attributes & odd, odd);
    }
}

TEST_F(BackupRunTest, NamesOfAnyKind) {
    const Lines names{
        "\u0416\u0443\u043A.txt", "\U0001F600.txt", "\xED\xA0\x80.txt", "dots...", "blank ", "\u4E2D\u6587"};
    for (const std::string& name : names) {
        machine.Seed({R"(C:\Data\)" + name, "x"});
    }
    EXPECT_EQ(Run(), exitcode::allDone);
    for (const std::string& name : names) {
        EXPECT_EQ(Saved().count("Data\\" + name), 1U) << name;
        EXPECT_THAT(OriginalList(machine, "Save"), Contains(text::EscapeSurrogates(R"(C:\Data\)" + name)));
    }
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_THAT(RunLog(machine), SizeIs(1));
}

TEST_F(BackupRunTest, HalfAPairInANameLeavesEveryTextFileReadable) {
    const std::string half = "\xED\xA0\x80";
    const std::string held = "C:\\Data\\held" + half + ".txt";
    Configure(machine, {{"E:\\Odd" + half, {R"(C:\Data)"}}});
    machine.Seed({{"E:\\Odd" + half + "\\"}, {held, "x"}});
    machine.Lock(held);
    for (int run = 0; run < 2; ++run) {
        machine.Seed({{"C:\\Data\\new" + half + std::to_string(run), "x"}});
        EXPECT_EQ(Run(), exitcode::somethingFailed);
        for (const char* name :
             {"Backup Log File.txt", "Backup Error Log.txt", "Backup Report.txt", "Backup History.txt"}) {
            EXPECT_THAT(machine.Read(Beside(name)), AllOf(HasSubstr("<D800>"), Not(HasSubstr("\xED")))) << name;
        }
    }
    // The history that was written so is read back.
    EXPECT_THAT(machine.Read(Beside("Backup Report.txt")),
                AllOf(HasSubstr("E:\\Odd<D800>: last went well never"), Not(HasSubstr("last failed never"))));
}

TEST_F(BackupRunTest, AListOfOriginalPathsThatCannotBeReadIsSaidOnceAndStays) {
    const std::string list = Beside("Save.txt");
    for (const bool held : {true, false}) {
        const std::string content = held ? "C:\\Data\\old.doc\r\n" : std::string(512, '\0');
        machine.Seed({{list, content}, {R"(C:\Data\new.txt)", "x", At(held ? 11 : 12, 0)}});
        machine.Lock(list, held);
        EXPECT_EQ(Run(), exitcode::somethingFailed);
        machine.Lock(list, false);
        EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(list, held ? error::sharingViolation : error::invalidData)));
        EXPECT_EQ(machine.Read(list), content);
        EXPECT_EQ(Saved().count("Data\\new.txt"), 1U);
    }
}

TEST_F(BackupRunTest, MoreFilesThanSixteenBitsCount) {
    machine.faults.KeepJournal(false);
    for (int i = 0; i < 33'000; ++i) {
        machine.Seed({R"(C:\Data\f)" + std::to_string(i), "x"});
    }
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_THAT(RunLog(machine), SizeIs(33'003 + 2));
    EXPECT_THAT(OriginalList(machine, "Save"), SizeIs(33'003));
}

TEST_F(BackupRunTest, APathPastFourThousandCharacters) {
    std::string folder = R"(C:\Data)";
    while (folder.size() < 4100) {
        folder += R"(\a long folder name)";
    }
    machine.Seed({folder + R"(\deep.txt)", "deep"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save)" + folder.substr(2) + R"(\deep.txt)"), "deep");
    EXPECT_EQ(Run("A"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save)" + folder.substr(2) + R"(\deep.txt)"), "deep");
}

TEST_F(BackupRunTest, CopyAllEmptiesTheLocationButForFoldersThatBeginWithADot) {
    machine.Seed({{R"(E:\Save\stale.txt)", "s"}, {R"(E:\Save\Old\x.txt)", "x"}, {R"(E:\Save\.kept\k.txt)", "k"}});
    EXPECT_EQ(Run("A"), exitcode::allDone);
    Tree expected = everything;
    expected[".kept\\"] = "";
    expected[".kept\\k.txt"] = "k";
    EXPECT_EQ(Saved(), expected);
}

TEST_F(BackupRunTest, CopyAllDeletesThroughNoLink) {
    machine.Seed({{R"(C:\Precious\p.txt)", "p"}, {R"(E:\Save\Sub\x.txt)", "x"}});
    machine.MakeLink(R"(E:\Save\direct)", R"(C:\Precious)");
    machine.MakeLink(R"(E:\Save\Sub\deeper)", R"(C:\Precious)");
    EXPECT_EQ(Run("A"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(C:\Precious\p.txt)"), "p");
    EXPECT_EQ(Saved(), everything);
}

TEST_F(BackupRunTest, WhereALinkStaysCopyAllSaysSo) {
    machine.files.SetCanRemoveLinks(false);
    machine.Seed({{R"(C:\Precious\p.txt)", "p"}, {R"(E:\Save\Sub\x.txt)", "x"}});
    machine.MakeLink(R"(E:\Save\Sub\deeper)", R"(C:\Precious)");
    EXPECT_EQ(Run("A"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(C:\Precious\p.txt)"), "p");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(E:\Save\Sub\deeper)")));
    EXPECT_EQ(Saved().count("Data\\a.doc"), 1U);
}

TEST_F(BackupRunTest, ARefusedLocationIsPassedOverWithAReport) {
    machine.Seed({{R"(E:\DeleteFolder\mine.txt)", "m"}});
    Configure(machine, {{R"(E:\DeleteFolder)", {R"(C:\Data)"}}, {location, {R"(C:\Data)"}}});
    EXPECT_EQ(Run("A"), exitcode::somethingFailed);
    EXPECT_EQ(Run("C"), exitcode::somethingFailed) << "a second start carries out no deletions either";
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "one");
    EXPECT_EQ(machine.Read(R"(E:\DeleteFolder\mine.txt)"), "m");
    EXPECT_EQ(Saved(), everything);
}

TEST_F(BackupRunTest, SourcesThatLeadOutOfTheLocationAreRefused) {
    Configure(machine, {{location, {R"(C:\..\Data)", R"(C:\Data\..\..\x)", "C:/Data", "Data", R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), SizeIs(4));
    EXPECT_EQ(machine.Tree("E:\\").count("Data\\"), 0U);
    EXPECT_EQ(Saved(), everything);
}

TEST_F(BackupRunTest, FortyThousandDirectSubfoldersAreSaved) {
    machine.faults.KeepJournal(false);
    constexpr std::size_t count = 40'000;
    for (std::size_t i = 0; i < count; ++i) {
        machine.Seed({R"(C:\Many\f)" + std::to_string(i) + "\\"});
    }
    machine.Seed({{R"(C:\Many\f39999\last.txt)", "last"}});
    Configure(machine, {{location, {R"(C:\Many)"}}});
    EXPECT_EQ(Run(), exitcode::allDone);
    const Tree saved = Saved();
    EXPECT_EQ(saved.size(), count + 2);
    EXPECT_EQ(saved.at(R"(Many\f39999\last.txt)"), "last");
}

TEST_F(BackupRunTest, TheMachineStaysAwakeForTheRunOnly) {
    bool awake = false;
    machine.faults.BeforeStep([&](const Step& step) {
        awake = awake || (step.operation.starts_with("Copy") && machine.system.AwakeBalance() > 0);
    });
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_TRUE(awake);
    EXPECT_EQ(machine.system.AwakeBalance(), 0);
}

TEST_F(BackupRunTest, AKilledRunsCopiesAreListedByTheNextRun) {
    machine.faults.BeforeStep([this](const Step& step) {
        if (step.operation.starts_with("Copy") && step.path.ends_with("b.txt")) {
            machine.faults.DieAt(machine.faults.Steps() + 1);
        }
    });
    EXPECT_THROW(static_cast<void>(RunProgram(machine, "C")), ProcessDied);
    machine.faults.BeforeStep(nullptr);
    machine.Restart();
    EXPECT_THAT(OriginalList(machine, "Save"), IsEmpty());
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), everything);
    EXPECT_THAT(OriginalList(machine, "Save"),
                testing::UnorderedElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\z.txt)", R"(C:\Data\Sub\b.txt)"));
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(BackupRunTest, TheAccountsAddUpOverARunInWhichMuchGoesWrong) {
    ASSERT_EQ(Run(), exitcode::allDone);
    machine.Seed(
        {{R"(C:\Data\a.doc)", "later", At(13, 0)}, {R"(C:\Data\n.txt)", "new"}, {R"(C:\Data\l.txt)", "locked"}});
    machine.Lock(R"(C:\Data\l.txt)");
    RunHarness run(machine);
    const RunReport report = run.Backup({location});
    EXPECT_EQ(report.copied, 2U);
    EXPECT_EQ(report.unchanged, 2U);
    EXPECT_EQ(report.failed, 1U);
    EXPECT_EQ(report.written.size(), report.copied);
}

}  // namespace
}  // namespace marlok::test
