// "Delete Entry" on the tab "Review Saved": saved files, or lines of the list of original paths.

#include "platform/RuntimeError.h"
#include "tests/unit/MainWindowFixture.h"
#include "ui/frmReplace.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t confirmation = messagestyle::okCancel | messagestyle::information;
constexpr const char* list = "C:\\Data\\a.doc\r\nC:\\Data\\Old\\b.txt\r\nC:\\Music\\m.mp3\r\n";

void Prepare(InMemoryMachine& machine) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", "a"},
                  {R"(E:\Save\Data\Old\b.txt)", "b"},
                  {R"(E:\Save\Music\m.mp3)", "m"},
                  {R"(C:\Data\a.doc)", "original a"},
                  {R"(C:\Data\Old\b.txt)", "original b"},
                  {Beside("Save.txt"), list}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
}

class DeleteEntriesTest : public MainWindowFixture {
 protected:
    DeleteEntriesTest() { Prepare(machine); }

    /// Lists the saved files, marks those that end in `names`, and presses "Delete Entry", answering OK.
    ui::frmSSTab& Delete(const Lines& names) {
        ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
        window.Command13.Click();
        Mark(window, names);
        machine.desktop.Answer(button::ok);
        window.Command17.Click();
        return window;
    }

    static void Mark(ui::frmSSTab& window, const Lines& names) {
        std::vector<int> lines;
        for (int line = 0; line < window.List6.ListCount(); ++line) {
            for (const std::string& name : names) {
                if (window.List6.List(line).ends_with(name)) {
                    lines.push_back(line);
                }
            }
        }
        window.List6.UserSelected(lines.empty() ? -1 : lines.back(), lines);
    }

    std::string Pending() { return machine.Read(Beside("DeleteFolder.txt")); }
};

TEST_F(DeleteEntriesTest, CancelDeletesNothing) {
    const test::Tree before = machine.Tree(R"(E:\Save)");
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc"});
    machine.desktop.Answer(button::cancel);
    window.Command17.Click();
    ExpectMessage("You Are About To Delete Selections From The Saved Files", confirmation);
    EXPECT_EQ(machine.Tree(R"(E:\Save)"), before);
    EXPECT_TRUE(window.IsVisible());
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
}

TEST_F(DeleteEntriesTest, DeletedFilesGoFromDiskAndListAndTheProgramStartsAgain) {
    Delete({"b.txt"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Old\b.txt)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_EQ(machine.Read(R"(C:\Data\Old\b.txt)"), "original b");
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Music\m.mp3)"));
    EXPECT_EQ(Pending(), "E:\\Save\\Data\\Old\r\n");
    EXPECT_THAT(machine.process.Started(), ElementsAre(Beside("Restart.exe")));
    EXPECT_FALSE(program.windows.AnyLoaded());
}

TEST_F(DeleteEntriesTest, TheNextStartRemovesTheEmptiedFolders) {
    Delete({"b.txt"});
    machine.Restart();
    Program next(machine.machine(), nullptr);
    EXPECT_EQ(RunProgram(machine, "C"), exitcode::allDone);
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\Old\b.txt)")) << "saved again by that run";
}

TEST_F(DeleteEntriesTest, ALinkThatStandsWhereAnEmptyFolderStoodStaysAndIsReported) {
    machine.Seed({{R"(D:\Real\r.txt)", "r"}});
    Delete({"m.mp3"});
    EXPECT_EQ(Pending(), "E:\\Save\\Music\r\n");
    machine.Remove(R"(E:\Save\Music)");
    machine.MakeLink(R"(E:\Save\Music)", R"(D:\Real)");
    machine.Restart();
    static_cast<void>(RunProgram(machine, "C Nowhere"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Music)"));
    EXPECT_EQ(machine.Read(R"(D:\Real\r.txt)"), "r");
    EXPECT_THAT(machine.process.ErrorLines(), testing::Contains(HasSubstr("E:\\Save\\Music: not deleted")));
}

TEST_F(DeleteEntriesTest, ParentsThatHoldNoFileAnyMoreComeFirst) {
    machine.Seed({{R"(E:\Save\Deep\Deeper\x.txt)", "x"}});
    Delete({"x.txt"});
    EXPECT_EQ(Pending(), "E:\\Save\\Deep\r\nE:\\Save\\Deep\\Deeper\r\n");
}

TEST_F(DeleteEntriesTest, OnlyFoldersOnTheWayUpFromADeletedFileAreQueuedAndWhatLiesInThem) {
    machine.Seed({{R"(E:\Save\Empty\Sub\)"},
                  {R"(E:\Save\Data\Hollow\)"},
                  {R"(E:\Save\Deep\Deeper\x.txt)", "x"},
                  {R"(E:\Save\Deep\Side\Inner\)"}});
    Delete({"x.txt"});
    EXPECT_EQ(Pending(),
              "E:\\Save\\Deep\r\nE:\\Save\\Deep\\Deeper\r\nE:\\Save\\Deep\\Side\r\n"
              "E:\\Save\\Deep\\Side\\Inner\r\n");
}

TEST_F(DeleteEntriesTest, WhereALocationHoldsSourcesNoFolderIsQueued) {
    Configure(machine, {{"E:\\", {R"(C:\Data)"}}, {R"(C:\Second)", {R"(E:\Save\Music)"}}});
    machine.Remove(Beside("Save.txt"));
    Delete({"b.txt"});
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Old\b.txt)"));
    EXPECT_EQ(Pending(), "");
}

