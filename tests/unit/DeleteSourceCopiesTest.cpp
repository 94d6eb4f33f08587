// What the answer "File Also" does: saved copies, list of original paths and settings of a location lose a source.

#include <algorithm>
#include <utility>

#include "platform/RuntimeError.h"
#include "tests/unit/ProgramFixture.h"
#include "ui/frmSSTab.h"

namespace marlok::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Values = std::map<std::string, std::string>;

constexpr const char* noFiles = "               No Files Selected";

/// The main window on its tab "Files To Backup".
ui::frmSSTab& OpenFilesTab(Program& program) {
    auto& window = program.windows.Load<ui::frmSSTab>(program.session);
    window.SSTab1.SetTab(ui::tab::filesToBackup);
    return window;
}

void Select(ui::frmSSTab& window, const Lines& sources) {
    for (int line = 0; line < window.List4.ListCount(); ++line) {
        window.List4.SetSelected(line, std::ranges::find(sources, window.List4.List(line)) != sources.end());
    }
}

class DeleteSourceCopiesTest : public ProgramTest {
 protected:
    DeleteSourceCopiesTest() {
        machine.Seed(
            {{R"(C:\Data\a.doc)", "a"},
             {R"(C:\Data\Sub\b.txt)", "b"},
             {R"(C:\Notes.txt)", "n"},
             {R"(C:\Music\m.mp3)", "m"},
             {R"(E:\Save\Data\a.doc)", "a"},
             {R"(E:\Save\Data\Sub\b.txt)", "b"},
             {R"(E:\Save\Notes.txt)", "n"},
             {R"(E:\Save\Music\m.mp3)", "m"},
             {R"(D:\Real\r.txt)", "r"},
             {R"(D:\Real\Sub\s.txt)", "s"},
             {Beside("Save.txt"), "C:\\Data\\a.doc\r\nC:\\Data\\Sub\\b.txt\r\nC:\\Notes.txt\r\nC:\\Music\\m.mp3\r\n"}});
        UseSources({R"(C:\Data)", R"(C:\Notes.txt)", R"(C:\Music)"});
    }

    /// Makes these the sources of E:\Save, the first location.
    void UseSources(const Lines& sources) {
        Configure(machine, {{R"(E:\Save)", sources}, {R"(E:\Other)", {R"(C:\Data)"}}});
        machine.Seed({{R"(E:\Other\Data\a.doc)", "other a"}, {Beside("Other.txt"), "C:\\Data\\a.doc\r\n"}});
    }

    /// Takes sources off E:\Save together with their saved copies.
    ui::frmSSTab& Delete(const Lines& sources) {
        ui::frmSSTab& window = OpenFilesTab(program);
        Select(window, sources);
        window.DeleteSourceCopies();
        return window;
    }

    Tree Saved() { return machine.Tree(R"(E:\Save)"); }

    Values Settings(const std::string& section = "Save") { return machine.registry.Values(SettingsKey(section)); }

    /// Texts of the boxes that were shown.
    Lines Told() {
        Lines texts;
        for (const ShownMessage& shown : machine.desktop.Messages()) {
            texts.push_back(shown.text);
        }
        return texts;
    }

    const Tree whole{{"Data\\", ""},  {"Data\\Sub\\", ""},   {"Data\\Sub\\b.txt", "b"}, {"Data\\a.doc", "a"},
                     {"Music\\", ""}, {"Music\\m.mp3", "m"}, {"Notes.txt", "n"}};
    const Tree real{{"Sub\\", ""}, {"Sub\\s.txt", "s"}, {"r.txt", "r"}};
    Program program{machine.machine(), nullptr};
};

TEST_F(DeleteSourceCopiesTest, AFileLosesItsSavedCopy) {
    Delete({R"(C:\Notes.txt)"});
    Tree expected = whole;
    expected.erase("Notes.txt");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(machine.Read(R"(C:\Notes.txt)"), "n");
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, AFolderLosesItsSavedFolderWithAllItsContents) {
    Delete({R"(C:\Data)"});
    EXPECT_EQ(Saved(), (Tree{{"Music\\", ""}, {"Music\\m.mp3", "m"}, {"Notes.txt", "n"}}));
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"Sub\\", ""}, {"Sub\\b.txt", "b"}, {"a.doc", "a"}}));
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, AFileDeepInAFolderLosesThatCopyAlone) {
    UseSources({R"(C:\Data\a.doc)", R"(C:\Music)"});
    Delete({R"(C:\Data\a.doc)"});
    Tree expected = whole;
    expected.erase("Data\\a.doc");
    EXPECT_EQ(Saved(), expected);
}

