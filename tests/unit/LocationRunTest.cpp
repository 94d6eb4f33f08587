#include "engine/LocationRun.h"

#include "engine/BackupRun.h"
#include "tests/unit/RunHarness.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Everything is copied afresh where something has been saved before.
class AfreshTest : public ProgramTest {
 protected:
    AfreshTest() {
        machine.Seed({{R"(C:\Data\a.doc)", "a", At(9, 0)}, {R"(C:\Data\Sub\b.doc)", "b", At(9, 0)}});
        Save(R"(E:\Save)", {R"(C:\Data)"});
    }

    void Save(const std::string& location, const Lines& sources) {
        Configure(machine, {{location, sources}});
        EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    }

    int Run() { return RunUnattended(machine, "A"); }
    Tree Saved() { return machine.Tree(R"(E:\Save)"); }
};

TEST_F(AfreshTest, WhatNoSourceHasGoesAndTheRestIsNeverAway) {
    machine.Remove(R"(C:\Data\Sub\b.doc)");
    machine.Seed({{R"(C:\Data\a.doc)", "changed", At(10, 0)}, {R"(E:\Save\Stray\stray.txt)", "stray"}});
    bool whole = true;
    machine.faults.BeforeStep([&](const Step&) { whole = whole && machine.Exists(R"(E:\Save\Data\a.doc)"); });
    EXPECT_EQ(Run(), exitcode::allDone);
    machine.faults.BeforeStep({});
    EXPECT_TRUE(whole) << "for a moment there was no saved copy";
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\Sub\\", ""}, {"Data\\a.doc", "changed"}}));
}

TEST_F(AfreshTest, AFolderThatCannotBeListedKeepsEverything) {
    machine.Seed({{R"(E:\Save\Stray\stray.txt)", "stray"}});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "FindFirst" && step.path.starts_with(R"(C:\Data\Sub)") ? error::accessDenied
                                                                                        : error::success;
    });
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""},
                             {"Data\\Sub\\", ""},
                             {"Data\\Sub\\b.doc", "b"},
                             {"Data\\a.doc", "a"},
                             {"Stray\\", ""},
                             {"Stray\\stray.txt", "stray"}}));
    EXPECT_THAT(ErrorLog(machine), Contains(HasSubstr(R"(E:\Save: nothing was deleted before copying)")));
}

TEST_F(AfreshTest, AFullDiskKeepsTheOldCopies) {
    machine.Seed({{R"(C:\Data\a.doc)", std::string(1000, 'n'), At(10, 0)}});
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "Copy.Write" ? error::diskFull : error::success; });
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(Saved(), (Tree{{"Data\\", ""}, {"Data\\Sub\\", ""}, {"Data\\Sub\\b.doc", "b"}, {"Data\\a.doc", "a"}}));
}

TEST_F(AfreshTest, AnotherLocationInsideIsLeftAlone) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(E:\Save\Inner)", {R"(C:\Work)"}}});
    machine.Seed({{R"(C:\Work\w.doc)", "w"}, {R"(E:\Save\Inner\Old\gone.doc)", "only copy"}});
    RunHarness run(machine);
    run.program.session.gAllFiles = true;
    EXPECT_THAT(run.Backup({R"(E:\Save)"}).Lines(), IsEmpty());
    EXPECT_EQ(machine.Read(R"(E:\Save\Inner\Old\gone.doc)"), "only copy");
}

TEST_F(AfreshTest, WhereAnotherComputerWasCutShortNothingIsDeleted) {
    machine.Seed({{R"(E:\Save\~Marlok Backup.OTHER.run)", ""}, {R"(E:\Save\Theirs\t.doc)", "theirs"}});
    EXPECT_EQ(Run(), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(E:\Save\Theirs\t.doc)"), "theirs");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(HasSubstr("another computer")));
}

/// A location that is a whole drive, with somebody to ask.
class WholeDriveTest : public AfreshTest, private RunSink {
 protected:
    WholeDriveTest() {
        Save("E:\\", {R"(C:\Data)"});
        machine.Remove(R"(C:\Data\a.doc)");
        machine.Seed({{R"(E:\Photos\p.jpg)", "12345"}});
        machine.Remove(R"(E:\Save)");
    }

    RunReport RunAnswered(bool yes) {
        answer_ = yes;
        RunPlan plan;
        plan.allFiles = true;
        plan.locations = LocationsAt({"E:\\"});
        Program program(machine.machine());
        return BackupRun(program.session.machine, program.session.Configuration(), plan, *this).Run();
    }

    std::vector<WholeDrive> asked;

 private:
    bool MayDeleteAll(const WholeDrive& found) override {
        asked.push_back(found);
        return answer_;
    }

    bool answer_ = false;
};

TEST_F(WholeDriveTest, IsAskedForWithItsFiguresAndEmptiedOnYes) {
    const RunReport report = RunAnswered(true);
    EXPECT_THAT(report.Lines(), IsEmpty());
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].location, "E:\\");
    EXPECT_EQ(asked[0].files, 2U);
    EXPECT_EQ(asked[0].bytes, 6U);
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Data\\", ""}, {"Data\\Sub\\", ""}, {"Data\\Sub\\b.doc", "b"}}));
}

TEST_F(WholeDriveTest, OnNoOnlyWhatWasSavedThereGoes) {
    const RunReport report = RunAnswered(false);
    ASSERT_EQ(report.Lines().size(), 1U);
    EXPECT_THAT(report.Lines()[0].reason, HasSubstr("kept: 1 "));
    EXPECT_FALSE(machine.Exists(R"(E:\Data\a.doc)"));
    EXPECT_EQ(machine.Read(R"(E:\Photos\p.jpg)"), "12345");
}