TEST_F(DeleteEntriesTest, AnOriginalInTheLocationIsNoSavedCopy) {
    Configure(machine, {{"E:\\", {R"(C:\Data)"}}, {R"(C:\Second)", {R"(E:\Save\Music)", R"(E:\Save\Data\a.doc)"}}});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    Delete({"m.mp3", "a.doc", "b.txt"});
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Music\m.mp3)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Old\b.txt)"));
    EXPECT_THAT(LastMessage(), HasSubstr(R"(E:\Save\Music, which is to be backed up)"));
    EXPECT_THAT(LastMessage(), HasSubstr(R"(E:\Save\Data\a.doc, which is to be backed up)"));
}

TEST_F(DeleteEntriesTest, WithoutEmptyFoldersTheFileIsWrittenEmpty) {
    machine.Seed({{R"(E:\Save\Data\second.doc)", "2"}});
    Delete({"second.doc"});
    EXPECT_EQ(Pending(), "");
}

TEST_F(DeleteEntriesTest, TheFilesOwnLineGoesLetterCaseIgnored) {
    machine.Seed({{Beside("Save.txt"), "D:\\DATA\\A.DOC.old\r\nC:\\DATA\\a.doc\r\n"}});
    Delete({"a.doc"});
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(D:\DATA\A.DOC.old)"));
}

TEST_F(DeleteEntriesTest, WithoutALineOfItsOwnTheFirstThatHoldsTheNameGoes) {
    machine.Seed({{Beside("Save.txt"), "D:\\DATA\\A.DOC.old\r\nC:\\Data\\a.doc.bak\r\n"}});
    Delete({"a.doc"});
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc.bak)"));
}

TEST_F(DeleteEntriesTest, TheLineOfAnotherFileThatIsStillSavedNeverGoes) {
    machine.Seed({{Beside("Save.txt"), "C:\\Data\\a.doc.bak\r\n"}, {R"(E:\Save\Data\a.doc.bak)", "bak"}});
    Delete({"a.doc"});
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc.bak)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteEntriesTest, ALineStaysWhileALocationOfTheSameNameHoldsTheFile) {
    machine.Seed({{R"(F:\SAVE\Data\a.doc)", "a"}, {R"(F:\SAVE\Data\Old\)"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(F:\SAVE)", {R"(C:\Data)"}}});
    Delete({"a.doc", "b.txt"});
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Music\m.mp3)"));
}

TEST_F(DeleteEntriesTest, ALineStaysWhileALocationOfTheSameNameCannotBeReached) {
    machine.AddDrive('F');
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {R"(F:\Save)", {R"(C:\Data)"}}});
    Delete({"a.doc"});
    EXPECT_THAT(OriginalList(machine, "Save"), SizeIs(3)) << "another disk may be in the drive";
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteEntriesTest, ALocationThatHasGoneAwayIsReportedAndNothingChanges) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc", "b.txt", "m.mp3"});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    machine.SetDriveFailure("E:", error::notReady);
    window.Command17.Click();
    EXPECT_THAT(LastMessage(), HasSubstr("E:\\Save\r\n    the backup location cannot be reached"));
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_THAT(machine.process.Started(), IsEmpty());
    EXPECT_TRUE(window.IsVisible());
    EXPECT_THAT(window.List6.Items(), ElementsAre(HasSubstr("Cannot Be Reached")));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(E:\Save)")));
    machine.SetDriveFailure("E:", error::success);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteEntriesTest, ALocationFolderThatIsMissingIsReportedAndNoLineGoes) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc"});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    machine.Remove(R"(E:\Save)");
    window.Command17.Click();
    EXPECT_THAT(LastMessage(), HasSubstr("cannot be reached"));
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
}