TEST_F(DeleteSourceCopiesTest, SeveralSourcesGoTogether) {
    Delete({R"(C:\Data)", R"(C:\Notes.txt)"});
    EXPECT_EQ(Saved(), (Tree{{"Music\\", ""}, {"Music\\m.mp3", "m"}}));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Music\m.mp3)"));
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, AFolderCalledLikeAFileGoesWithAllItsContents) {
    machine.Seed({{R"(E:\Save\Site.web\index.htm)", "i"}});
    UseSources({R"(C:\Site.web)", R"(C:\Data)"});
    Delete({R"(C:\Site.web)"});
    EXPECT_EQ(Saved(), whole);
}

TEST_F(DeleteSourceCopiesTest, ASavedFileOfAFoldersNameIsNoneOfItsCopies) {
    machine.Seed({{R"(E:\Save\readme)", "a file"}});
    UseSources({R"(C:\readme)", R"(C:\Data)"});
    Delete({R"(C:\readme)"});
    EXPECT_EQ(machine.Read(R"(E:\Save\readme)"), "a file");
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, ReadOnlyAndHiddenCopiesGoToo) {
    constexpr std::uint32_t odd = attribute::readOnly | attribute::hidden | attribute::system;
    machine.Seed({{R"(E:\Save\Notes.txt)", "n", {}, odd}, {R"(E:\Save\Data\Sub\b.txt)", "b", {}, odd}});
    Delete({R"(C:\Data)", R"(C:\Notes.txt)"});
    EXPECT_EQ(Saved(), (Tree{{"Music\\", ""}, {"Music\\m.mp3", "m"}}));
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, WhatWasNeverSavedIsNoError) {
    machine.Remove(R"(E:\Save\Data)");
    machine.Remove(R"(E:\Save\Notes.txt)");
    Delete({R"(C:\Data)", R"(C:\Notes.txt)"});
    EXPECT_THAT(Told(), IsEmpty());
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, OtherLocationsKeepTheirCopiesListsAndSettings) {
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Tree(R"(E:\Other)"), (Tree{{"Data\\", ""}, {"Data\\a.doc", "other a"}}));
    EXPECT_EQ(machine.Read(Beside("Other.txt")), "C:\\Data\\a.doc\r\n");
    EXPECT_EQ(Settings("Other"), (Values{{"SourcePath2", R"(C:\Data)"}}));
}

TEST_F(DeleteSourceCopiesTest, TheLocationThatIsPickedLosesTheSource) {
    ui::frmSSTab& window = OpenFilesTab(program);
    window.List9.SetListIndex(1);
    Select(window, {R"(C:\Data)"});
    window.DeleteSourceCopies();
    EXPECT_EQ(machine.Tree(R"(E:\Other)"), Tree{});
    EXPECT_EQ(Saved(), whole);
    EXPECT_THAT(Settings("Other"), IsEmpty());
    EXPECT_THAT(Settings(), SizeIs(3));
}

TEST_F(DeleteSourceCopiesTest, TheLinesOfTheSourceAndOfWhatLiesBelowItLeaveTheListWhateverTheirLetterCase) {
    machine.Write(Beside("Save.txt"),
                  "C:\\Music\\m.mp3\r\nc:\\DATA\\A.DOC\r\nC:\\Data2\\x.txt\r\nD:\\Data\\y.txt\r\n"
                  "\\\\server\\share\\C:\\data\\z\r\nC:\\Notes.txt\r\nC:\\Data\r\n");
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Read(Beside("Save.txt")),
              "C:\\Music\\m.mp3\r\nC:\\Data2\\x.txt\r\nD:\\Data\\y.txt\r\n"
              "\\\\server\\share\\C:\\data\\z\r\nC:\\Notes.txt\r\n");
}

TEST_F(DeleteSourceCopiesTest, ALocationThatHasGoneAwayIsReportedAndNothingChanges) {
    const Values settings = Settings();
    const std::string list = machine.Read(Beside("Save.txt"));
    for (const bool missing : {false, true}) {
        Program other(machine.machine(), nullptr);
        ui::frmSSTab& window = OpenFilesTab(other);
        Select(window, {R"(C:\Data)", R"(C:\Notes.txt)"});
        if (missing) {
            machine.Remove(R"(E:\Save)");
        } else {
            machine.SetDriveFailure("E:", error::notReady);
        }
        const std::size_t told = Told().size();
        window.DeleteSourceCopies();
        ASSERT_EQ(Told().size(), told + 1);
        EXPECT_THAT(Told().back(),
                    AllOf(StartsWith("E:\\Save\r\n"), HasSubstr("cannot be reached"), HasSubstr("\"Only Entry\"")));
        EXPECT_EQ(Settings(), settings);
        EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
        EXPECT_THAT(window.List4.Items(), SizeIs(3));
        machine.SetDriveFailure("E:", error::success);
        if (!missing) {
            EXPECT_EQ(Saved(), whole);
        }
    }
}

