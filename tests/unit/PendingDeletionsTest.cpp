#include "engine/PendingDeletions.h"

#include "platform/RuntimeError.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class PendingDeletionsTest : public ProgramTest {
 protected:
    PendingDeletionsTest() {
        Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
        machine.Seed({{R"(C:\Data\a.doc)", "a"},
                      {R"(E:\Save\Data\a.doc)", "saved"},
                      {R"(E:\Save\Old\Deep\Deeper\)"},
                      {R"(E:\Save\Old\Other\)"}});
    }

    void WriteList(const std::string& text) { machine.Seed({{Beside("DeleteFolder.txt"), text}}); }

    /// Carries out a list and returns what it reports, "path: reason" each.
    Lines CarryOut(const std::string& text) {
        WriteList(text);
        return Reported();
    }

    Lines Reported() {
        Lines lines;
        const RunReport report = CarryOutPendingDeletions(machine.machine());
        for (const RunReport::Line& line : report.Lines()) {
            lines.push_back(line.path + ": " + ReasonOf(machine.system, line));
        }
        return lines;
    }

    [[nodiscard]] bool ListIsThere() const { return machine.Exists(Beside("DeleteFolder.txt")); }
};

TEST_F(PendingDeletionsTest, AFolderWithoutFilesGoesWithTheFoldersInIt) {
    EXPECT_THAT(CarryOut("E:\\Save\\Old\r\nE:\\Save\\Old\\Deep\r\nE:\\Save\\Old\\Deep\\Deeper\r\n"), IsEmpty());
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Old)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_FALSE(ListIsThere());
}

TEST_F(PendingDeletionsTest, NothingButFoldersIsEverRemoved) {
    WriteList("E:\\Save\\Old\r\nE:\\Save\\Data\r\nE:\\Save\\Data\\a.doc\r\n");
    machine.faults.Reset();
    EXPECT_THAT(Reported(), SizeIs(2));
    EXPECT_EQ(machine.faults.Count("Delete"), 1U) << "the list itself";
    EXPECT_EQ(machine.faults.Count("RemoveLink"), 0U);
    EXPECT_EQ(machine.faults.Count("Shell.Perform"), 0U);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(PendingDeletionsTest, AFolderThatHasBeenFilledSinceIsKeptAndReported) {
    machine.Seed({{R"(E:\Save\Old\Deep\Deeper\new.doc)", "new"}});
    EXPECT_THAT(CarryOut("E:\\Save\\Old\r\n"),
                ElementsAre(AllOf(HasSubstr("E:\\Save\\Old: not deleted"), HasSubstr("new.doc"))));
    EXPECT_EQ(machine.Read(R"(E:\Save\Old\Deep\Deeper\new.doc)"), "new");
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old\Other)")) << "not even in part";
}

