#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class ShellContract : public ContractTest {
 protected:
    static constexpr std::uint16_t quietly = shellflag::silent | shellflag::noConfirmation;

    [[nodiscard]] int Copy(const std::string& from, const std::string& to) {
        return machine.shell.Perform({ShellFileOperation::Kind::copy, from, to, quietly});
    }

    [[nodiscard]] int Remove(const std::string& path) {
        return machine.shell.Perform({ShellFileOperation::Kind::remove, path, "", quietly});
    }
};

TEST_F(ShellContract, AFileIsCopiedToAFullName) {
    Put(In("a.txt"), "a");
    EXPECT_EQ(Copy(In("a.txt"), In("b.txt")), 0);
    EXPECT_EQ(Content(In("b.txt")), "a");
    EXPECT_EQ(Content(In("a.txt")), "a");
}

TEST_F(ShellContract, AFileIsCopiedOverAnotherWithoutAsking) {
    Put(In("a.txt"), "new");
    Put(In("b.txt"), "old, and longer");
    EXPECT_EQ(Copy(In("a.txt"), In("b.txt")), 0);
    EXPECT_EQ(Content(In("b.txt")), "new");
}

TEST_F(ShellContract, AFileIsCopiedIntoAFolder) {
    Put(In("a.txt"), "a");
    ASSERT_EQ(files.CreateFolder(In("Sub")), error::success);
    EXPECT_EQ(Copy(In("a.txt"), In("Sub")), 0);
    EXPECT_EQ(Content(In("Sub\\a.txt")), "a");
}

TEST_F(ShellContract, TheWriteTimeGoesWithTheFile) {
    Put(In("a.txt"), "a");
    LetTimePass(60);
    ASSERT_EQ(Copy(In("a.txt"), In("b.txt")), 0);
    EXPECT_EQ(EntryOf(In("b.txt")).lastWriteTime, EntryOf(In("a.txt")).lastWriteTime);
}

TEST_F(ShellContract, AFolderIsCopiedWithEverythingInIt) {
    ASSERT_EQ(files.CreateFolder(In("A")), error::success);
    ASSERT_EQ(files.CreateFolder(In("A\\Deep")), error::success);
    ASSERT_EQ(files.CreateFolder(In("B")), error::success);
    Put(In("A\\1.txt"), "1");
    Put(In("A\\Deep\\2.txt"), "2");
    EXPECT_EQ(Copy(In("A"), In("B")), 0);
    EXPECT_EQ(Content(In("B\\A\\1.txt")), "1");
    EXPECT_EQ(Content(In("B\\A\\Deep\\2.txt")), "2");
}

TEST_F(ShellContract, AMissingSourceIsNotCopied) {
    EXPECT_NE(Copy(In("absent.txt"), In("b.txt")), 0);
    EXPECT_FALSE(Exists(In("b.txt")));
}

TEST_F(ShellContract, AFileIsDeleted) {
    Put(In("a.txt"), "a");
    EXPECT_EQ(Remove(In("a.txt")), 0);
    EXPECT_FALSE(Exists(In("a.txt")));
}

TEST_F(ShellContract, TheResultTellsWhetherAReadOnlyFileIsGone) {
    Put(In("a.txt"), "a");
    ASSERT_EQ(files.SetAttributes(In("a.txt"), attribute::readOnly), error::success);
    // Windows deletes it without asking, Wine does not.
    const bool removed = Remove(In("a.txt")) == 0;
    EXPECT_EQ(Exists(In("a.txt")), !removed);
    if (!removed) {
        ASSERT_EQ(files.SetAttributes(In("a.txt"), attribute::normal), error::success);
    }
}

TEST_F(ShellContract, AFolderIsDeletedWithEverythingInIt) {
    ASSERT_EQ(files.CreateFolder(In("A")), error::success);
    ASSERT_EQ(files.CreateFolder(In("A\\Deep")), error::success);
    Put(In("A\\1.txt"), "1");
    Put(In("A\\Deep\\2.txt"), "2");
    Put(In("kept.txt"), "kept");
    EXPECT_EQ(Remove(In("A")), 0);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"kept.txt"});
}

TEST_F(ShellContract, WildcardsInTheLastComponentSelectSeveral) {
    Put(In("a.txt"), "");
    Put(In("b.txt"), "");
    Put(In("c.doc"), "");
    EXPECT_EQ(Remove(In("*.txt")), 0);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"c.doc"});
}

TEST_F(ShellContract, AMissingPathIsAnErrorAndNothingElse) {
    Put(In("kept.txt"), "kept");
    EXPECT_NE(Remove(In("absent.txt")), 0);
    EXPECT_NE(Remove(In("absent\\deeper.txt")), 0);
    EXPECT_EQ(Content(In("kept.txt")), "kept");
}

TEST_F(ShellContract, TheDesktopFolderExists) {
    const std::string desktop = machine.shell.DesktopFolder();
    ASSERT_NE(desktop, "");
    EXPECT_NE(desktop.back(), '\\');
    EXPECT_TRUE(EntryOf(desktop).IsFolder());
}

TEST_F(ShellContract, AShortcutIsWritten) {
    Put(In("log.txt"), "log");
    const Shortcut shortcut{In("Log.lnk"), In("log.txt"), 1, In("program.exe") + ", 0", "Backup Log File", scratch};
    EXPECT_EQ(machine.shell.SaveShortcut(shortcut), error::success);
    EXPECT_GT(EntryOf(In("Log.lnk")).size, 0U);
}

TEST_F(ShellContract, AShortcutReplacesTheOneBefore) {
    Shortcut shortcut{In("Log.lnk"), In("a.txt"), 1, In("program.exe") + ", 0", "one", scratch};
    ASSERT_EQ(machine.shell.SaveShortcut(shortcut), error::success);
    const std::string before = Content(In("Log.lnk"));
    shortcut.targetPath = In("another file.txt");
    ASSERT_EQ(machine.shell.SaveShortcut(shortcut), error::success);
    EXPECT_NE(Content(In("Log.lnk")), before);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"Log.lnk"});
}

TEST_F(ShellContract, AShortcutWithANameOfAnyScriptIsWritten) {
    const Shortcut shortcut{In("Журнал 🎉.lnk"), In("日本.txt"), 1, In("program.exe") + ", 0", "Ελλ", scratch};
    EXPECT_EQ(machine.shell.SaveShortcut(shortcut), error::success);
    EXPECT_EQ(NamesWithoutDots(In("*")), std::set<std::string>{"Журнал 🎉.lnk"});
}

TEST_F(ShellContract, AShortcutInAMissingFolderFails) {
    const Shortcut shortcut{In("absent\\Log.lnk"), In("log.txt"), 1, "", "", ""};
    EXPECT_NE(machine.shell.SaveShortcut(shortcut), error::success);
    EXPECT_FALSE(Exists(In("absent")));
}

}  // namespace
}  // namespace marlok::test
