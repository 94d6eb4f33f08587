#include "paths/Location.h"

#include "paths/Names.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::IsEmpty;
using testing::Not;

constexpr const char* neededByProgram = "the name is needed for a file of the program";
constexpr const char* deviceName = "the name belongs to a device";
constexpr const char* notPlain = "a backup location must be a plain path";
constexpr const char* notFull = "a backup location must be a full path with its drive";

TEST(LocationTest, IsThePathWithoutItsRoot) {
    EXPECT_EQ(Location(R"(E:\Backups\Daily)").Name(), R"(Backups\Daily)");
    EXPECT_EQ(Location(R"(\\server\share\Save)").Name(), R"(server\share\Save)");
    EXPECT_EQ(Location("E:\\").Name(), "");
}

TEST(LocationTest, NamesTheListOfOriginalPaths) {
    InMemoryMachine machine;
    const Program program(machine.machine(), nullptr);
    EXPECT_EQ(Location(R"(E:\Backups\Daily)").OriginalList(ProgramFolder(programFolder)),
              Beside(R"(Backups\Daily.txt)"));
    EXPECT_EQ(Location("E:\\Save").OriginalList(ProgramFolder(programFolder)), Beside("Save.txt"));
}

TEST(LocationTest, NamesOfTheProgramsOwnFilesAreRefused) {
    for (const char* name :
         {"Command", "DeleteFolder", "Backup Log File", "Backup Error Log", "Replaced File Log", "command",
          "DELETEFOLDER", "dEletefolder", "backup log file", "Command.txt", "DeleteFolder.txt", "Marlok Backup.exe",
          "Restart.exe", "Restart.sec", "pc21.gif", "Backup.hlp", "restart.EXE"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), neededByProgram) << name;
    }
}

TEST(LocationTest, FoldersWhereTheProgramHasAFileAreRefused) {
    for (const char* name : {R"(Command.txt\x)", R"(DeleteFolder.txt\x\y)", R"(Restart.exe\x)", R"(restart.sec\x)",
                             R"(Backup Log File.txt\x)", R"(Marlok Backup.exe\Daily)", R"(PC21.GIF\x)"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), neededByProgram) << name;
    }
}

TEST(LocationTest, SpellingsThatTheFileSystemTakesForTheSameAreRefused) {
    for (const char* name :
         {"DeleteFolder.", "DeleteFolder ", "DeleteFolder. . ", "Command ...", "Command.txt ", R"(Command.txt.\x)",
          R"(\DeleteFolder)", R"(\\DeleteFolder)", R"(DeleteFolder\)", R"(DeleteFolder\\)"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), neededByProgram) << name;
    }
}

TEST(LocationTest, NamesThatMayBeAliasesAreRefused) {
    for (const char* name :
         {"DELETE~1", "delete~2", "BACKUP~1.TXT", R"(COMMAN~1\x)", "A~123456", R"(MARLOK~1.EXE\x)"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), neededByProgram) << name;
    }
}

TEST(LocationTest, NamesOfWorkingFilesAreRefused) {
    for (const char* name :
         {"~Marlok Backup.new", "~marlok backup.RUN", R"(~Marlok Backup.part\x)", "~Marlok Backup.anything"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), neededByProgram) << name;
    }
}

TEST(LocationTest, WaysOutOfTheProgramFolderAreRefused) {
    for (const char* name : {"..", R"(..\x)", R"(a\..\..\x)", ".", R"(.\Command)", R"(a\. .\b)", "...", " "}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), notPlain) << name;
    }
}

TEST(LocationTest, StreamsAndForbiddenCharactersAreRefused) {
    for (const char* name : {"Command.txt:x", "Save:stream", "Save::$DATA", "Command/x", "a/../Command", "Save/Daily",
                             "Sa*ve", "Sa?ve", "Sa\"ve", "Sa<ve", "Sa>ve", "Sa|ve", "Sa\nve", "Sa\x1Fve"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), notPlain) << name;
    }
    EXPECT_EQ(Location(std::string("E:\\Sa\0ve", 8)).WhyRefused(), notPlain);
}

TEST(LocationTest, DevicesAreRefused) {
    for (const char* name : {"CON", "con", "NUL", "nul.txt", "Aux", "PRN.x.y", "COM1", "lpt9", "COM0", R"(Daily\NUL)",
                             R"(aux\Daily)", "NUL ", "COM1 .txt", "CONIN$", "conout$", "COM\u00B9", "LPT\u00B3"}) {
        EXPECT_EQ(Location("E:\\" + std::string(name)).WhyRefused(), deviceName) << name;
    }
}

TEST(LocationTest, PathsWithoutARootAreRefused) {
    for (const char* path : {"", "Save", "E:", "E:Save", R"(\Save)", R"(1:\Save)", "E:/Save"}) {
        EXPECT_EQ(Location(path).WhyRefused(), notFull) << path;
    }
}