TEST_F(PendingDeletionsTest, AFileIsKeptAndReported) {
    EXPECT_THAT(CarryOut("E:\\Save\\Data\\a.doc\r\n"), ElementsAre(HasSubstr("is no folder")));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(PendingDeletionsTest, OnlyAFullPlainPathBelowARootIsCarriedOut) {
    machine.Seed({{R"(E:\S\)"}, {R"(\\server\share\Old\)"}, {R"(C:\Windows\Temp\Old\)"}});
    machine.AddDrive('F');
    const Tree c = machine.Tree("C:\\");
    const Tree e = machine.Tree("E:\\");
    const Tree share = machine.Tree("\\\\server\\share");
    for (const char* line : {"\\",
                             "C:",
                             "C:\\",
                             "C:\\.",
                             "C:\\..",
                             "E:\\S\\..",
                             "E:",
                             "E:\\",
                             "E:/",
                             "E:\\*",
                             "E:\\S\\*",
                             "E:\\?",
                             "E:S",
                             "\\S",
                             "S",
                             "..\\S",
                             ".",
                             "..",
                             "*",
                             "E:\\S\\.",
                             "E:\\.\\S",
                             "E:\\S ",
                             "E:\\S.",
                             "E:\\S\\",
                             "E:\\\\S",
                             "E:\\Save\\..\\S",
                             "E:\\Save/Old",
                             "E:/Save/Old",
                             "F:\\",
                             "\\\\server\\share",
                             "\\\\server\\share\\",
                             "\\\\server",
                             "\\\\server\\share\\Old\\..",
                             "\\\\server\\.\\Old",
                             "\\\\?\\E:\\S",
                             "\\\\.\\E:\\S",
                             "E:\\Save\\Old:stream",
                             "E:\\nul",
                             "E:\\Save\\CON",
                             "\tE:\\S",
                             "\"E:\\S\""}) {
        EXPECT_THAT(CarryOut(std::string(line) + "\r\n"), ElementsAre(HasSubstr("not the full, plain path"))) << line;
        EXPECT_EQ(machine.Tree("C:\\"), c) << line;
        EXPECT_EQ(machine.Tree("E:\\"), e) << line;
        EXPECT_EQ(machine.Tree("\\\\server\\share"), share) << line;
    }
}

TEST_F(PendingDeletionsTest, AFolderOnAShareGoes) {
    machine.Seed({{R"(\\server\share\Old\Deep\)"}});
    EXPECT_THAT(CarryOut("\\\\server\\share\\Old\r\n"), IsEmpty());
    EXPECT_EQ(machine.Tree("\\\\server\\share"), Tree{});
}

TEST_F(PendingDeletionsTest, NeitherALinkNorWhatLiesBehindItGoes) {
    machine.Seed({{R"(D:\Real\Empty\)"}});
    machine.MakeLink(R"(E:\Save\Link)", R"(D:\Real)");
    machine.MakeLink(R"(E:\Save\Old\Deep\Away)", R"(D:\Real\Empty)");
    EXPECT_THAT(
        CarryOut("E:\\Save\\Link\r\nE:\\Save\\Link\\Empty\r\nE:\\Save\\Old\r\n"),
        ElementsAre(HasSubstr("is a link"), HasSubstr("is a link"), HasSubstr("it holds E:\\Save\\Old\\Deep\\Away")));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Link)"));
    EXPECT_TRUE(machine.Exists(R"(D:\Real\Empty)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old\Deep\Away)"));
}

TEST_F(PendingDeletionsTest, AFolderThatCannotBeListedIsKept) {
    machine.Deny(R"(E:\Save\Old\Deep)");
    EXPECT_THAT(CarryOut("E:\\Save\\Old\r\n"), ElementsAre(HasSubstr("cannot be listed")));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old\Other)"));
    machine.Deny(R"(E:\Save\Old\Deep)", false);
}

TEST_F(PendingDeletionsTest, WhatIsToBeKeptIsKeptEvenWithoutAFile) {
    machine.Seed({{R"(E:\Empty\Source\)"}, {R"(E:\Place\Other\)"}, {R"(E:\Gone\)"}, {R"(C:\Users\Me\Old\)"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(E:\Empty\Source)", R"(E:\Gone\Yet\x.doc)"}},
                        {R"(E:\Place\Other)", {R"(C:\Data)"}}});
    EXPECT_THAT(CarryOut("E:\\Empty\r\nE:\\Empty\\Source\r\nE:\\Gone\r\nE:\\Place\r\nE:\\Place\\Other\r\n"),
                ElementsAre(HasSubstr(R"(E:\Empty\Source, which is to be backed up)"),
                            HasSubstr(R"(E:\Empty\Source, which is to be backed up)"),
                            HasSubstr(R"(E:\Gone\Yet\x.doc, which is to be backed up)"),
                            HasSubstr(R"(the backup location E:\Place\Other)"),
                            HasSubstr(R"(the backup location E:\Place\Other)")));
    EXPECT_TRUE(machine.Exists(R"(E:\Empty\Source)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Gone)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Place\Other)"));
}

TEST_F(PendingDeletionsTest, ProgramWindowsAndProfileAreKept) {
    machine.process.programFolder = R"(E:\Tools\Marlok)";
    machine.Seed({{R"(E:\Tools\Marlok\DeleteFolder.txt)", "E:\\Tools\r\nE:\\Tools\\Marlok\r\n"}});
    EXPECT_THAT(Reported(),
                ElementsAre(HasSubstr("E:\\Tools: not deleted"), HasSubstr("E:\\Tools\\Marlok: not deleted")));
    EXPECT_TRUE(machine.Exists(R"(E:\Tools\Marlok)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Tools\Marlok\DeleteFolder.txt)"));
}

TEST_F(PendingDeletionsTest, AnotherNameOfAProtectedFolderHidesNothing) {
    // E:\Empty is reached as S:\ too, and that is how the source is named.
    machine.Seed({{R"(E:\Empty\Source\)"}});
    machine.disk.Substitute("S:", R"(E:\Empty)");
    Configure(machine, {{R"(E:\Save)", {R"(S:\Source)"}}});
    EXPECT_THAT(CarryOut("E:\\Empty\r\n"), ElementsAre(HasSubstr(R"(S:\Source, which is to be backed up)")));
    EXPECT_TRUE(machine.Exists(R"(E:\Empty\Source)"));
}

TEST_F(PendingDeletionsTest, WhatCannotBeFoundOutCountsAsHeld) {
    WriteList("E:\\Save\\Old\r\n");
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "FinalPath" && step.path == R"(C:\Data)" ? error::accessDenied : error::success;
    });
    EXPECT_THAT(Reported(), ElementsAre(HasSubstr("perhaps C:\\Data")));
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old)"));
}

