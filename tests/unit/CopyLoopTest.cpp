#include "engine/CopyLoop.h"

#include "tests/unit/RunHarness.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(CompareWriteTimesTest, EarlierSameLater) {
    DirectoryEntry early;
    DirectoryEntry late;
    early.lastWriteTime = 0x1'0000'0000;
    late.lastWriteTime = 0x1'0000'0001;
    EXPECT_EQ(CompareWriteTimes(early, late), -1);
    EXPECT_EQ(CompareWriteTimes(late, late), 0);
    EXPECT_EQ(CompareWriteTimes(late, early), 1);
    early.lastWriteTime = 0xFFFF'FFFF;
    EXPECT_EQ(CompareWriteTimes(late, early), 1);
}

TEST(GetEntrySizeTest, TheLowerThirtyTwoBits) {
    DirectoryEntry entry;
    entry.size = 0x2'0000'0005;
    EXPECT_EQ(GetEntrySize(entry), 5U);
}

constexpr const char* samePlace =
    R"(D:\Data\a.doc: not saved: C:\Data\a.doc is saved in the same place; give one of the two a backup location of its own)";

class CopyLoopTest : public ProgramTest {
 protected:
    CopyLoopTest() { BackUp({R"(C:\Data)"}); }

    /// Stores these sources for the location E:\Save.
    void BackUp(const Lines& sources) { Configure(machine, {{R"(E:\Save)", sources}}); }

    int Run() { return RunUnattended(machine, "C"); }

    Tree Saved() { return machine.Tree(R"(E:\Save)"); }
};

struct ChangeCase {
    const char* what;
    FileTime sourceTime;
    FileTime savedTime;
    const char* source;
    const char* saved;
    std::uint32_t savedAttributes;
    bool copied;
};

class ChangeRuleTest : public CopyLoopTest, public testing::WithParamInterface<ChangeCase> {};

TEST_P(ChangeRuleTest, OnlyALaterSourceIsCopied) {
    const ChangeCase& one = GetParam();
    machine.Seed({{R"(C:\Data\a.doc)", one.source, one.sourceTime},
                  {R"(E:\Save\Data\a.doc)", one.saved, one.savedTime, one.savedAttributes}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), one.copied ? one.source : one.saved) << one.what;
    EXPECT_EQ(RunLog(machine).size(), one.copied ? 3U : 1U) << one.what;
    EXPECT_EQ(machine.EntryOf(R"(E:\Save\Data\a.doc)").lastWriteTime, one.copied ? one.sourceTime : one.savedTime);
}

INSTANTIATE_TEST_SUITE_P(
    Times, ChangeRuleTest,
    testing::Values(ChangeCase{"later", At(10, 0), At(9, 0), "new", "old", 0, true},
                    ChangeCase{"later by the least", At(9, 0) + 1, At(9, 0), "new", "old", 0, true},
                    ChangeCase{"same time", At(9, 0), At(9, 0), "new", "old", 0, false},
                    ChangeCase{"same time, other size", At(9, 0), At(9, 0), "much longer", "old", 0, false},
                    ChangeCase{"same time and size, other attributes", At(9, 0), At(9, 0), "new", "old",
                               attribute::hidden, false},
                    ChangeCase{"earlier", At(8, 0), At(9, 0), "new", "old", 0, false},
                    ChangeCase{"earlier by the least", At(9, 0) - 1, At(9, 0), "new", "old", 0, false},
                    ChangeCase{"earlier, other size", At(8, 0), At(9, 0), "much longer", "old", 0, false},
                    ChangeCase{"later, read-only copy", At(10, 0), At(9, 0), "new", "old", attribute::readOnly, true},
                    ChangeCase{"later, hidden copy", At(10, 0), At(9, 0), "new", "old", attribute::hidden, true}));

TEST_F(CopyLoopTest, AFileWithoutASavedCopyIsCopiedWithTimeAndAttributes) {
    machine.Seed({{R"(C:\Data\a.doc)", "one", At(3, 4, 5), attribute::hidden | attribute::readOnly}});
    EXPECT_EQ(Run(), exitcode::allDone);
    const DirectoryEntry entry = machine.EntryOf(R"(E:\Save\Data\a.doc)");
    EXPECT_EQ(entry.lastWriteTime, At(3, 4, 5));
    EXPECT_EQ(entry.attributes, attribute::hidden | attribute::readOnly | attribute::archive);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "one");
}

