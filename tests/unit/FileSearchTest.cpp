#include "fileops/FileSearch.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileSearchTest : public testing::Test {
 protected:
    FileSearchTest() {
        machine.Seed({{R"(E:\Save\a.txt)", "a"},
                      {R"(E:\Save\Docs\b.doc)", "b"},
                      {R"(E:\Save\Docs\Deep\c.txt)", "c"},
                      {R"(E:\Save\Empty\Inner\)"},
                      {R"(E:\Save\z.txt)", "z"}});
    }

    void Search(const std::string& pattern = "*.*") {
        spec = {true, 0, 0, pattern, "E:\\Save\\"};
        found.clear();
        folders = SearchFiles(machine.files, spec, sink);
    }

    Lines Empties() {
        Lines empties;
        for (std::size_t i = 0; i < folders.paths.size(); ++i) {
            if (!folders.holdsFiles[i]) {
                empties.push_back(folders.paths[i]);
            }
        }
        return empties;
    }

    InMemoryMachine machine;
    Lines found;
    SearchSpec spec;
    FoundFolders folders;
    bool searchOn = true;
    SearchSink sink{[this](std::string path) { found.push_back(std::move(path)); }, [this] { return searchOn; }};
};

TEST_F(FileSearchTest, FoldersAreEnteredAsTheyAreMet) {
    Search();
    EXPECT_THAT(found, ElementsAre(R"(E:\Save\a.txt)", R"(E:\Save\Docs\b.doc)", R"(E:\Save\Docs\Deep\c.txt)",
                                   R"(E:\Save\z.txt)"));
    EXPECT_THAT(folders.paths,
                ElementsAre(R"(E:\Save\Docs)", R"(E:\Save\Docs\Deep)", R"(E:\Save\Empty)", R"(E:\Save\Empty\Inner)"));
    EXPECT_EQ(spec.fileCount, 4);
    EXPECT_EQ(spec.folderCount, 4);
}

TEST_F(FileSearchTest, FoldersWithoutAnyFileBelowThemAreReportedParentsFirst) {
    Search();
    EXPECT_THAT(Empties(), ElementsAre(R"(E:\Save\Empty)", R"(E:\Save\Empty\Inner)"));
}

TEST_F(FileSearchTest, APatternChoosesAmongTheFilesInAllFolders) {
    Search("*.TXT");
    EXPECT_THAT(found, ElementsAre(R"(E:\Save\a.txt)", R"(E:\Save\Docs\Deep\c.txt)", R"(E:\Save\z.txt)"));
    Search("?.doc");
    EXPECT_THAT(found, ElementsAre(R"(E:\Save\Docs\b.doc)"));
    Search("none*");
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(FileSearchTest, TheProgramsWorkingFilesAreLeftOutYetFillAFolder) {
    machine.Seed({{R"(E:\Save\~Marlok Backup.run)", "journal"}, {R"(E:\Save\Empty\~Marlok Backup.part)", "part"}});
    Search();
    EXPECT_EQ(spec.fileCount, 4);
    EXPECT_THAT(Empties(), ElementsAre(R"(E:\Save\Empty\Inner)"));
}

TEST_F(FileSearchTest, WhatLiesBehindALinkIsNotListedAndALinkIsSomething) {
    machine.Seed({{R"(D:\Real\secret.txt)", "s"}});
    machine.MakeLink(R"(E:\Save\Empty\Inner\away)", R"(D:\Real)");
    Search();
    EXPECT_EQ(spec.fileCount, 4);
    EXPECT_THAT(Empties(), IsEmpty());
}

TEST_F(FileSearchTest, AFolderThatCannotBeListedIsNotTakenForEmpty) {
    machine.Deny(R"(E:\Save\Empty\Inner)");
    Search();
    EXPECT_THAT(Empties(), IsEmpty());
    ASSERT_EQ(folders.broken.size(), 1U);
    EXPECT_EQ(folders.broken.front().folder, R"(E:\Save\Empty\Inner)");
    EXPECT_EQ(folders.broken.front().code, error::accessDenied);
    machine.Deny(R"(E:\Save\Empty\Inner)", false);
}

TEST_F(FileSearchTest, AListingThatBreaksOffSaysWhereAndWhatItFoundBeforeCounts) {
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "FindNext" && step.path == R"(E:\Save\Docs\Deep\*)" ? error::ioDevice : error::success;
    });
    Search();
    machine.faults.FailWhen(nullptr);
    ASSERT_EQ(folders.broken.size(), 1U);
    EXPECT_EQ(folders.broken.front().folder, R"(E:\Save\Docs\Deep)");
    EXPECT_EQ(folders.broken.front().code, error::ioDevice);
    EXPECT_THAT(found, testing::Contains(R"(E:\Save\z.txt)"));
}

TEST_F(FileSearchTest, TheSystemsFoldersInARootAreNoneOfTheSavedFiles) {
    constexpr std::uint32_t protectedBits = attribute::hidden | attribute::system;
    machine.Seed({{R"(E:\$RECYCLE.BIN\S-1\$R1.txt)", "deleted"},
                  {R"(E:\System Volume Information\)"},
                  {R"(E:\Recovery\)", "", {}, protectedBits},
                  {R"(E:\Save\$RECYCLE.BIN\saved.txt)", "saved from a drive's root"}});
    spec = {true, 0, 0, "*.*", "E:\\"};
    folders = SearchFiles(machine.files, spec, sink);
    EXPECT_THAT(folders.paths, testing::Not(testing::Contains(testing::StartsWith(R"(E:\$RECYCLE.BIN)"))));
    EXPECT_THAT(folders.paths, testing::Not(testing::Contains(R"(E:\System Volume Information)")));
    EXPECT_THAT(folders.paths, testing::Not(testing::Contains(R"(E:\Recovery)")));
    EXPECT_THAT(found, testing::Contains(R"(E:\Save\$RECYCLE.BIN\saved.txt)"));
    EXPECT_EQ(spec.fileCount, 5);
}

TEST_F(FileSearchTest, NothingIsSearchedWhileTheSearchIsOff) {
    searchOn = false;
    Search();
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(FileSearchTest, FoldersAreListedOnlyWhenAsked) {
    spec = {false, 0, 0, "*.*", "E:\\Save\\"};
    EXPECT_THAT(SearchFiles(machine.files, spec, sink).paths, IsEmpty());
    EXPECT_EQ(spec.folderCount, 4);
}

TEST_F(FileSearchTest, AMissingFolderHoldsNothing) {
    spec = {true, 0, 0, "*.*", "N:\\Nowhere\\"};
    folders = SearchFiles(machine.files, spec, sink);
    EXPECT_THAT(folders.paths, IsEmpty());
    EXPECT_EQ(spec.fileCount, 0);
    ASSERT_EQ(folders.broken.size(), 1U);
    EXPECT_EQ(folders.broken.front().folder, R"(N:\Nowhere)");
}

TEST_F(FileSearchTest, HoldsHundredThousandFiles) {
    for (int i = 0; i < 100'000; ++i) {
        machine.Seed({R"(E:\Save\Many\)" + std::to_string(i / 1000) + "\\" + std::to_string(i), "x"});
    }
    Search();
    EXPECT_EQ(spec.fileCount, 100'004);
    EXPECT_EQ(found.size(), 100'004U);
}

}  // namespace
}  // namespace marlok::test