TEST_F(PendingDeletionsTest, SettingsThatCannotBeReadKeepEverything) {
    WriteList("E:\\Save\\Old\r\n");
    bool failed = false;
    machine.faults.FailWhen([&failed](const Step& step) {
        const bool fails = !failed && step.operation == "QueryValue" && step.path.ends_with("SourcePath2");
        failed = failed || fails;
        return fails ? error::accessDenied : error::success;
    });
    EXPECT_THAT(Reported(), ElementsAre(HasSubstr("could not be read")));
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old)"));
}

TEST_F(PendingDeletionsTest, TheSystemsFoldersAreKept) {
    machine.Seed({{R"(E:\$RECYCLE.BIN\S-1\)"}});
    EXPECT_THAT(CarryOut("E:\\$RECYCLE.BIN\r\nE:\\$RECYCLE.BIN\\S-1\r\n"),
                ElementsAre(HasSubstr("belongs to the system"), HasSubstr("belongs to the system")));
    EXPECT_TRUE(machine.Exists(R"(E:\$RECYCLE.BIN\S-1)"));
}

TEST_F(PendingDeletionsTest, NothingIsSaidOfWhatIsGoneAlready) {
    EXPECT_THAT(CarryOut("E:\\Save\\Never\r\nE:\\Nowhere\\Never\r\n"), IsEmpty());
}

TEST_F(PendingDeletionsTest, ADriveThatIsAwayIsReported) {
    EXPECT_THAT(CarryOut("N:\\Save\\Old\r\n"), ElementsAre(HasSubstr("N:\\Save\\Old: not deleted")));
    WriteList("E:\\Save\\Old\r\n");
    machine.SetDriveFailure("E:", error::notReady);
    EXPECT_THAT(Reported(), ElementsAre(HasSubstr("not ready")));
    machine.SetDriveFailure("E:", error::success);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old)"));
}

TEST_F(PendingDeletionsTest, ReadOnlyFoldersGoToo) {
    machine.SetAttributes(R"(E:\Save\Old\Deep)", attribute::readOnly);
    machine.SetAttributes(R"(E:\Save\Old)", attribute::readOnly | attribute::hidden);
    EXPECT_THAT(CarryOut("E:\\Save\\Old\r\n"), IsEmpty());
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Old)"));
}

TEST_F(PendingDeletionsTest, TheListIsUsedUpBeforeAnythingIsDeleted) {
    WriteList("E:\\Save\\Old\r\n");
    bool early = false;
    machine.faults.BeforeStep(
        [&](const Step& step) { early = early || (step.operation == "RemoveFolder" && ListIsThere()); });
    EXPECT_THAT(Reported(), IsEmpty());
    machine.faults.BeforeStep({});
    EXPECT_FALSE(early);
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Old)"));
}

TEST_F(PendingDeletionsTest, AListThatCannotBeUsedUpIsNotCarriedOut) {
    WriteList("E:\\Save\\Old\r\n");
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "Delete" && step.path == Beside("DeleteFolder.txt") ? error::sharingViolation
                                                                                     : error::success;
    });
    EXPECT_THAT(Reported(), ElementsAre(AllOf(HasSubstr("DeleteFolder.txt: the folders in it were not deleted"),
                                              HasSubstr("(error 32)"))));
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Old)"));
    EXPECT_TRUE(ListIsThere());
}

TEST_F(PendingDeletionsTest, AListThatIsNoTextGoesAndIsReported) {
    EXPECT_THAT(CarryOut(std::string(4096, '\0')), ElementsAre(HasSubstr("(error 13)")));
    EXPECT_FALSE(ListIsThere());
}