TEST_F(CopyLoopTest, ADriveWithCoarseTimesIsCopiedToAgainOnlyWhereItsTimeIsEarlier) {
    constexpr std::uint64_t twoSeconds = 20'000'000;
    machine.AddDrive('E', {false, 0, twoSeconds, true});
    machine.Seed({{R"(C:\Data\even.doc)", "even", At(10, 0, 2)}, {R"(C:\Data\odd.doc)", "odd", At(10, 0, 3)}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_THAT(RunLog(machine), ElementsAre(testing::_, "", R"(E:\Save\Data\odd.doc)"));
}

TEST_F(CopyLoopTest, CopyAllCopiesWhateverTheTimes) {
    machine.Seed({{R"(C:\Data\late.doc)", "1", At(10, 0)},
                  {R"(C:\Data\same.doc)", "2", At(9, 0)},
                  {R"(C:\Data\early.doc)", "3", At(8, 0)},
                  {R"(E:\Save\Data\late.doc)", "-", At(9, 0)},
                  {R"(E:\Save\Data\same.doc)", "-", At(9, 0)},
                  {R"(E:\Save\Data\early.doc)", "-", At(9, 0)}});
    // A missing source keeps the location from being emptied: the copies go over what is there.
    BackUp({R"(C:\Data)", R"(C:\Gone)"});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
    EXPECT_EQ(Saved(),
              (Tree{{"Data\\", ""}, {"Data\\early.doc", "3"}, {"Data\\late.doc", "1"}, {"Data\\same.doc", "2"}}));
}

TEST_F(CopyLoopTest, NoFileIsOpenedToDecide) {
    machine.Seed({{R"(C:\Data\a.doc)", "one", At(9, 0)}, {R"(E:\Save\Data\a.doc)", "one", At(9, 0)}});
    machine.faults.Reset();
    EXPECT_EQ(Run(), exitcode::allDone);
    for (const Step& step : machine.faults.Journal()) {
        EXPECT_FALSE(step.operation == "Open" && step.path.ends_with("a.doc")) << step.path;
        EXPECT_FALSE(step.operation.starts_with("Copy")) << step.path;
    }
}

TEST_F(CopyLoopTest, LetterCaseOfTheSavedCopyDoesNotMatter) {
    machine.Seed({{R"(C:\Data\A.DOC)", "one", At(9, 0)}, {R"(E:\Save\DATA\a.doc)", "old", At(9, 0)}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"DATA\\", ""}, {"DATA\\a.doc", "old"}}));
}

TEST_F(CopyLoopTest, ANameThatIsTheAliasOfAnotherSavedCopyIsReportedAndNotSavedOverIt) {
    for (const FileTime time : {At(8, 0), At(9, 0), At(10, 0)}) {
        machine.Seed({{R"(C:\Data\LONGNA~1.DOC)", "new", time}, {R"(E:\Save\Data\Long name.doc)", "old", At(9, 0)}});
        machine.SetAlias(R"(E:\Save\Data\Long name.doc)", "LONGNA~1.DOC");
        EXPECT_EQ(Run(), exitcode::somethingFailed);
        EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\Long name.doc", "old"}}));
        EXPECT_THAT(ErrorLog(machine),
                    Contains(testing::AllOf(Reported(R"(C:\Data\LONGNA~1.DOC)"), testing::HasSubstr("Long name.doc"))));
    }
}

TEST_F(CopyLoopTest, FilesOfAFolderNeedNoExtension) {
    machine.Seed(
        {{R"(C:\Data\README)", "1"}, {R"(C:\Data\x.jpeg)", "2"}, {R"(C:\Data\.c)", "3"}, {R"(C:\Data\d.)", "4"}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(
        Saved(),
        (Tree{{"Data\\", ""}, {"Data\\.c", "3"}, {"Data\\README", "1"}, {"Data\\d.", "4"}, {"Data\\x.jpeg", "2"}}));
}

TEST_F(CopyLoopTest, ASingleFileIsSavedWhateverItsExtension) {
    machine.Seed({{R"(C:\README)", "1"}, {R"(C:\x.jpeg)", "2"}, {R"(C:\a.c)", "3"}});
    BackUp({R"(C:\README)", R"(C:\x.jpeg)", R"(C:\a.c)"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"README", "1"}, {"a.c", "3"}, {"x.jpeg", "2"}}));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\README)", R"(C:\x.jpeg)", R"(C:\a.c)"));
}