TEST_F(AfreshTest, TheSystemsOwnFoldersOfADriveAreNothingToARun) {
    Save("E:\\", {R"(C:\Data)"});
    machine.Remove(R"(E:\Save)");
    machine.SeedSystemFolders('E');
    const Tree before = machine.Tree(R"(E:\$RECYCLE.BIN)");
    machine.faults.FailWhen([](const Step& step) {
        return step.path.starts_with(R"(E:\System Volume Information)") ? error::accessDenied : error::success;
    });
    EXPECT_EQ(Run(), exitcode::allDone);
    EXPECT_THAT(ErrorLog(machine), IsEmpty());
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(machine.Tree(R"(E:\$RECYCLE.BIN)"), before);
}

class PlaceTest : public ProgramTest {};

TEST_F(PlaceTest, LocationsWhoseSavedPathsMeetKeepWhatIsTheirs) {
    machine.Seed({{R"(C:\Daily\Docs\a.doc)", "outer", At(9, 0)}, {R"(C:\Docs\a.doc)", "inner", At(10, 0)}});
    Configure(machine, {{R"(E:\B)", {R"(C:\Daily)"}}, {R"(E:\B\Daily)", {R"(C:\Docs)"}}});
    for (const char* mode : {"C", "C", "A"}) {
        EXPECT_EQ(RunUnattended(machine, mode), exitcode::somethingFailed);
        EXPECT_EQ(machine.Read(R"(E:\B\Daily\Docs\a.doc)"), "outer");
        EXPECT_THAT(ErrorLog(machine), Contains(HasSubstr(R"(C:\Docs\a.doc: not saved: C:\Daily\Docs\a.doc)")));
    }
}

TEST_F(PlaceTest, ANameThatTheVolumeFoldsIsOneNameWhateverWeThink) {
    // Our table folds neither of the two; this volume takes them for one.
    DriveOptions options;
    options.upcase = [](char16_t unit) { return unit == u'\u0259' ? u'\u018F' : Upcase(unit); };
    machine.RemoveDrive('E');
    machine.AddDrive('E', options);
    machine.Seed(
        {{"C:\\Data\\\u0259.doc", "older", At(9, 0)}, {"E:\\Save\\Data\\\u018F.doc", "newer copy", At(10, 0)}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.Read("E:\\Save\\Data\\\u018F.doc"), "newer copy") << "a later copy has been overwritten";
}

TEST_F(PlaceTest, AFileTooLargeForTheDiskSaysSo) {
    DriveOptions stick;
    stick.fileSystem = "FAT32";
    machine.AddDrive('F', stick);
    machine.Seed({{R"(C:\Data\large.iso)", "x"}, {R"(C:\Data\a.doc)", "a"}});
    machine.MakeLarge(R"(C:\Data\large.iso)", 5ULL << 30);
    Configure(machine, {{R"(F:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Tree(R"(F:\Save)"), (Tree{{"Data\\", ""}, {"Data\\a.doc", "a"}}));
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre(HasSubstr(R"(C:\Data\large.iso: not saved: it is larger than this disk can hold (4 GB))")));
}

TEST_F(PlaceTest, AnEncryptedFileIsSavedInClearWhereTheDiskCannotEncryptAndThatIsNoted) {
    DriveOptions stick;
    stick.fileSystem = "exFAT";
    machine.AddDrive('F', stick);
    machine.Seed({{R"(C:\Data\secret.doc)", "s", {}, attribute::encrypted}});
    Configure(machine, {{R"(F:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.Read(R"(F:\Save\Data\secret.doc)"), "s");
    EXPECT_THAT(LinesBeside(machine, "Backup Report.txt"),
                Contains(HasSubstr(R"(C:\Data\secret.doc: saved decrypted)")));
}

TEST_F(PlaceTest, AListThatWasLostIsMadeAgain) {
    machine.Seed({{R"(C:\Data\a.doc)", "a"}, {R"(C:\Data\Sub\b.doc)", "b"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    const Lines before = OriginalList(machine, "Save");
    machine.Remove(Beside("Save.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(OriginalList(machine, "Save"), before);
}

/// Steps that the machine makes for a run over so many locations with a source each.
std::size_t StepsOfRun(int locations, const char* mode) {
    InMemoryMachine machine;
    Install(machine);
    std::vector<LocationSetup> setup;
    for (int n = 0; n < locations; ++n) {
        const std::string number = std::to_string(n);
        machine.Seed({{R"(C:\Data)" + number + R"(\a.doc)", "a"}});
        setup.push_back({R"(E:\Many\L)" + number, {R"(C:\Data)" + number}});
    }
    Configure(machine, setup);
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    machine.faults.Reset();
    EXPECT_EQ(RunUnattended(machine, mode), exitcode::allDone);
    return machine.faults.Steps();
}

TEST(ManyLocationsTest, TheWorkGrowsWithTheirNumberAndNotWithItsSquare) {
    for (const char* mode : {"C", "A"}) {
        const std::size_t few = StepsOfRun(40, mode);
        const std::size_t many = StepsOfRun(160, mode);
        EXPECT_LT(many, few * 5) << mode << ": " << few << " steps for 40, " << many << " for 160";
    }
}

}  // namespace
}  // namespace marlok::test