TEST_F(DeleteSourceCopiesTest, ALocationThatGoesAwayMeanwhileKeepsEntriesAndLines) {
    const Values settings = Settings();
    const std::string list = machine.Read(Beside("Save.txt"));
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Data)", R"(C:\Notes.txt)"});
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Delete" && step.path == R"(E:\Save\Notes.txt)") {
            machine.SetDriveFailure("E:", error::notReady);
        }
    });
    window.DeleteSourceCopies();
    machine.faults.BeforeStep({});
    EXPECT_THAT(Told(), ElementsAre(HasSubstr("cannot be reached")));
    EXPECT_EQ(Settings(), settings);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
}

TEST_F(DeleteSourceCopiesTest, AFileThatStaysKeepsItsLine) {
    machine.Lock(R"(E:\Save\Data\Sub\b.txt)");
    Delete({R"(C:\Data)"});
    EXPECT_THAT(OriginalList(machine, "Save"),
                ElementsAre(R"(C:\Data\Sub\b.txt)", R"(C:\Notes.txt)", R"(C:\Music\m.mp3)"));
}

TEST_F(DeleteSourceCopiesTest, TheLinesOfAWholeDriveStayWithItsCopies) {
    UseSources({"C:\\", R"(D:\Films)"});
    Delete({"C:\\"});
    EXPECT_THAT(OriginalList(machine, "Save"), SizeIs(4));
}

TEST_F(DeleteSourceCopiesTest, ASourceInsideTheRemovedOneKeepsItsCopiesAndLines) {
    UseSources({R"(C:\Data)", R"(C:\DATA\Sub)", R"(C:\Music)"});
    machine.Seed({{R"(E:\Save\Data\Other\o.txt)", "o"}});
    Delete({R"(C:\Data)"});
    Tree expected = whole;
    expected.erase("Data\\a.doc");
    EXPECT_EQ(Saved(), expected);
    EXPECT_THAT(OriginalList(machine, "Save"),
                ElementsAre(R"(C:\Data\Sub\b.txt)", R"(C:\Notes.txt)", R"(C:\Music\m.mp3)"));
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\DATA\Sub)"}, {"SourcePath3", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, ASourceKnownByItsAliasKeepsItsCopiesToo) {
    UseSources({R"(C:\Data)", R"(C:\Data\SUBFOL~1)", R"(C:\Music)"});
    machine.SetAlias(R"(E:\Save\Data\Sub)", "SUBFOL~1");
    Delete({R"(C:\Data)"});
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteSourceCopiesTest, AFolderWhoseInnerSourceWasNeverSavedGoesWhole) {
    UseSources({R"(C:\Data)", R"(C:\Data\Never)", R"(C:\Music)"});
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data)"));
}

TEST_F(DeleteSourceCopiesTest, WhatIsSavedOfAnotherSourceTooStaysAndTheUserIsTold) {
    const Lines lines = OriginalList(machine, "Save");
    for (const char* other : {R"(C:\Data)", R"(D:\Data)", "C:\\"}) {
        UseSources({R"(C:\Data\Sub)", other});
        Program another(machine.machine(), nullptr);
        ui::frmSSTab& window = OpenFilesTab(another);
        Select(window, {R"(C:\Data\Sub)"});
        window.DeleteSourceCopies();
        EXPECT_EQ(Saved(), whole) << other;
        EXPECT_THAT(Told().back(),
                    AllOf(StartsWith("E:\\Save\\Data\\Sub\r\n"), HasSubstr(other), HasSubstr("saved too")));
        EXPECT_EQ(OriginalList(machine, "Save"), lines);
        EXPECT_EQ(Settings(), (Values{{"SourcePath2", other}}));
    }
}

TEST_F(DeleteSourceCopiesTest, ALocationInsideTheSavedFolderStays) {
    UseSources({R"(C:\Data)", R"(C:\Music)"});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\Music)"}}, {R"(E:\Save\Data\Inner)", {R"(C:\Notes.txt)"}}});
    machine.Seed({{R"(E:\Save\Data\Inner\Notes.txt)", "n"}});
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\Inner\Notes.txt)"), "n");
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteSourceCopiesTest, OriginalsAreNeverTakenForSavedCopies) {
    // Saved "into the drive's root", a source of the same drive is its own saved copy.
    machine.Seed({{R"(E:\Docs\d.doc)", "original"}, {R"(E:\$RECYCLE.BIN\x)", "deleted"}});
    Configure(machine, {{"E:\\", {R"(C:\Docs)", R"(E:\Docs)", R"(C:\$RECYCLE.BIN)", R"(C:\Music)"}}});
    Delete({R"(C:\Docs)", R"(E:\Docs)", R"(C:\$RECYCLE.BIN)"});
    EXPECT_EQ(machine.Read(R"(E:\Docs\d.doc)"), "original");
    EXPECT_EQ(machine.Read(R"(E:\$RECYCLE.BIN\x)"), "deleted");
    EXPECT_THAT(Told(), ElementsAre(HasSubstr("which is to be backed up"), HasSubstr("which is to be backed up"),
                                    HasSubstr("belongs to the system")));
}

