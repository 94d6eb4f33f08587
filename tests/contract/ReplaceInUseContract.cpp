#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

/// Replacing what other programs have open, by what they have open, and with a backup that cannot be made.
class ReplaceInUseContract : public ContractTest {
 protected:
    void SetUp() override {
        Put(In("old"), "old");
        Put(In("new"), "new");
    }

    SystemError Replace() { return files.Replace(In("old"), In("new"), In("backup")); }

    void ExpectReplaced() {
        EXPECT_EQ(Content(In("old")), "new");
        EXPECT_EQ(NamesWithoutDots(In("*")), (NameSet{"old", "backup"}));
    }

    void ExpectNothingChanged() {
        EXPECT_EQ(Content(In("old")), "old");
        EXPECT_EQ(Content(In("new")), "new");
    }
};

TEST_F(ReplaceInUseContract, AnOldFileThatMayBeReadAndDeletedIsReplaced) {
    auto held = contract->Hold(In("old"), {access::read, access::read | access::remove});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Replace(), error::success);
    held.reset();
    ExpectReplaced();
}

TEST_F(ReplaceInUseContract, AnOldFileThatSomebodyKeepsStays) {
    const auto held = contract->Hold(In("old"), {access::read, access::read | access::write});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Replace(), error::sharingViolation);
    ExpectNothingChanged();
}

TEST_F(ReplaceInUseContract, AProgramThatRunsIsReplaced) {
    contract->MakeProgram(In("program.exe"));
    auto running = contract->Run(In("program.exe"));
    ASSERT_NE(running, nullptr);
    EXPECT_EQ(files.Replace(In("program.exe"), In("new"), In("backup")), error::success);
    running.reset();
    EXPECT_EQ(Content(In("program.exe")), "new");
}

TEST_F(ReplaceInUseContract, ANewFileThatAnybodyHasOpenDoesNotReplace) {
    const auto held = contract->Hold(In("new"), {access::read, access::all});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Replace(), error::sharingViolation);
    ExpectNothingChanged();
}

TEST_F(ReplaceInUseContract, AReadOnlyNewFileDoesNotReplace) {
    ASSERT_EQ(files.SetAttributes(In("new"), attribute::readOnly), error::success);
    EXPECT_EQ(Replace(), error::accessDenied);
    ExpectNothingChanged();
    ASSERT_EQ(files.SetAttributes(In("new"), attribute::normal), error::success);
}

TEST_F(ReplaceInUseContract, ABackupThatCannotBeMadeLeavesBothAsTheyAre) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    EXPECT_TRUE(Is(files.Replace(In("old"), In("new"), In("Folder")), error::replacedKept, error::accessDenied));
    ExpectNothingChanged();
    EXPECT_TRUE(EntryOf(In("Folder")).IsFolder());
}

TEST_F(ReplaceInUseContract, ABackupThatIsOpenStays) {
    Put(In("backup"), "older");
    const auto held = contract->Hold(In("backup"), {access::read, access::read | access::write});
    ASSERT_NE(held, nullptr);
    EXPECT_TRUE(Is(Replace(), error::replacedKept, error::accessDenied));
    ExpectNothingChanged();
    EXPECT_EQ(Content(In("backup")), "older");
}

TEST_F(ReplaceInUseContract, AHiddenFileStaysHidden) {
    ASSERT_EQ(files.SetAttributes(In("old"), attribute::hidden), error::success);
    ASSERT_EQ(Replace(), error::success);
    EXPECT_TRUE(Is((EntryOf(In("old")).attributes & attribute::hidden) != 0, true, false));
    ASSERT_EQ(files.SetAttributes(In("old"), attribute::normal), error::success);
}

TEST_F(ReplaceInUseContract, AllThreeAreOnOneVolume) {
    const std::string other = contract->OtherVolume();
    if (other.empty()) {
        return;  // this machine has one volume: nothing can be asked
    }
    EXPECT_TRUE(Is(files.Replace(In("old"), In("new"), other + "\\backup"), error::replacedKept, error::notSameDevice));
    ExpectNothingChanged();
    Put(other + "\\new", "elsewhere");
    EXPECT_NE(files.Replace(In("old"), other + "\\new", In("backup")), error::success);
    ExpectNothingChanged();
    EXPECT_EQ(Content(other + "\\new"), "elsewhere");
}

}  // namespace
}  // namespace marlok::test
