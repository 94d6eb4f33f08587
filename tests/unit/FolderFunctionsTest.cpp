#include "fileops/FolderFunctions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/OriginalPathList.h"
#include "fileops/Deleting.h"
#include "fileops/InternetConnection.h"
#include "fileops/Replacing.h"
#include "fileops/VersionInfo.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "platform/RuntimeError.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

int ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

class FolderFunctionsTest : public testing::Test {
 protected:
    FolderFunctionsTest() { machine.AddDrive('E'); }
    void TearDown() override { machine.ExpectNoLeaks(); }

    bool CreateNested(const std::string& path) { return CreateNestedFolders(machine.files, machine.process, path); }
    std::string Find(const std::string& name) {
        return FindOriginalPath(ReadTextFile(machine.files, machine.system, list), name, gSearchOn);
    }

    InMemoryMachine machine;
    const std::string list = R"(C:\list.txt)";
    bool gSearchOn = true;
};

TEST_F(FolderFunctionsTest, NestedFoldersAreMadeAsNeeded) {
    EXPECT_TRUE(CreateNested(R"(E:\Saved\2004\May)"));
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Saved\\", ""}, {"Saved\\2004\\", ""}, {"Saved\\2004\\May\\", ""}}));
    EXPECT_TRUE(CreateNested(R"(E:\Saved\2004\)"));
    EXPECT_TRUE(CreateNested("E:\\"));
}

TEST_F(FolderFunctionsTest, ARelativePathStartsAtTheCurrentFolder) {
    EXPECT_TRUE(CreateNested(R"(made\here)"));
    EXPECT_TRUE(machine.Exists(AddBackslash(machine.process.CurrentFolder()) + R"(made\here)"));
}

TEST_F(FolderFunctionsTest, ANetworkPathStartsAtItsShare) {
    machine.AddShare(R"(\\server\share)");
    EXPECT_TRUE(CreateNested(R"(\\server\share\a\b)"));
    EXPECT_TRUE(machine.Exists(R"(\\server\share\a\b)"));
    EXPECT_FALSE(CreateNested(R"(\\nowhere\share\a)"));
}

TEST_F(FolderFunctionsTest, AFolderThatCannotBeMadeIsTold) {
    EXPECT_FALSE(CreateNested(R"(X:\a)"));
    machine.Seed({{R"(E:\file)", "f"}});
    EXPECT_FALSE(CreateNested(R"(E:\file\below)"));
}

TEST_F(FolderFunctionsTest, TheFolderOfAFileDependsOnAThreeLetterExtension) {
    EnsureFolderFor(machine.files, machine.process, R"(E:\Saved\notes.txt)");
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Saved\\", ""}}));
    EnsureFolderFor(machine.files, machine.process, R"(E:\Saved\page.html)");
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"Saved\\", ""}, {"Saved\\page.html\\", ""}}));
}

TEST_F(FolderFunctionsTest, AFileInTheFoldersPlaceIsLeftAlone) {
    machine.Seed({{R"(E:\Saved)", "a file"}});
    EnsureFolderFor(machine.files, machine.process, R"(E:\Saved\notes.txt)");
    EXPECT_EQ(machine.Read(R"(E:\Saved)"), "a file");
}

TEST_F(FolderFunctionsTest, OnlyNormalFilesExist) {
    machine.Seed({{R"(C:\d\n.txt)", "n"},
                  {R"(C:\d\h.txt)", "h", {}, attribute::hidden},
                  {R"(C:\d\s.txt)", "s", {}, attribute::system},
                  {R"(C:\d\r.txt)", "r", {}, attribute::readOnly}});
    EXPECT_TRUE(FileExists(machine.files, R"(C:\d\n.txt)"));
    EXPECT_TRUE(FileExists(machine.files, R"(C:\d\r.txt)"));
    for (const char* path : {R"(C:\d\h.txt)", R"(C:\d\s.txt)", R"(C:\d)", R"(C:\d\none)", R"(X:\none)", ""}) {
        EXPECT_FALSE(FileExists(machine.files, path)) << path;
    }
    EXPECT_TRUE(IsDirectoryPath(machine.files, R"(C:\d)"));
    EXPECT_FALSE(IsDirectoryPath(machine.files, R"(C:\d\n.txt)"));
    EXPECT_FALSE(IsDirectoryPath(machine.files, R"(C:\none)"));
}

TEST_F(FolderFunctionsTest, CreatingOneFolderTellsWhyItFailed) {
    EXPECT_EQ(CreateFolder(machine.files, R"(E:\New)"), R"(E:\New)");
    EXPECT_EQ(ErrorOf([this] { CreateFolder(machine.files, R"(E:\New)"); }), runtimeerror::fileAlreadyExists);
    EXPECT_EQ(ErrorOf([this] { CreateFolder(machine.files, R"(E:\a\b)"); }), runtimeerror::pathNotFound);
}

