#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class InMemoryShellTest : public ::testing::Test {
 protected:
    int Remove(const std::string& path) {
        return memory.machine().shell.Perform({ShellFileOperation::Kind::remove, path, "", shellflag::noConfirmation});
    }
    int Copy(const std::string& from, const std::string& to) {
        return memory.machine().shell.Perform({ShellFileOperation::Kind::copy, from, to, shellflag::noConfirmation});
    }

    InMemoryMachine memory;
};

TEST_F(InMemoryShellTest, ByDefaultItDeletesWhatLinksInATreeLeadTo) {
    memory.Seed({{"E:\\T\\a", "x"}, {"C:\\Precious\\b", "y"}});
    memory.MakeLink("E:\\T\\Link", "C:\\Precious");
    EXPECT_EQ(Remove("E:\\T"), 0);
    EXPECT_FALSE(memory.Exists("E:\\T"));
    EXPECT_TRUE(memory.Exists("C:\\Precious"));
    EXPECT_FALSE(memory.Exists("C:\\Precious\\b"));
}

TEST_F(InMemoryShellTest, AShellOfBetterMannersLeavesLinkTargetsAlone) {
    memory.Seed({{"E:\\T\\a", "x"}, {"C:\\Precious\\b", "y"}});
    memory.MakeLink("E:\\T\\Link", "C:\\Precious");
    memory.shell.followsLinks = false;
    EXPECT_EQ(Remove("E:\\T"), 0);
    EXPECT_EQ(memory.Read("C:\\Precious\\b"), "y");
}

TEST_F(InMemoryShellTest, ALinkBackIntoTheTreeEndsAllTheSame) {
    memory.Seed({{"E:\\T\\Sub\\a", "x"}});
    memory.MakeLink("E:\\T\\Sub\\Loop", "E:\\T");
    EXPECT_EQ(Remove("E:\\T"), 0);
    EXPECT_EQ(memory.Tree("E:\\"), Tree{});
}

TEST_F(InMemoryShellTest, PathsBeyondItsLimitFail) {
    const std::string folder = "E:\\" + std::string(200, 'd');
    memory.Seed({Seeded{folder + "\\" + std::string(60, 'f'), "x"}});
    EXPECT_NE(Remove(folder + "\\" + std::string(60, 'f')), 0);
    EXPECT_NE(Remove(folder), 0) << "what is too deep in a tree fails as well";
    EXPECT_EQ(memory.Read(folder + "\\" + std::string(60, 'f')), "x");
}

TEST_F(InMemoryShellTest, NamesThatWindowsAltersAreOutOfItsReach) {
    memory.Seed({{"E:\\T\\name.", "dotted"}, {"E:\\T\\name", "plain"}});
    EXPECT_EQ(Remove("E:\\T\\name."), 0) << "it takes the dot away and deletes another file";
    EXPECT_FALSE(memory.Exists("E:\\T\\name"));
    EXPECT_EQ(memory.Read("E:\\T\\name."), "dotted");
    EXPECT_NE(Remove("E:\\T"), 0);
}

TEST_F(InMemoryShellTest, ADeletionThatFailsHalfWayHasDeletedHalf) {
    memory.Seed({{"E:\\T\\a"}, {"E:\\T\\b"}, {"E:\\T\\c"}});
    memory.Lock("E:\\T\\b");
    EXPECT_EQ(Remove("E:\\T"), static_cast<int>(error::sharingViolation));
    EXPECT_EQ(memory.Tree("E:\\T"), (Tree{{"b", ""}, {"c", ""}}));
}

TEST_F(InMemoryShellTest, ReadOnlyFilesGoOrStayAsTheSystemHasIt) {
    memory.Seed({{"E:\\a", "", {}, attribute::readOnly}, {"E:\\b", "", {}, attribute::readOnly}});
    EXPECT_EQ(Remove("E:\\a"), 0);
    memory.shell.deletesReadOnly = false;
    EXPECT_NE(Remove("E:\\b"), 0);
    EXPECT_TRUE(memory.Exists("E:\\b"));
}

TEST_F(InMemoryShellTest, ACopyMakesTheFoldersItNeeds) {
    memory.Seed({{"E:\\a", "x", At(8, 0)}});
    EXPECT_EQ(Copy("E:\\a", "E:\\New\\Deep\\a"), 0);
    EXPECT_EQ(memory.Read("E:\\New\\Deep\\a"), "x");
    EXPECT_EQ(memory.EntryOf("E:\\New\\Deep\\a").lastWriteTime, At(8, 0));
}

TEST_F(InMemoryShellTest, NothingIsCopiedOntoOrIntoItself) {
    memory.Seed({{"E:\\T\\a", "x"}});
    EXPECT_NE(Copy("E:\\T\\a", "E:\\T\\A"), 0);
    EXPECT_NE(Copy("E:\\T\\a", "E:\\T"), 0);
    EXPECT_NE(Copy("E:\\T", "E:\\T"), 0);
    EXPECT_NE(Copy("E:\\T", "E:\\T\\New"), 0);
    EXPECT_EQ(memory.Tree("E:\\T"), (Tree{{"a", "x"}}));
}

TEST_F(InMemoryShellTest, SeveralSourcesGoIntoAFolder) {
    memory.Seed({{"E:\\T\\a.txt", "1"}, {"E:\\T\\b.txt", "2"}, {"E:\\T\\c", "3"}});
    EXPECT_EQ(Copy("E:\\T\\*.txt", "E:\\U"), 0);
    EXPECT_EQ(memory.Tree("E:\\U"), (Tree{{"a.txt", "1"}, {"b.txt", "2"}}));
}

TEST_F(InMemoryShellTest, ShortcutsAreRecordedAndWritten) {
    const Shortcut shortcut{memory.shell.desktopFolder + "\\Log.lnk", "C:\\log.txt", 1, "p.exe, 0", "Log", "C:\\"};
    ASSERT_EQ(memory.machine().shell.SaveShortcut(shortcut), error::success);
    ASSERT_EQ(memory.shell.Shortcuts().size(), 1U);
    EXPECT_EQ(memory.shell.Shortcuts()[0].targetPath, "C:\\log.txt");
    EXPECT_TRUE(memory.Exists(shortcut.path));
    memory.Lock(shortcut.path);
    EXPECT_EQ(memory.machine().shell.SaveShortcut(shortcut), error::sharingViolation);
}

}  // namespace
}  // namespace marlok::test