TEST_F(DeleteEntriesTest, ALocationThatGoesAwayMeanwhileEndsTheDeletion) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc", "b.txt", "m.mp3"});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    int deletions = 0;
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Delete" && step.path.starts_with("E:") && ++deletions == 2) {
            machine.SetDriveFailure("E:", error::notReady);
        }
    });
    window.Command17.Click();
    machine.faults.BeforeStep({});
    EXPECT_EQ(deletions, 2);
    EXPECT_THAT(LastMessage(), HasSubstr("cannot be reached"));
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    machine.SetDriveFailure("E:", error::success);
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Music\m.mp3)"));
}

TEST_F(DeleteEntriesTest, AFileThatIsGoneAlreadyLosesItsLine) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc"});
    machine.Remove(R"(E:\Save\Data)");
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    window.Command17.Click();
    EXPECT_THAT(machine.desktop.Messages(), SizeIs(1)) << "the question alone";
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\Old\b.txt)", R"(C:\Music\m.mp3)"));
}

TEST_F(DeleteEntriesTest, AFolderInThePlaceOfAListedFileStays) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc"});
    machine.Remove(R"(E:\Save\Data\a.doc)");
    machine.Seed({{R"(E:\Save\Data\a.doc\kept.txt)", "kept"}});
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    window.Command17.Click();
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc\kept.txt)"), "kept");
    EXPECT_THAT(LastMessage(), HasSubstr("a folder of that name"));
    EXPECT_THAT(OriginalList(machine, "Save"), SizeIs(3));
}

TEST_F(DeleteEntriesTest, NothingIsDeletedBehindALinkThatHasTakenAFoldersPlace) {
    machine.Seed({{R"(D:\Real\a.doc)", "real"}});
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    Mark(window, {"a.doc"});
    machine.Remove(R"(E:\Save\Data)");
    machine.MakeLink(R"(E:\Save\Data)", R"(D:\Real)");
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    window.Command17.Click();
    EXPECT_EQ(machine.Read(R"(D:\Real\a.doc)"), "real");
    EXPECT_THAT(LastMessage(), HasSubstr("a link leads out"));
}

TEST_F(DeleteEntriesTest, EachDeletedFileTakesALineOfItsOwn) {
    machine.Seed({{Beside("Save.txt"), "C:\\Data\\a.doc\r\nD:\\Data\\a.doc\r\n"}, {R"(E:\Save\x\Data\a.doc)", "x"}});
    Delete({"a.doc"});
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(D:\Data\a.doc)"));
}

TEST_F(DeleteEntriesTest, AListWithoutLinesIsDeleted) {
    Delete({"a.doc", "b.txt", "m.mp3"});
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
}

TEST_F(DeleteEntriesTest, AMissingListStaysMissing) {
    machine.Remove(Beside("Save.txt"));
    Delete({"a.doc"});
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\a.doc)"));
}

TEST_F(DeleteEntriesTest, AFileInUseIsToldAndTheOthersGo) {
    machine.Lock(R"(E:\Save\Data\a.doc)");
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    Delete({"a.doc", "b.txt"});
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Old\b.txt)"));
    EXPECT_THAT(LastMessage(), HasSubstr(R"(E:\Save\Data\a.doc)"));
    EXPECT_THAT(LastMessage(), HasSubstr("(error 32)"));
    EXPECT_THAT(ErrorLog(machine), SizeIs(1));
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)", R"(C:\Music\m.mp3)"))
        << "it keeps its line";
}

TEST_F(DeleteEntriesTest, ThePlaceholderDeletesNothing) {
    Configure(machine, {{R"(E:\Nothing)", {R"(C:\Data)"}}});
    machine.Seed({{R"(E:\Nothing\)"}});
    const test::Tree before = machine.Tree("C:\\Data");
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command13.Click();
    window.List6.UserSelected(0, {0});
    machine.desktop.Answer(button::ok);
    window.Command17.Click();
    EXPECT_THAT(machine.shell.Operations(), IsEmpty());
    EXPECT_EQ(machine.Tree("C:\\Data"), before);
}