TEST_F(DeleteSourceCopiesTest, NeitherWindowsNorTheProgramIsASavedCopy) {
    machine.Seed({{R"(D:\Windows\System32\x.dll)", "x"}, {R"(C:\Windows\System32\x.dll)", "real"}});
    Configure(machine, {{"C:\\", {R"(D:\Windows)", R"(D:\Windows\System32)", R"(D:\Program Files)", R"(E:\Music)"}}});
    Delete({R"(D:\Windows)", R"(D:\Windows\System32)", R"(D:\Program Files)"});
    EXPECT_EQ(machine.Read(R"(C:\Windows\System32\x.dll)"), "real");
    EXPECT_TRUE(machine.Exists(Beside("Marlok Backup.exe")));
    EXPECT_THAT(Told(), ElementsAre(HasSubstr("Windows"), HasSubstr("Windows"), HasSubstr("this program")));
}

TEST_F(DeleteSourceCopiesTest, ALineStaysWhileALocationOfTheSameNameHoldsTheFile) {
    machine.Seed({{R"(F:\Save\Data\a.doc)", "a"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\Music)"}}, {R"(F:\Save)", {R"(C:\Data)", R"(C:\Music)"}}});
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data)"));
    EXPECT_EQ(machine.Read(R"(F:\Save\Data\a.doc)"), "a");
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Notes.txt)", R"(C:\Music\m.mp3)"));
}

TEST_F(DeleteSourceCopiesTest, SettingsThatCannotBeReadKeepEverything) {
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Data)"});
    const Values settings = Settings();
    bool failed = false;
    machine.faults.FailWhen([&failed](const Step& step) {
        const bool fails = !failed && step.operation == "QueryValue" && step.path.ends_with(R"(Other\SourcePath2)");
        failed = failed || fails;
        return fails ? error::accessDenied : error::success;
    });
    window.DeleteSourceCopies();
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(failed);
    EXPECT_THAT(Told(), SizeIs(1));
    EXPECT_EQ(Saved(), whole);
    EXPECT_EQ(Settings(), settings);
}

TEST_F(DeleteSourceCopiesTest, LetterCaseBeyondEnglishDoesNotMatterEither) {
    UseSources({"C:\\\u00C4rzte", R"(C:\Music)"});
    machine.Write(Beside("Save.txt"), "c:\\\u00E4RZTE\\x.doc\r\nC:\\Music\\m.mp3\r\n");
    Delete({"C:\\\u00C4rzte"});
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Music\\m.mp3\r\n");
}

TEST_F(DeleteSourceCopiesTest, EmptyLinesLeaveTheListAndALastLineIsEnded) {
    machine.Write(Beside("Save.txt"), "C:\\Music\\m.mp3\r\n\r\n\r\nC:\\Notes.txt\r\nC:\\Music\\last.mp3");
    Delete({R"(C:\Notes.txt)"});
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Music\\m.mp3\r\nC:\\Music\\last.mp3\r\n");
}

TEST_F(DeleteSourceCopiesTest, AListOfWhichNoLineWouldBeLeftIsLeftAsItIs) {
    const std::string list = "C:\\Data\\a.doc\r\nc:\\data\\Sub\\b.txt\r\n";
    machine.Write(Beside("Save.txt"), list);
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, ALocationWithoutAListGetsNone) {
    machine.Remove(Beside("Save.txt"));
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, AnOldListInTheCodePageIsPruned) {
    machine.Write(Beside("Save.txt"), "C:\\Data\\\xE4.doc\r\nC:\\Music\\\xFC.mp3\r\n");
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Music\\\u00FC.mp3\r\n");
}

TEST_F(DeleteSourceCopiesTest, TheRemainingSourcesAreStoredWithoutGaps) {
    const ui::frmSSTab& window = Delete({R"(C:\Notes.txt)"});
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Data)"}, {"SourcePath3", R"(C:\Music)"}}));
    EXPECT_THAT(window.List4.Items(), ElementsAre(R"(C:\Data)", R"(C:\Music)"));
}