TEST_F(FolderFunctionsTest, ACreationDateIsThereForFoldersOnly) {
    machine.Seed({{R"(C:\d\n.txt)", "n"}});
    EXPECT_NE(FolderCreationDate(machine.files, machine.clock, R"(C:\d)"), "");
    EXPECT_NE(FolderCreationDate(machine.files, machine.clock, "C:\\"), "");
    EXPECT_EQ(FolderCreationDate(machine.files, machine.clock, R"(C:\d\n.txt)"), "");
    EXPECT_EQ(FolderCreationDate(machine.files, machine.clock, R"(C:\none)"), "");
}

TEST_F(FolderFunctionsTest, AnOriginalPathIsFoundByItsNameWithoutRoot) {
    machine.Write(list, "C:\\Data\\a.doc\r\nD:\\Data\\b.doc\r\n");
    EXPECT_EQ(Find(R"(Data\b.doc)"), R"(D:\Data\b.doc)");
    EXPECT_TRUE(gSearchOn);
    EXPECT_EQ(Find(R"(Data\B.doc)"), "") << "letter case matters";
    EXPECT_FALSE(gSearchOn);
}

TEST_F(FolderFunctionsTest, TheFirstOccurrenceCountsAlsoInsideALongerLine) {
    machine.Write(list, "C:\\Data\\a.doc.bak\r\nD:\\Data\\a.doc\r\n");
    EXPECT_EQ(Find(R"(Data\a.doc)"), R"(C:\Data\a.doc)");
}

TEST_F(FolderFunctionsTest, TheColumnOfTheFirstRootHoldsForEveryLine) {
    machine.Write(list, "XXC:\\Data\\a.doc\r\nYYD:\\Data\\b.doc\r\n");
    EXPECT_EQ(Find(R"(Data\b.doc)"), R"(YYD:\Data\b.doc)");
}

TEST_F(FolderFunctionsTest, AListWithoutARootInItsFirstTwoHundredCharactersFindsNothing) {
    machine.Write(list, std::string(200, '-') + "C:\\Data\\a.doc\r\n");
    EXPECT_EQ(Find(R"(Data\a.doc)"), "");
    EXPECT_TRUE(gSearchOn);
    machine.Write(list, std::string(198, '-') + "C:\\Data\\a.doc\r\n");
    EXPECT_NE(Find(R"(Data\a.doc)"), "") << "the root's colon is the two hundredth character";
}

TEST_F(FolderFunctionsTest, AMissingListFindsNothing) {
    EXPECT_EQ(Find("x"), "");
    EXPECT_FALSE(gSearchOn);
}

TEST_F(FolderFunctionsTest, CharactersAreCountedNotBytes) {
    machine.Write(list, "C:\\\u0416\u0443\u043A\\a.doc\r\nD:\\\u4E2D\\b.doc\r\n");
    EXPECT_EQ(Find("\u4E2D\\b.doc"), "D:\\\u4E2D\\b.doc");
}

TEST_F(FolderFunctionsTest, TextAtAPointerIsInTheCodePage) {
    EXPECT_EQ(StringFromPointer(machine.system, "Dat\xE4"), "Dat\u00E4");
    EXPECT_EQ(StringFromPointer(machine.system, nullptr), "");
}

struct VersionCase {
    const char* system;
    VersionRecord record;
    bool is95, is98, isMe, is2000, isXp;
};

class VersionInfoTest : public testing::TestWithParam<VersionCase> {};

TEST_P(VersionInfoTest, EachTest) {
    InMemoryMachine machine;
    machine.system.version = GetParam().record;
    EXPECT_EQ(IsWindows95(machine.system), GetParam().is95);
    EXPECT_EQ(IsWindows98(machine.system), GetParam().is98);
    EXPECT_EQ(IsWindowsME(machine.system), GetParam().isMe);
    EXPECT_EQ(IsWindows2000(machine.system), GetParam().is2000);
    EXPECT_EQ(IsWindowsXP(machine.system), GetParam().isXp);
}

INSTANTIATE_TEST_SUITE_P(Systems, VersionInfoTest,
                         testing::Values(VersionCase{"Win95", {4, 0, 950, 1, ""}, true, false, false, false, false},
                                         VersionCase{"Win98", {4, 10, 1998, 1, ""}, false, true, false, false, false},
                                         VersionCase{"WinMe", {4, 90, 3000, 1, ""}, false, true, true, false, false},
                                         VersionCase{"Win2000", {5, 0, 2195, 2, ""}, false, false, false, true, false},
                                         VersionCase{"WinXp", {5, 1, 2600, 2, ""}, false, false, false, true, true},
                                         VersionCase{"Nt4", {4, 0, 1381, 2, ""}, false, false, false, false, false},
                                         VersionCase{
                                             "Win10", {10, 0, 19045, 2, ""}, false, false, false, false, false}),
                         [](const auto& one) { return one.param.system; });

TEST(VersionInfoSilenceTest, ASystemThatDoesNotAnswerIsNone) {
    InMemoryMachine machine;
    machine.system.version = {4, 90, 3000, 1, ""};
    machine.system.answersVersion = false;
    EXPECT_FALSE(IsWindows95(machine.system) || IsWindows98(machine.system) || IsWindowsME(machine.system) ||
                 IsWindows2000(machine.system) || IsWindowsXP(machine.system));
}