TEST_F(DeleteEntriesTest, AMissingRestartProgramIsARunTimeErrorWhenAllIsDone) {
    machine.Remove(Beside("Restart.sec"));
    EXPECT_THROW(Delete({"b.txt"}), RuntimeError);
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\Old\b.txt)"));
    EXPECT_EQ(Pending(), "E:\\Save\\Data\\Old\r\n");
    EXPECT_THAT(OriginalList(machine, "Save"), SizeIs(2));
}

class DeleteLogEntriesTest : public DeleteEntriesTest {
 protected:
    ui::frmSSTab& DeleteLines(const std::vector<int>& lines, int answer = button::ok) {
        ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
        window.Command16.Click();
        window.List6.UserSelected(lines.back(), lines);
        machine.desktop.Answer(answer);
        window.Command17.Click();
        return window;
    }
};

TEST_F(DeleteLogEntriesTest, MarkedLinesGoAndTheSavedFilesStay) {
    const ui::frmSSTab& window = DeleteLines({0, 2});
    ExpectMessage("You Are About To Delete Selections From The Original Path Log", confirmation);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Data\\Old\\b.txt\r\n");
    EXPECT_THAT(window.List6.Items(), ElementsAre(R"(C:\Data\Old\b.txt)"));
    EXPECT_EQ(window.Text1.Text.Get(), "1");
    EXPECT_FALSE(window.Command17.Enabled);
    EXPECT_EQ(window.Command13.Caption.Get(), "Show Saved Files");
    EXPECT_TRUE(window.IsVisible());
    EXPECT_TRUE(machine.Exists(R"(E:\Save\Data\a.doc)"));
    EXPECT_THAT(machine.process.Started(), IsEmpty());
}

TEST_F(DeleteLogEntriesTest, AllLinesTakeTheFileWithThem) {
    const ui::frmSSTab& window = DeleteLines({0, 1, 2});
    EXPECT_FALSE(machine.Exists(Beside("Save.txt")));
    EXPECT_EQ(window.Text1.Text.Get(), "0");
    EXPECT_THAT(window.List6.Items(), IsEmpty());
}

TEST_F(DeleteLogEntriesTest, CancelKeepsThem) {
    const ui::frmSSTab& window = DeleteLines({0}, button::cancel);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_TRUE(window.IsVisible());
}

TEST_F(DeleteLogEntriesTest, AnUnmarkedPlaceholderBecomesALine) {
    machine.Remove(Beside("Save.txt"));
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command16.Click();
    window.List6.UserSelected(-1, {});
    machine.desktop.Answer(button::ok);
    window.Command17.Click();
    EXPECT_EQ(machine.Read(Beside("Save.txt")), std::string(35, ' ') + "No Files In Original List\r\n");
}

TEST_F(DeleteLogEntriesTest, AListThatCannotBeWrittenIsToldAndShownAsItIs) {
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command16.Click();
    window.List6.UserSelected(0, {0});
    // In use while it is to be replaced, and free again when it is read back.
    machine.faults.BeforeStep([this](const Step& step) { machine.Lock(Beside("Save.txt"), step.operation == "Move"); });
    window.Command17.Click();
    machine.faults.BeforeStep({});
    EXPECT_EQ(machine.Read(Beside("Save.txt")), list);
    EXPECT_THAT(window.List6.Items(), SizeIs(3));
    EXPECT_THAT(LastMessage(), HasSubstr("Save.txt"));
}

TEST_F(DeleteEntriesTest, ReplacingFoldersNeedsALocationAndAFolder) {
    ui::frmSSTab& window = OpenAt(ui::tab::reviewSaved);
    window.Command17.Caption = std::string("Replace Folders");
    machine.desktop.Answer(button::ok);
    window.Command17.Click();
    ExpectMessage("You Have Not Selected a Folder To Restore", information);
    window.List5.Clear();
    machine.desktop.Answer(button::ok);
    window.Command17.Click();
    EXPECT_EQ(LastMessage(), "You Have Not Selected a Backup Up Folder");
    window.List5.AddItem(R"(E:\Save)");
    window.List5.SetListIndex(0);
    window.List6.AddItem(R"(E:\Save\Data)");
    window.List6.UserSelected(0, {0});
    window.Command17.Click();
    EXPECT_NE(program.windows.Find<ui::frmReplace>(), nullptr);
}

/// Deletes the saved b.txt in a program of its own. What it throws leaves this call.
void DeleteOne(InMemoryMachine& machine) {
    Program program(machine.machine(), nullptr);
    auto& window = program.windows.Load<ui::frmSSTab>(program.session);
    window.SSTab1.SetTab(ui::tab::reviewSaved);
    window.Command13.Click();
    for (int line = 0; line < window.List6.ListCount(); ++line) {
        window.List6.SetSelected(line, window.List6.List(line).ends_with("b.txt"));
    }
    window.Command17.Click();
    program.windows.UnloadAll();
}