TEST_F(DeleteSourceCopiesTest, WithoutAnySourceLeftTheListSaysSo) {
    const ui::frmSSTab& window = Delete({R"(C:\Data)", R"(C:\Notes.txt)", R"(C:\Music)"});
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
    EXPECT_THAT(Settings(), IsEmpty());
    EXPECT_EQ(Saved(), Tree{});
    EXPECT_TRUE(machine.Exists(R"(E:\Save)"));
}

TEST_F(DeleteSourceCopiesTest, TheWorkingStorageIsEmptyAfterwards) {
    const ui::frmSSTab& window = Delete({R"(C:\Data)"});
    EXPECT_THAT(window.List10.Items(), IsEmpty());
    EXPECT_THAT(window.List11.Items(), IsEmpty());
    EXPECT_THAT(window.List12.Items(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, WithoutASelectedSourceNothingChanges) {
    const Values settings = Settings();
    const std::string list = machine.Read(Beside("Save.txt"));
    Delete({});
    EXPECT_EQ(Saved(), whole);
    EXPECT_EQ(Settings(), settings);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
}

TEST_F(DeleteSourceCopiesTest, WithoutAPickedLocationNothingIsDeleted) {
    const Values settings = Settings();
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Data)"});
    window.List9.SetListIndex(-1);
    window.DeleteSourceCopies();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    const ShownMessage& shown = machine.desktop.Messages().front();
    EXPECT_EQ(shown.text, "You Have Not Selected A Target Path To Delete The File From");
    EXPECT_EQ(shown.title, "Marlok Info.....");
    EXPECT_EQ(shown.style, messagestyle::ok | messagestyle::information);
    EXPECT_EQ(Saved(), whole);
    EXPECT_EQ(Settings(), settings);
}

TEST_F(DeleteSourceCopiesTest, TheLineThatSaysThatThereAreNoSourcesIsStoredNowhere) {
    UseSources({});
    OpenFilesTab(program).DeleteSourceCopies();
    EXPECT_THAT(Settings(), IsEmpty());
    EXPECT_EQ(Saved(), whole);
}

TEST_F(DeleteSourceCopiesTest, TheLineThatSaysThatThereAreNoSourcesCanBeDeletedWithoutAWord) {
    UseSources({});
    const ui::frmSSTab& window = Delete({noFiles});
    EXPECT_THAT(Settings(), IsEmpty());
    EXPECT_THAT(window.List4.Items(), ElementsAre(noFiles));
    EXPECT_EQ(Saved(), whole);
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, TheCopiesOfAWholeDriveStayAndTheUserIsTold) {
    UseSources({"C:\\", R"(C:\Music)"});
    Delete({"C:\\"});
    EXPECT_EQ(Saved(), whole);
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith("C:\\\r\n"), HasSubstr("Nothing Was Deleted"))));
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, NoPathLeadsOutOfTheLocation) {
    for (const char* odd : {R"(C:\..\Other)", R"(C:\Data\..\..\Other)", R"(C:\Data\..)", R"(C:\.)", R"(C:\\)",
                            R"(C:\. )", R"(..\Other)", R"(\Other)", R"(C:/Data)", R"(C:\Data/../../Other)", R"(C:\*)",
                            R"(C:\Da*)", R"(C:\*.txt)", R"(C:\?otes.txt)"}) {
        UseSources({odd, R"(C:\Music)"});
        Program other(machine.machine(), nullptr);
        ui::frmSSTab& window = OpenFilesTab(other);
        Select(window, {odd});
        const std::size_t told = Told().size();
        window.DeleteSourceCopies();
        EXPECT_EQ(Saved(), whole) << odd;
        EXPECT_TRUE(machine.Exists(R"(E:\Other\Data\a.doc)")) << odd;
        ASSERT_EQ(Told().size(), told + 1) << odd;
        EXPECT_THAT(Told().back(), HasSubstr("Nothing Was Deleted")) << odd;
        EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Music)"}})) << odd;
    }
}

TEST_F(DeleteSourceCopiesTest, NothingIsDeletedBehindALinkOnTheWay) {
    machine.Remove(R"(E:\Save\Data)");
    machine.MakeLink(R"(E:\Save\Data)", R"(D:\Real)");
    UseSources({R"(C:\Data\Sub)", R"(C:\Data\r.txt)", R"(C:\Music)"});
    Delete({R"(C:\Data\Sub)", R"(C:\Data\r.txt)"});
    EXPECT_EQ(machine.Tree(R"(D:\Real)"), real);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data)"));
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith("E:\\Save\\Data\\Sub\r\n"), HasSubstr("Could Not Be Deleted"),
                                          HasSubstr("link leads out")),
                                    AllOf(StartsWith("E:\\Save\\Data\\r.txt\r\n"), HasSubstr("Could Not Be Deleted"),
                                          HasSubstr("link leads out"))));
}