TEST(InternetConnectionTest, EveryCombinationOfFlags) {
    InMemoryMachine machine;
    const auto describe = [&](std::uint32_t flags) {
        machine.system.connectionFlags = flags;
        return ConnectionDescription(machine.system);
    };
    machine.system.connected = false;
    EXPECT_EQ(describe(0x42), "Not Connected");
    machine.system.connected = true;
    EXPECT_EQ(describe(0x46),
              "You have a network connection configured.\r\nThe local system connects to the Internet via a LAN, and "
              "uses a proxy server. ");
    EXPECT_EQ(describe(0x42),
              "You have a network connection configured.\r\nThe local system connects to the Internet via a LAN.");
    EXPECT_EQ(describe(0x02), "The local system connects to the Internet via a LAN.");
    EXPECT_EQ(describe(0x04), ", and uses a proxy server. ");
    EXPECT_EQ(describe(0x00), ".");
    for (const std::uint32_t dialUp : {0x01U, 0x20U, 0x10U, 0x03U, 0x52U, 0x66U}) {
        EXPECT_EQ(describe(dialUp), "") << dialUp;
    }
}

TEST_F(FolderFunctionsTest, EmptyAndMissingFilesReadAsNothing) {
    machine.Write(R"(C:\empty.txt)", "");
    EXPECT_EQ(ReadTextFile(machine.files, machine.system, R"(C:\empty.txt)"), "");
    EXPECT_EQ(ReadTextFile(machine.files, machine.system, R"(C:\none.txt)"), "");
    machine.Write(R"(C:\a.txt)", "one\r\ntwo");
    EXPECT_EQ(ReadTextFile(machine.files, machine.system, R"(C:\a.txt)"), "one\r\ntwo");
    machine.Deny(R"(C:\a.txt)");
    EXPECT_EQ(ErrorOf([this] { static_cast<void>(ReadTextFile(machine.files, machine.system, R"(C:\a.txt)")); }),
              runtimeerror::permissionDenied);
}

TEST_F(FolderFunctionsTest, LinesThatAreNoUtf8AreInTheCodePage) {
    EXPECT_EQ(DecodeText(machine.system, "Dat\xE4\r\n\u4E2D\r\n\xED\xA0\x80\r\n"),
              "Dat\u00E4\r\n\u4E2D\r\n\xED\xA0\x80\r\n");
    EXPECT_EQ(DecodeText(machine.system, "\xEF\xBB\xBFplain"), "plain");
}

TEST_F(FolderFunctionsTest, AFileIsSavedWholeOrNotAtAll) {
    const std::string path = R"(E:\log.txt)";
    for (const bool dies : {false, true}) {
        for (std::size_t k = 1;; ++k) {
            InMemoryMachine fresh;
            fresh.Seed({{path, "old text", {}, attribute::readOnly}});
            fresh.faults.Reset();
            fresh.faults.TearWrites(true);
            dies ? fresh.faults.DieAt(k) : fresh.faults.FailAt(k, error::diskFull);
            SystemError code = error::success;
            try {
                code = SaveWholeFile(fresh.files, path, "new text");
            } catch (const ProcessDied&) {
                code = error::ioDevice;
            }
            const bool fired = fresh.faults.Fired();
            fresh.Restart();
            const std::string text = fresh.Read(path);
            ASSERT_TRUE(text == "old text" || text == "new text") << k << ": " << text;
            ASSERT_TRUE(code != error::success || text == "new text") << k;
            ASSERT_EQ(SaveWholeFile(fresh.files, path, "later"), error::success) << k;
            ASSERT_EQ(fresh.Tree("E:\\"), (Tree{{"log.txt", "later"}})) << k;
            if (!fired) {
                EXPECT_GT(k, 4U);
                break;
            }
        }
    }
}

TEST_F(FolderFunctionsTest, ReadOnlyFilesAreDeletedAndReplacedWhenTheyMustBe) {
    machine.Seed({{R"(E:\r.txt)", "r", {}, attribute::readOnly}, {R"(E:\s.txt)", "s", {}, attribute::readOnly}});
    machine.Write(R"(E:\new.txt)", "new");
    EXPECT_EQ(ForceDelete(machine.files, R"(E:\r.txt)"), error::success);
    EXPECT_EQ(ForceReplace(machine.files, R"(E:\new.txt)", R"(E:\s.txt)"), error::success);
    EXPECT_EQ(machine.Tree("E:\\"), (Tree{{"s.txt", "new"}}));
    EXPECT_EQ(ForceDelete(machine.files, R"(E:\none.txt)"), error::fileNotFound);
}

TEST(WorkingFilesTest, TheirNamesInAnyLetterCase) {
    EXPECT_TRUE(workingfile::IsWorkingFile("~Marlok Backup.run"));
    EXPECT_TRUE(workingfile::IsWorkingFile("~MARLOK backup.PART"));
    EXPECT_FALSE(workingfile::IsWorkingFile("~Marlok Backup"));
    EXPECT_FALSE(workingfile::IsWorkingFile("Marlok Backup.exe"));
}

}  // namespace
}  // namespace marlok::test
