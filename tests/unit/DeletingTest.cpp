#include "fileops/Deleting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class DeletingTest : public testing::Test {
 protected:
    DeletingTest() { machine.AddDrive('E'); }
    void TearDown() override { machine.ExpectNoLeaks(); }

    int Delete(const std::string& path) { return DeleteThisFile(machine.files, path); }

    InMemoryMachine machine;
};

TEST_F(DeletingTest, MissingPathsGiveTheShellsCodes) {
    machine.Seed({{R"(C:\Data\)"}});
    EXPECT_EQ(Delete(R"(C:\Data\missing.txt)"), 2);
    EXPECT_EQ(Delete(R"(C:\Missing\missing.txt)"), 0x7C);
    EXPECT_EQ(Delete(""), 2);
    EXPECT_EQ(Delete("E:\\"), 0x74);
}

TEST_F(DeletingTest, WithoutACodeOfTheShellTheSystemsOwnIsKept) {
    machine.Seed({{R"(C:\Data\a.txt)", "a"}});
    machine.Lock(R"(C:\Data\a.txt)");
    EXPECT_EQ(DeleteWhole(machine.files, R"(C:\Data\a.txt)"), error::sharingViolation);
    EXPECT_EQ(Delete(R"(C:\Data\a.txt)"), 0x78);
    EXPECT_EQ(DeleteWhole(machine.files, R"(C:\Data\none)"), error::fileNotFound);
    EXPECT_EQ(DeleteWhole(machine.files, "C:\\"), error::accessDenied);
}

TEST_F(DeletingTest, ANameWithADotAtItsEndIsNoOtherFile) {
    machine.Seed(
        {{R"(C:\Data\report)", "keep"}, {R"(C:\Data\page.htm)", "page"}, {R"(C:\Data\page_files\a.png)", "a"}});
    EXPECT_NE(Delete(R"(C:\Data\report.)"), 0);
    EXPECT_EQ(machine.Read(R"(C:\Data\report)"), "keep");
    EXPECT_EQ(Delete(R"(C:\Data\page.htm)"), 0);
    EXPECT_EQ(machine.Read(R"(C:\Data\page_files\a.png)"), "a") << "a page's folder is a folder of its own";
}

TEST_F(DeletingTest, AFolderGoesWithEverythingBelowIt) {
    machine.Seed({{R"(C:\Data\a\b\c.txt)", "c"},
                  {R"(C:\Data\a\r.txt)", "r", {}, attribute::readOnly},
                  {R"(C:\Data\a\h.txt)", "h", {}, attribute::hidden},
                  {R"(C:\Data\keep.txt)", "k"}});
    EXPECT_EQ(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"keep.txt", "k"}}));
}

TEST_F(DeletingTest, ATrailingBackslashMakesNoDifference) {
    machine.Seed({{R"(C:\Data\a\b.txt)", "b"}});
    EXPECT_EQ(Delete(R"(C:\Data\a\)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\a)"));
}

TEST_F(DeletingTest, DrivesAndSharesAreRefused) {
    machine.Seed({{R"(E:\a.txt)", "a"}, {R"(\\server\share\b.txt)", "b"}});
    EXPECT_NE(Delete("E:\\"), 0);
    EXPECT_NE(Delete(R"(\\server\share)"), 0);
    EXPECT_EQ(machine.Read(R"(E:\a.txt)"), "a");
    EXPECT_EQ(machine.Read(R"(\\server\share\b.txt)"), "b");
}

TEST_F(DeletingTest, ALinkGoesAndItsTargetStays) {
    machine.Seed({{R"(C:\Target\t.txt)", "t"}});
    machine.MakeLink(R"(C:\Link)", R"(C:\Target)");
    EXPECT_EQ(Delete(R"(C:\Link)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Link)"));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
}

TEST_F(DeletingTest, LinksInATreeGoAndTheirTargetsStay) {
    machine.Seed({{R"(C:\Target\t.txt)", "t"}, {R"(C:\Data\a\b\x.txt)", "x"}});
    machine.MakeLink(R"(C:\Data\a\b\link)", R"(C:\Target)");
    machine.MakeLink(R"(C:\Data\a\soft)", R"(C:\Target)", reparse::symbolicLink);
    EXPECT_EQ(Delete(R"(C:\Data\a)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\a)"));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
}

TEST_F(DeletingTest, WhereALinkCannotBeRemovedItStaysAndSoDoesItsTarget) {
    machine.files.SetCanRemoveLinks(false);
    machine.Seed({{R"(C:\Target\t.txt)", "t"}, {R"(C:\Data\a\b\x.txt)", "x"}, {R"(C:\Data\a\c\y.txt)", "y"}});
    machine.MakeLink(R"(C:\Data\a\b\link)", R"(C:\Target)");
    EXPECT_NE(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"a\\", ""}, {"a\\b\\", ""}, {"a\\b\\link\\", ""}}));
}

TEST_F(DeletingTest, WildcardsDeleteWhatMatchesAndNoLinksTarget) {
    machine.Seed({{R"(C:\Target\t.txt)", "t"},
                  {R"(C:\Data\a1.txt)", "1"},
                  {R"(C:\Data\a2.txt)", "2"},
                  {R"(C:\Data\b.txt)", "b"}});
    machine.MakeLink(R"(C:\Data\a3)", R"(C:\Target)");
    EXPECT_EQ(Delete(R"(C:\Data\a*)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"b.txt", "b"}}));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
    EXPECT_EQ(Delete(R"(C:\Data\z*)"), 0) << "a pattern without match";
    EXPECT_EQ(Delete(R"(C:\None\z*)"), 0x7C);
}

TEST_F(DeletingTest, TreesOfAnyDepthGo) {
    std::string path = R"(C:\Data\deep)";
    while (path.size() < 4100) {
        path += R"(\folder)";
    }
    machine.Seed({{path + R"(\a.txt)", "a"}, {R"(C:\Data\deep\r.txt)", "r", {}, attribute::readOnly}});
    EXPECT_EQ(Delete(R"(C:\Data\deep)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\deep)"));
}

TEST_F(DeletingTest, ALockedFileStaysAndTheRestGoes) {
    machine.Seed({{R"(C:\Data\a\locked.txt)", "l"}, {R"(C:\Data\a\free.txt)", "f"}});
    machine.Lock(R"(C:\Data\a\locked.txt)");
    EXPECT_NE(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"a\\", ""}, {"a\\locked.txt", "l"}}));
}

}  // namespace
}  // namespace marlok::test