TEST_F(DeleteSourceCopiesTest, ASavedFolderThatIsALinkGoesWithoutItsTarget) {
    machine.Remove(R"(E:\Save\Data)");
    machine.MakeLink(R"(E:\Save\Data)", R"(D:\Real)");
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data)"));
    EXPECT_EQ(machine.Tree(R"(D:\Real)"), real);
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, ASavedFileThatIsALinkGoesWithoutItsTarget) {
    machine.Remove(R"(E:\Save\Notes.txt)");
    machine.MakeFileLink(R"(E:\Save\Notes.txt)", R"(D:\Real\r.txt)");
    Delete({R"(C:\Notes.txt)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Notes.txt)"));
    EXPECT_EQ(machine.Tree(R"(D:\Real)"), real);
}

TEST_F(DeleteSourceCopiesTest, ALinkInTheSavedFolderGoesWithoutItsTarget) {
    machine.MakeLink(R"(E:\Save\Data\Sub\away)", R"(D:\Real)");
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data)"));
    EXPECT_EQ(machine.Tree(R"(D:\Real)"), real);
}

TEST_F(DeleteSourceCopiesTest, WhereALinkCannotBeRemovedItStaysAndTheUserIsTold) {
    machine.files.SetCanRemoveLinks(false);
    machine.MakeLink(R"(E:\Save\Data\away)", R"(D:\Real)");
    Delete({R"(C:\Data)"});
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\away)"));
    EXPECT_EQ(machine.Tree(R"(D:\Real)"), real);
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith("E:\\Save\\Data\r\n"), HasSubstr("Could Not Be Deleted"))));
}

TEST_F(DeleteSourceCopiesTest, ALocationThatIsItselfALinkLosesItsCopies) {
    machine.Remove(R"(E:\Save)");
    machine.Seed({{R"(D:\Store\Data\a.doc)", "a"}, {R"(D:\Store\Notes.txt)", "n"}});
    machine.MakeLink(R"(E:\Save)", R"(D:\Store)");
    Delete({R"(C:\Data)"});
    EXPECT_EQ(machine.Tree(R"(D:\Store)"), (Tree{{"Notes.txt", "n"}}));
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, ASavedFileInUseIsTold) {
    machine.Lock(R"(E:\Save\Notes.txt)");
    Delete({R"(C:\Notes.txt)"});
    EXPECT_EQ(machine.Read(R"(E:\Save\Notes.txt)"), "n");
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    const ShownMessage& shown = machine.desktop.Messages().front();
    EXPECT_THAT(shown.text, AllOf(StartsWith("E:\\Save\\Notes.txt\r\n"), HasSubstr("Could Not Be Deleted"),
                                  EndsWith("(error 32)")));
    EXPECT_EQ(shown.title, "Marlok Info.....");
    EXPECT_EQ(shown.style, messagestyle::ok | messagestyle::information);
}

TEST_F(DeleteSourceCopiesTest, AFileInUseInASavedFolderIsToldAndTheOthersGo) {
    machine.Lock(R"(E:\Save\Data\Sub\b.txt)");
    Delete({R"(C:\Data)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\Sub\b.txt)"));
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith("E:\\Save\\Data\r\n"), HasSubstr("Could Not Be Deleted"))));
}

TEST_F(DeleteSourceCopiesTest, ACopyThatCannotBeLookedAtIsTold) {
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Notes.txt)"});
    machine.faults.FailWhen(
        [](const Step& step) { return step.path == R"(E:\Save\Notes.txt)" ? error::accessDenied : error::success; });
    window.DeleteSourceCopies();
    machine.faults.FailWhen(nullptr);
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith("E:\\Save\\Notes.txt\r\n"), EndsWith("(error 5)"))));
}

TEST_F(DeleteSourceCopiesTest, SourcesThatCannotBeStoredAreTold) {
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Notes.txt)"});
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "SetValue" ? error::accessDenied : error::success; });
    window.DeleteSourceCopies();
    machine.faults.FailWhen(nullptr);
    EXPECT_THAT(Told(), SizeIs(1));
}

TEST_F(DeleteSourceCopiesTest, OneCopyThatStaysKeepsNoOther) {
    machine.Lock(R"(E:\Save\Notes.txt)");
    Delete({R"(C:\Notes.txt)", R"(C:\Music)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Music)"));
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Data)"}}));
}