TEST_F(PendingDeletionsTest, OtherEncodingsAndLineEndsAreUnderstood) {
    machine.Seed({{"E:\\Save\\\u00C4lt\\"}, {R"(E:\Save\Two\)"}});
    EXPECT_THAT(CarryOut("E:\\Save\\\xC4lt\nE:\\Save\\Two\n"), IsEmpty());
    EXPECT_FALSE(machine.Exists("E:\\Save\\\u00C4lt"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Two)"));
}

TEST_F(PendingDeletionsTest, AQueuedNameOfAnyKindComesBackExactly) {
    const std::string odd = "E:\\Save\\a\xED\xA0\xBD";
    machine.Seed({{odd + "\\"}});
    ASSERT_EQ(QueueDeletions(machine.machine(), {odd}), error::success);
    EXPECT_EQ(machine.Read(Beside("DeleteFolder.txt")), "E:\\Save\\a<D83D>\r\n");
    EXPECT_THAT(Reported(), IsEmpty());
    EXPECT_FALSE(machine.Exists(odd));
}

/// What no deletion of E:\Save\Old and E:\Save\Filled may touch.
void PrepareSweep(InMemoryMachine& machine) {
    Install(machine);
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.Seed({{R"(C:\Data\a.doc)", "a"},
                  {R"(E:\Save\Data\a.doc)", "saved"},
                  {R"(E:\Save\Old\Deep\Deeper\)"},
                  {R"(E:\Save\Filled\Sub\f.doc)", "filled"},
                  {Beside("DeleteFolder.txt"), "E:\\Save\\Old\r\nE:\\Save\\Filled\r\n"}});
    machine.faults.Reset();
}

/// Every file is where it was, and so is every folder but those that were to go.
void ExpectOnlyEmptyFoldersGone(InMemoryMachine& machine) {
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "a");
    Tree left = machine.Tree(R"(E:\Save)");
    for (const char* folder : {"Old\\", "Old\\Deep\\", "Old\\Deep\\Deeper\\"}) {
        left.erase(folder);
    }
    EXPECT_EQ(left, (Tree{{"Data\\", ""},
                          {"Data\\a.doc", "saved"},
                          {"Filled\\", ""},
                          {"Filled\\Sub\\", ""},
                          {"Filled\\Sub\\f.doc", "filled"}}));
    EXPECT_TRUE(machine.Exists(Beside("Marlok Backup.exe")));
}

TEST(PendingDeletionsSweep, AFailureAtAnyStepIsReportedAndLosesNothing) {
    for (std::size_t k = 1;; ++k) {
        SCOPED_TRACE("step " + std::to_string(k) + " failed");
        InMemoryMachine machine;
        PrepareSweep(machine);
        machine.faults.FailAt(k, k % 2 == 0 ? error::accessDenied : error::ioDevice);
        std::size_t reported = 0;
        bool ended = false;
        try {
            reported = CarryOutPendingDeletions(machine.machine()).Lines().size();
        } catch (const RuntimeError&) {
            ended = true;  // a list that cannot be read ends the program
        }
        const bool fired = machine.faults.Fired();
        machine.faults.Reset();
        ExpectOnlyEmptyFoldersGone(machine);
        EXPECT_EQ(machine.Leaks(), "");
        // E:\Save\Filled is reported in any case. Whatever else stays is reported as well: nothing stays in silence but
        // a list that was not seen.
        const bool seen = !machine.Exists(Beside("DeleteFolder.txt"));
        EXPECT_TRUE(ended || !seen || !machine.Exists(R"(E:\Save\Old)") || reported > 1);
        EXPECT_TRUE(ended || !seen || reported > 0);
        if (!fired) {
            EXPECT_FALSE(machine.Exists(R"(E:\Save\Old)"));
            EXPECT_GT(k, 30U);
            return;
        }
    }
}

TEST(PendingDeletionsSweep, DeathAtAnyStepLosesNothingAndTheNextStartDeletesNothingOnItsWord) {
    for (std::size_t k = 1;; ++k) {
        SCOPED_TRACE("the process died at step " + std::to_string(k));
        InMemoryMachine machine;
        PrepareSweep(machine);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            static_cast<void>(CarryOutPendingDeletions(machine.machine()));
        } catch (const ProcessDied&) {
            died = true;
        }
        machine.Restart();
        ExpectOnlyEmptyFoldersGone(machine);
        const bool begun = !machine.Exists(R"(E:\Save\Old\Deep\Deeper)");
        EXPECT_FALSE(begun && machine.Exists(Beside("DeleteFolder.txt")));
        if (!died) {
            EXPECT_GT(k, 30U);
            return;
        }
    }
}

}  // namespace
}  // namespace marlok::test