TEST_F(CopyLoopTest, ASingleFileIsSavedWhateverTheLettersOfItsExtension) {
    machine.Seed({{"C:\\a.\u00E4\u00F6\u00FC", "1"}, {"C:\\b.\u4E2Dx", "2"}});
    BackUp({"C:\\a.\u00E4\u00F6\u00FC", "C:\\b.\u4E2Dx"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"a.\u00E4\u00F6\u00FC", "1"}, {"b.\u4E2Dx", "2"}}));
}

TEST_F(CopyLoopTest, ASingleFileIsCopiedWhereItsFolderExists) {
    machine.Seed({{R"(C:\a.doc)", "one"}, {R"(C:\Data\b.txt)", "two"}, {R"(E:\Save\Data\)"}});
    BackUp({R"(C:\a.doc)", R"(C:\Data\b.txt)"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\b.txt", "two"}, {"a.doc", "one"}}));
}

TEST_F(CopyLoopTest, ASingleFileIsCopiedAgainOnlyWhenItIsNewer) {
    BackUp({R"(C:\Data\newer.doc)", R"(C:\Data\same.doc)", R"(C:\Data\older.doc)"});
    machine.Seed({{R"(C:\Data\newer.doc)", "changed", At(9, 0, 1)},
                  {R"(E:\Save\Data\newer.doc)", "saved", At(9, 0)},
                  {R"(C:\Data\same.doc)", "other", At(9, 0)},
                  {R"(E:\Save\Data\same.doc)", "saved", At(9, 0)},
                  {R"(C:\Data\older.doc)", "old", At(8, 59, 59)},
                  {R"(E:\Save\Data\older.doc)", "saved", At(9, 0)}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""},
                             {"Data\\newer.doc", "changed"},
                             {"Data\\older.doc", "saved"},
                             {"Data\\same.doc", "saved"}}));
}

TEST_F(CopyLoopTest, NoFolderIsMadeForASingleFile) {
    machine.Seed({{R"(C:\Data\b.txt)", "two"}});
    BackUp({R"(C:\Data\b.txt)"});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), Tree{});
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre(testing::AllOf(Reported(R"(C:\Data\b.txt)"), testing::HasSubstr("add it again"))));
    EXPECT_THAT(OriginalList(machine, "Save"), IsEmpty());
}

TEST_F(CopyLoopTest, TheFilesOfAFolderNamedLikeAFileAreSaved) {
    machine.Seed({{R"(C:\Data\Old.bak\lost.txt)", "1"},
                  {R"(C:\Data\Old.bak\Sub\kept.txt)", "2"},
                  {R"(C:\Data\Empty.bak\)"},
                  {R"(C:\Data\v1.0.2\x.txt)", "4"},
                  {R"(C:\Data\a.doc)", "3"}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""},
                             {"Data\\Empty.bak\\", ""},
                             {"Data\\Old.bak\\", ""},
                             {"Data\\Old.bak\\Sub\\", ""},
                             {"Data\\Old.bak\\Sub\\kept.txt", "2"},
                             {"Data\\Old.bak\\lost.txt", "1"},
                             {"Data\\a.doc", "3"},
                             {"Data\\v1.0.2\\", ""},
                             {"Data\\v1.0.2\\x.txt", "4"}}));
}

TEST_F(CopyLoopTest, ASourceFolderNamedLikeAFileIsSavedToo) {
    machine.Seed({{R"(C:\Work.old\a.doc)", "1"}});
    BackUp({R"(C:\Work.old)"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"Work.old\\", ""}, {"Work.old\\a.doc", "1"}}));
}

TEST_F(CopyLoopTest, OfTwoOriginalsWithOneSavedPathTheSecondIsReported) {
    machine.Seed({{R"(C:\Data\a.doc)", "older", At(9, 0)},
                  {R"(C:\Data\c.doc)", "c"},
                  {R"(D:\Data\a.doc)", "newer", At(10, 0)},
                  {R"(D:\Data\d.doc)", "d"}});
    BackUp({R"(C:\Data)", R"(D:\Data)"});
    for (const char* mode : {"C", "C", "A"}) {
        EXPECT_EQ(RunUnattended(machine, mode), exitcode::somethingFailed);
        EXPECT_EQ(Saved(),
                  (Tree{{"Data\\", ""}, {"Data\\a.doc", "older"}, {"Data\\c.doc", "c"}, {"Data\\d.doc", "d"}}));
        EXPECT_THAT(OriginalList(machine, "Save"),
                    ElementsAre(R"(C:\Data\a.doc)", R"(C:\Data\c.doc)", R"(D:\Data\d.doc)"));
        EXPECT_EQ(ErrorLog(machine).back(), samePlace);
    }
}