TEST_F(DeleteSourceCopiesTest, ANetworkSourcesCopyLiesInFoldersOfItsServerAndShare) {
    machine.Seed({{R"(E:\Save\server\share\x\y.txt)", "y"},
                  {R"(E:\Save\server\share\z.txt)", "z"},
                  {R"(\\server\share\x\y.txt)", "original"}});
    UseSources({R"(\\server\share\x)", R"(C:\Data)"});
    Delete({R"(\\server\share\x)"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\server\share\x)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\server\share\z.txt)"));
    EXPECT_EQ(machine.Read(R"(\\server\share\x\y.txt)"), "original");
    EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(DeleteSourceCopiesTest, AListThatCannotBeWrittenIsToldAndStaysAsItIs) {
    const std::string list = machine.Read(Beside("Save.txt"));
    ui::frmSSTab& window = OpenFilesTab(program);
    Select(window, {R"(C:\Data)"});
    machine.faults.FailWhen([](const Step& step) {
        return step.mutates && step.path == Beside("~Marlok Backup.new") ? error::diskFull : error::success;
    });
    window.DeleteSourceCopies();
    machine.faults.FailWhen(nullptr);
    EXPECT_THAT(Told(), ElementsAre(AllOf(StartsWith(Beside("Save.txt") + "\r\n"), HasSubstr("Could Not Be Changed"),
                                          EndsWith("(error 112)"))));
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Notes.txt)"}, {"SourcePath3", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, AListInUseIsToldAndTheSourceLeavesTheSettings) {
    const std::string list = machine.Read(Beside("Save.txt"));
    machine.Lock(Beside("Save.txt"));
    EXPECT_NO_THROW(Delete({R"(C:\Data)"}));
    EXPECT_THAT(Told(), ElementsAre(StartsWith(Beside("Save.txt"))));
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Notes.txt)"}, {"SourcePath3", R"(C:\Music)"}}));
}

TEST_F(DeleteSourceCopiesTest, ASecondDeletionFindsNothingMoreToDo) {
    ui::frmSSTab& window = Delete({R"(C:\Data)"});
    const Tree after = Saved();
    window.DeleteSourceCopies();
    EXPECT_EQ(Saved(), after);
    EXPECT_EQ(Settings(), (Values{{"SourcePath2", R"(C:\Notes.txt)"}, {"SourcePath3", R"(C:\Music)"}}));
}

/// What is deleted while something goes wrong.
struct Scene {
    const char* what;
    const char* location;
    const char* listName;  ///< of its list of original paths
    bool linked;           ///< a link leads out of one of the folders to be deleted
};

constexpr Scene plain{"Plain", R"(E:\Save)", "Save.txt", false};
constexpr Scene linked{"Linked", R"(E:\Save)", "Save.txt", true};
constexpr Scene nested{"Nested", R"(E:\Backups\Daily)", R"(Backups\Daily.txt)", false};

/// What no deletion of C:\Data and C:\Notes.txt may touch, whatever goes wrong.
struct Untouched {
    Untouched(InMemoryMachine& machine, const std::string& location)
        : data(machine.Tree(R"(C:\Data)")),
          music(machine.Tree(R"(C:\Music)")),
          real(machine.Tree(R"(D:\Real)")),
          savedMusic(machine.Tree(location + R"(\Music)")),
          other(machine.Tree(R"(E:\Other)")),
          notes(machine.Read(R"(C:\Notes.txt)")),
          otherList(machine.Read(Beside("Other.txt"))),
          otherSettings(machine.registry.Values(SettingsKey("Other"))) {}

    friend bool operator==(const Untouched&, const Untouched&) = default;

    Tree data;
    Tree music;
    Tree real;
    Tree savedMusic;
    Tree other;
    std::string notes;
    std::string otherList;
    Values otherSettings;
};

enum class End { byItself, runTimeError, death };

/// One deletion of two of a location's three sources on a machine of its own.
class Deletion {
 public:
    explicit Deletion(const Scene& scene) : scene_(scene) {
        Install(machine);
        machine.Seed({{R"(C:\Data\a.doc)", "a", At(10, 0)},
                      {R"(C:\Data\Sub\b.txt)", "b", At(10, 0), attribute::readOnly},
                      {R"(C:\Notes.txt)", "n", At(10, 0)},
                      {R"(C:\Music\m.mp3)", "m", At(10, 0)},
                      {R"(D:\Real\r.txt)", "r"}});
        Configure(machine, {{scene.location, {R"(C:\Data)", R"(C:\Notes.txt)", R"(C:\Music)"}},
                            {R"(E:\Other)", {R"(C:\Data)"}}});
        EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
        if (scene.linked) {
            machine.MakeLink(std::string(scene.location) + R"(\Data\Sub\away)", R"(D:\Real)");
        }
        machine.faults.TearWrites(true);
    }