TEST(LocationTest, HarmlessNamesPass) {
    for (const char* path : {R"(E:\Save)",
                             R"(E:\Backups\Daily)",
                             "E:\\",
                             R"(E:\Save\)",
                             R"(E:\Backups\Command)",
                             R"(E:\Save\DeleteFolder)",
                             R"(E:\Commands)",
                             R"(E:\Command2)",
                             R"(E:\My Command)",
                             R"(E:\Restart)",
                             R"(E:\pc21)",
                             R"(E:\Backup)",
                             R"(E:\Marlok Backup)",
                             R"(E:\Marlok)",
                             R"(E:\Backup Log)",
                             R"(E:\Command\x)",
                             R"(E:\DeleteFolder\x)",
                             R"(E:\Console)",
                             R"(E:\COM10)",
                             R"(E:\COMA)",
                             R"(E:\Nullable)",
                             R"(E:\~Save)",
                             R"(E:\Save~)",
                             R"(E:\Save~x)",
                             R"(E:\Very long name~1)",
                             R"(E:\.hidden)",
                             R"(E:\a.b.c)",
                             R"(\\server\share\Save)",
                             R"(\\server\share)",
                             "E:\\Sicherung \u00C4\u4E2D",
                             R"(e:\Save)",
                             R"(E:\Save\DELETE~1)"}) {
        EXPECT_EQ(Location(path).WhyRefused(), "") << path;
    }
}

TEST(LocationTest, PlainRelativePaths) {
    for (const char* path : {"", "a", R"(a\b.txt)", R"(\a)", R"(a\\b)", "a..b", ".a", "a."}) {
        EXPECT_TRUE(IsPlainRelativePath(path)) << path;
    }
    for (const char* path : {"..", ".", R"(a\..\b)", R"(a\.)", "a:b", "a/b", R"(a\ \b)", "a*"}) {
        EXPECT_FALSE(IsPlainRelativePath(path)) << path;
    }
}

/// Whatever a location is called: a run into it never makes a list of original paths out of a file of the program.
class RefusedLocationTest : public ProgramTest, public testing::WithParamInterface<const char*> {};

TEST_P(RefusedLocationTest, IsPassedOverWithAReportAndTheNextOneIsSaved) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}});
    const std::string location = std::string("E:\\") + GetParam();
    Configure(machine, {{location, {R"(C:\Data)"}}, {R"(E:\Good)", {R"(C:\Data)"}}});
    const Tree program = machine.Tree(programFolder);
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Good\\", ""}, {"Good\\Data\\", ""}, {"Good\\Data\\a.doc", "one"}}));
    EXPECT_THAT(ErrorLog(machine), testing::ElementsAre(Reported(location)));
    Tree after = machine.Tree(programFolder);
    for (const char* written :
         {"Backup Log File.txt", "Backup Error Log.txt", "Backup Report.txt", "Backup History.txt", "Good.txt"}) {
        EXPECT_EQ(after.erase(written), 1U) << written;
    }
    EXPECT_EQ(after, program);
    EXPECT_TRUE(machine.Exists(R"(C:\Data\a.doc)"));
}

INSTANTIATE_TEST_SUITE_P(Names, RefusedLocationTest,
                         testing::Values("DeleteFolder", "Command", "DELETE~1", "Command.txt:x", R"(..\Up)",
                                         R"(Restart.exe\x)", "NUL", "DeleteFolder."));

TEST_F(ProgramTest, ARefusedLocationNeverLeadsToDeletionsAtTheNextStart) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}});
    Configure(machine, {{R"(E:\DeleteFolder)", {R"(C:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "one");
    EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
    EXPECT_THAT(ErrorLog(machine), Not(IsEmpty()));
}

TEST(LocationTest, TheDriveIsNotKept) {
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(C:\Data\Sub)"), R"(E:\Save\Data\Sub)");
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(D:\Data\Sub)"), R"(E:\Save\Data\Sub)");
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(C:\Data\Sub\)"), R"(E:\Save\Data\Sub\)");
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf("C:\\"), R"(E:\Save\)");
    EXPECT_EQ(Location("E:\\").SavedPathOf(R"(C:\a.txt)"), R"(E:\a.txt)");
}

TEST(LocationTest, ABackslashBehindTheRootIsDropped) {
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(C:\\Data)"), R"(E:\Save\Data)");
}

TEST(LocationTest, ANetworkSourceKeepsItsServerAndShareAsFolders) {
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(\\server\share\Data)"), R"(E:\Save\server\share\Data)");
    EXPECT_EQ(Location(R"(E:\Save)").SavedPathOf(R"(\\server\share\)"), R"(E:\Save\server\share)");
}

TEST(LocationTest, ABackslashAtTheEndMakesNoDifference) {
    EXPECT_EQ(Location(R"(E:\Save\)"), Location(R"(E:\Save)"));
    EXPECT_EQ(Location(R"(E:\Save\\)").Name(), "Save");
    EXPECT_EQ(Location("E:\\").Path(), "E:\\");
}

TEST(LocationTest, WhatLiesBelowItAndWhatItIsCalledThere) {
    const Location folder(R"(E:\Save)");
    const Location drive("E:\\");
    EXPECT_EQ(folder.Below(R"(Data\a.doc)"), R"(E:\Save\Data\a.doc)");
    EXPECT_EQ(drive.Below(R"(Data\a.doc)"), R"(E:\Data\a.doc)");
    EXPECT_EQ(folder.RelativeNameOf(R"(E:\Save\Data\a.doc)"), R"(Data\a.doc)");
    EXPECT_EQ(drive.RelativeNameOf(R"(E:\Data\a.doc)"), R"(Data\a.doc)");
    EXPECT_EQ(folder.RelativeNameOf(R"(E:\Saved\a.doc)"), "");
    EXPECT_EQ(folder.RelativeNameOf("     No Files"), "");
}

}  // namespace
}  // namespace marlok::test