TEST_F(CopyLoopTest, ThePlaceOfAnOriginalThatCannotBeReadIsNotTakenByAnother) {
    machine.Seed({{R"(C:\Data\a.doc)", "first"}, {R"(D:\Data\a.doc)", "second"}});
    BackUp({R"(C:\Data)", R"(D:\Data)"});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "Copy" && step.path == R"(C:\Data\a.doc)" ? error::sharingViolation : error::success;
    });
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}}));
    EXPECT_EQ(ErrorLog(machine).back(), samePlace);
    machine.faults.Revive();
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc", "first"}}));
}

TEST_F(CopyLoopTest, FilesOfAFolderThatCannotBeMadeCountAsFailed) {
    machine.Seed({{R"(C:\Data\Sub\a.doc)", "a"}, {R"(C:\Data\Sub\b.doc)", "b"}, {R"(C:\Data\c.doc)", "c"}});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "CreateFolder" && step.path == R"(E:\Save\Data\Sub)" ? error::accessDenied
                                                                                      : error::success;
    });
    const RunReport report = RunHarness(machine).Backup({R"(E:\Save)"});
    EXPECT_EQ(report.copied, 1U);
    EXPECT_EQ(report.failed, 2U);
    ASSERT_EQ(report.Lines().size(), 1U);
    EXPECT_EQ(report.Lines()[0].path, R"(C:\Data\Sub)");
}

TEST_F(CopyLoopTest, ANetworkSourceIsSavedBelowServerAndShare) {
    machine.Seed({{R"(\\server\share\Data\a.doc)", "one"}, {R"(\\server\share\Data\Sub\b.txt)", "two"}});
    BackUp({R"(\\server\share\Data)"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"server\\", ""},
                             {"server\\share\\", ""},
                             {"server\\share\\Data\\", ""},
                             {"server\\share\\Data\\Sub\\", ""},
                             {"server\\share\\Data\\Sub\\b.txt", "two"},
                             {"server\\share\\Data\\a.doc", "one"}}));
}

TEST_F(CopyLoopTest, AWholeDriveIsSavedWithItsFirstFolder) {
    machine.Seed({{R"(D:\Alpha\a.txt)", "1"}, {R"(D:\Beta\b.txt)", "2"}, {R"(D:\x.txt)", "3"}});
    BackUp({"D:\\"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(),
              (Tree{{"Alpha\\", ""}, {"Alpha\\a.txt", "1"}, {"Beta\\", ""}, {"Beta\\b.txt", "2"}, {"x.txt", "3"}}));
}

TEST_F(CopyLoopTest, AnEmptyDriveIsNothingToReport) {
    machine.AddDrive('D');
    machine.Seed({{R"(C:\Data\a.doc)", "one"}});
    BackUp({"D:\\", R"(C:\Data)"});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc", "one"}}));
}

TEST_F(CopyLoopTest, TheSavedFolderMayBeADrivesRoot) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}});
    Configure(machine, {{"E:\\", {R"(C:\Data)"}}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Data\\", ""}, {"Data\\a.doc", "one"}}));
    EXPECT_EQ(machine.Read(Beside(".txt")), "C:\\Data\\a.doc\r\n");
}

TEST_F(CopyLoopTest, DotsAreNeverCopied) {
    machine.Seed({{R"(C:\Data\Sub\)"}, {R"(C:\Data\a.doc)", "one"}});
    machine.faults.Reset();
    EXPECT_EQ(Run(), exitcode::allDone);
    for (const Step& step : machine.faults.Journal()) {
        EXPECT_FALSE(step.path.ends_with("\\.") || step.path.ends_with("\\..")) << step.operation << " " << step.path;
    }
}

TEST_F(CopyLoopTest, AFileWhereAFolderBelongsIsReportedForTheFolder) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Other\b.txt)", "two"}, {R"(E:\Save\Data)", "a file"}});
    BackUp({R"(C:\Data)", R"(C:\Other)"});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data", "a file"}, {"Other\\", ""}, {"Other\\b.txt", "two"}}));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data)", error::invalidFolderName)));
}

TEST_F(CopyLoopTest, AFolderWhereAFileBelongsIsReportedForTheFile) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Data\b.txt)", "two"}, {R"(E:\Save\Data\a.doc\)"}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc\\", ""}, {"Data\\b.txt", "two"}}));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(C:\Data\a.doc)")));
}