    /// Deletes; `disturb` sets the faults at the last moment before.
    End Run(const std::function<void(FaultPlan&)>& disturb) {
        const Untouched before(machine, scene_.location);
        const std::string oldList = machine.Read(Beside(scene_.listName));
        const End end = Delete(disturb);
        const bool fired = machine.faults.Fired();
        machine.Restart();
        EXPECT_TRUE(Untouched(machine, scene_.location) == before);
        ExpectTrueList(oldList);
        if (end == End::byItself) {
            ExpectNothingInSilence();
        }
        disturbed_ = fired;
        return end;
    }

    /// False when the run did not reach the step that was to be disturbed.
    [[nodiscard]] bool Disturbed() const { return disturbed_; }

    /// The next start and run leave no working file behind.
    void ExpectCleanedUp() {
        static_cast<void>(RunUnattended(machine, "C"));
        EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
    }

    InMemoryMachine machine;

 private:
    End Delete(const std::function<void(FaultPlan&)>& disturb) {
        Program program(machine.machine(), nullptr);
        ui::frmSSTab& window = OpenFilesTab(program);
        Select(window, {R"(C:\Data)", R"(C:\Notes.txt)"});
        machine.faults.Reset();
        disturb(machine.faults);
        try {
            window.DeleteSourceCopies();
        } catch (const RuntimeError&) {
            return End::runTimeError;
        } catch (const ProcessDied&) {
            return End::death;
        }
        return End::byItself;
    }

    /// The list is whole, nothing was added to it, and each saved file that is still there has its line.
    void ExpectTrueList(const std::string& oldList) {
        ASSERT_TRUE(machine.Exists(Beside(scene_.listName)));
        const std::string list = machine.Read(Beside(scene_.listName));
        EXPECT_THAT(list, EndsWith("C:\\Music\\m.mp3\r\n"));
        EXPECT_THAT(LinesOf(oldList), testing::IsSupersetOf(LinesOf(list)));
        for (const std::string& line : LinesOf(oldList)) {
            if (machine.Exists(std::string(scene_.location) + line.substr(2))) {
                EXPECT_THAT(LinesOf(list), testing::Contains(line));
            }
        }
    }

    /// What is not on the location's list of sources any more has no copies left, or the user was told.
    void ExpectNothingInSilence() {
        std::string sources;
        for (const auto& [name, data] : machine.registry.Values(SettingsKey(std::string(scene_.location).substr(3)))) {
            sources += data + "\r\n";
        }
        for (const char* source : {R"(C:\Data)", R"(C:\Notes.txt)"}) {
            if (machine.Exists(scene_.location + std::string(source).substr(2)) &&
                sources.find(source) == std::string::npos) {
                EXPECT_THAT(machine.desktop.Messages(), testing::Not(IsEmpty())) << source;
            }
        }
    }

    Scene scene_;
    bool disturbed_ = false;
};

constexpr std::size_t fewestSteps = 25;

class DeletionFailsTest : public testing::TestWithParam<Scene> {};

TEST_P(DeletionFailsTest, OneFailureAtAnyStepTouchesNothingElse) {
    bool disturbed = true;
    for (std::size_t k = 1; disturbed && !HasFailure(); ++k) {
        SCOPED_TRACE("step " + std::to_string(k) + " failed");
        Deletion deletion(GetParam());
        const End end = deletion.Run(
            [k](FaultPlan& faults) { faults.FailAt(k, k % 2 == 0 ? error::accessDenied : error::diskFull); });
        disturbed = deletion.Disturbed();
        EXPECT_NE(end, End::death);
        EXPECT_TRUE(disturbed || k > fewestSteps);
        EXPECT_EQ(deletion.machine.Leaks(), "");
        deletion.ExpectCleanedUp();
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, DeletionFailsTest, testing::Values(plain, linked, nested),
                         [](const auto& scene) { return scene.param.what; });

class DeletionDiesTest : public testing::TestWithParam<Scene> {};

TEST_P(DeletionDiesTest, DeathAtAnyStepTouchesNothingElse) {
    bool died = true;
    for (std::size_t k = 1; died && !HasFailure(); ++k) {
        SCOPED_TRACE("the process died at step " + std::to_string(k));
        Deletion deletion(GetParam());
        died = deletion.Run([k](FaultPlan& faults) {
            faults.TearWrites(true);
            faults.DieAt(k);
        }) == End::death;
        EXPECT_TRUE(died || k > fewestSteps);
        deletion.ExpectCleanedUp();
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, DeletionDiesTest, testing::Values(plain, linked, nested),
                         [](const auto& scene) { return scene.param.what; });

}  // namespace
}  // namespace marlok::test