/// Takes the first line off the list of original paths in a program of its own. What it throws leaves this call.
void DeleteOneLine(InMemoryMachine& machine) {
    Program program(machine.machine(), nullptr);
    auto& window = program.windows.Load<ui::frmSSTab>(program.session);
    window.SSTab1.SetTab(ui::tab::reviewSaved);
    window.Command16.Click();
    window.List6.SetSelected(0, window.List6.List(0) == R"(C:\Data\a.doc)");
    window.Command17.Click();
    program.windows.UnloadAll();
}

/// At any time: originals and the other saved files are there, and the list is the old one or the new one.
void ExpectNothingLost(InMemoryMachine& machine) {
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "original a");
    EXPECT_EQ(machine.Read(R"(C:\Data\Old\b.txt)"), "original b");
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "a");
    EXPECT_EQ(machine.Read(R"(E:\Save\Music\m.mp3)"), "m");
    const std::string now = machine.Read(Beside("Save.txt"));
    EXPECT_TRUE(now == list || now == "C:\\Data\\a.doc\r\nC:\\Music\\m.mp3\r\n") << now;
    EXPECT_TRUE(now == list || !machine.Exists(R"(E:\Save\Data\Old\b.txt)")) << "a saved file without its line";
    if (machine.Exists(Beside("DeleteFolder.txt"))) {
        EXPECT_THAT(machine.Read(Beside("DeleteFolder.txt")), testing::AnyOf("", "E:\\Save\\Data\\Old\r\n"));
    }
}

void PrepareForSweep(InMemoryMachine& machine) {
    Install(machine);
    Prepare(machine);
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    machine.faults.Reset();
    machine.faults.TearWrites(true);
}

TEST(DeleteEntriesSweep, NoFailureLosesAnythingElse) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        PrepareForSweep(machine);
        machine.faults.FailAt(k, error::ioDevice);
        try {
            DeleteOne(machine);
        } catch (const RuntimeError&) {
            // The restart could not be requested: told, and everything before it is done.
        }
        const bool over = machine.faults.Steps() < k;
        machine.faults.Reset();
        SCOPED_TRACE("step " + std::to_string(k));
        ExpectNothingLost(machine);
        if (over) {
            EXPECT_GT(k, 20U);
            return;
        }
    }
}

TEST(DeleteEntriesSweep, NoFailureTearsTheListOfOriginalPaths) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        PrepareForSweep(machine);
        machine.faults.FailAt(k, error::ioDevice);
        try {
            DeleteOneLine(machine);
        } catch (const RuntimeError&) {
            // A list that cannot be read ends the program.
        }
        const bool over = machine.faults.Steps() < k;
        machine.faults.Reset();
        SCOPED_TRACE("step " + std::to_string(k));
        const std::string now = machine.Read(Beside("Save.txt"));
        const bool shortened = now == "C:\\Data\\Old\\b.txt\r\nC:\\Music\\m.mp3\r\n";
        EXPECT_TRUE(now == list || shortened) << now;
        if (over) {
            EXPECT_TRUE(shortened);
            EXPECT_GT(k, 10U);
            return;
        }
    }
}

TEST(DeleteEntriesSweep, NoDeathTearsTheListOfOriginalPaths) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        PrepareForSweep(machine);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            DeleteOneLine(machine);
        } catch (const ProcessDied&) {
            died = true;
        }
        machine.Restart();
        SCOPED_TRACE("step " + std::to_string(k));
        const std::string now = machine.Read(Beside("Save.txt"));
        EXPECT_TRUE(now == list || now == "C:\\Data\\Old\\b.txt\r\nC:\\Music\\m.mp3\r\n") << now;
        if (!died) {
            EXPECT_GT(k, 10U);
            return;
        }
    }
}

TEST(DeleteEntriesSweep, NoDeathLosesAnythingElse) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        PrepareForSweep(machine);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            DeleteOne(machine);
        } catch (const ProcessDied&) {
            died = true;
        }
        machine.Restart();
        SCOPED_TRACE("step " + std::to_string(k));
        ExpectNothingLost(machine);
        if (!died) {
            EXPECT_GT(k, 20U);
            return;
        }
    }
}

}  // namespace
}  // namespace marlok::test