TEST_F(CopyLoopTest, EveryMissingFolderOfATargetIsMade) {
    machine.Seed({{R"(C:\a\b\c\d\e.txt)", "one"}});
    Configure(machine, {{R"(E:\x\y\z)", {R"(C:\a\b\c\d)"}}});
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(E:\x\y\z\a\b\c\d\e.txt)"), "one");
}

TEST_F(CopyLoopTest, AFailedCopyIsReportedAndNotListed) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Data\b.doc)", "two"}});
    machine.Lock(R"(C:\Data\a.doc)");
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation)));
    EXPECT_THAT(RunLog(machine), ElementsAre(testing::EndsWith(" Was 1"), "", R"(E:\Save\Data\b.doc)"));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\b.doc)"));
}

TEST_F(CopyLoopTest, AFailedReplacementKeepsTheOldCopy) {
    machine.Seed({{R"(C:\Data\a.doc)", "new", At(10, 0)}, {R"(E:\Save\Data\a.doc)", "old", At(9, 0)}});
    machine.Lock(R"(E:\Save\Data\a.doc)");
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc", "old"}}));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::accessDenied)));
}

TEST_F(CopyLoopTest, AReplacedReadOnlyCopyThatFailsKeepsItsAttributes) {
    machine.Seed({{R"(C:\Data\a.doc)", "new", At(10, 0)},
                  {R"(E:\Save\Data\a.doc)", "old", At(9, 0), attribute::readOnly | attribute::hidden}});
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "Move" ? error::accessDenied : error::success; });
    EXPECT_EQ(Run(), exitcode::nothingRan) << "the command file needs a move as well";
    machine.faults.Reset();
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "Move" && step.path.starts_with("E:") ? error::accessDenied : error::success;
    });
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc", "old"}}));
    EXPECT_TRUE((machine.EntryOf(R"(E:\Save\Data\a.doc)").attributes & attribute::readOnly) != 0);
}

TEST_F(CopyLoopTest, WorkingFilesAreNotSavedOverTheProgramsOwn) {
    machine.Seed(
        {{R"(C:\Data\~Marlok Backup.part)", "1"}, {R"(C:\Data\~MARLOK BACKUP.run)", "2"}, {R"(C:\Data\a.doc)", "3"}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\a.doc", "3"}}));
    EXPECT_THAT(ErrorLog(machine), UnorderedElementsAre(Reported(R"(C:\Data\~Marlok Backup.part)"),
                                                        Reported(R"(C:\Data\~MARLOK BACKUP.run)")));
}

TEST_F(CopyLoopTest, TheAccountsAddUp) {
    machine.Seed({{R"(C:\Data\new.doc)", "1"},
                  {R"(C:\Data\later.doc)", "2", At(10, 0)},
                  {R"(C:\Data\same.doc)", "3", At(9, 0)},
                  {R"(C:\Data\early.doc)", "4", At(8, 0)},
                  {R"(C:\Data\held.doc)", "5", At(10, 0)},
                  {R"(C:\Data\gone.doc)", "6", At(10, 0)},
                  {R"(C:\Data\~Marlok Backup.part)", "7"},
                  {R"(C:\Data\folder.doc)", "8"},
                  {R"(C:\Data\Sub\README)", "9"},
                  {R"(C:\Data\Sub\Deeper\x)", "10"},
                  {R"(E:\Save\Data\later.doc)", "old", At(9, 0)},
                  {R"(E:\Save\Data\same.doc)", "old", At(9, 0)},
                  {R"(E:\Save\Data\early.doc)", "old", At(9, 0)},
                  {R"(E:\Save\Data\folder.doc\)"}});
    machine.Lock(R"(C:\Data\held.doc)");
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy" && step.path == R"(C:\Data\gone.doc)") {
            machine.Remove(step.path);
        }
    });
    RunHarness harness(machine);
    const RunReport report = harness.Backup({R"(E:\Save)"});
    EXPECT_EQ(report.copied, 4U);
    // Same.doc and early.doc have another size than their saved copies.
    EXPECT_EQ(report.unchanged, 0U);
    EXPECT_THAT(report.different, UnorderedElementsAre(R"(C:\Data\early.doc)", R"(C:\Data\same.doc)"));
    EXPECT_EQ(report.failed, 4U);
    EXPECT_EQ(report.Lines().size(), report.failed);
    EXPECT_EQ(report.written.size(), report.copied);
    // Ten files were listed: the one that vanished after that among them.
    EXPECT_EQ(report.copied + report.unchanged + report.different.size() + report.failed, 10U);
}

}  // namespace
}  // namespace marlok::test
