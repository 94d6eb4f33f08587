#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

/// Renaming what other programs have open, and over it.
class MoveInUseContract : public ContractTest {
 protected:
    void SetUp() override {
        Put(In("a"), "a");
        Put(In("b"), "b");
    }

    SystemError Rename() { return files.Move(In("a"), In("c"), moveflag::none); }
    SystemError Replace() { return files.Move(In("a"), In("b"), moveflag::replace); }
};

TEST_F(MoveInUseContract, ASourceMovesWhenAllLetItBeDeleted) {
    auto held = contract->Hold(In("a"), {access::read, access::read | access::write});
    EXPECT_EQ(Rename(), error::sharingViolation);
    held.reset();
    held = contract->Hold(In("a"), {access::remove, access::none});
    EXPECT_EQ(Rename(), error::sharingViolation);
    held.reset();
    held = contract->Hold(In("a"), {access::read, access::all});
    EXPECT_EQ(Rename(), error::success);
}

TEST_F(MoveInUseContract, ASourceThatIsMerelyLookedAtMoves) {
    const auto held = contract->Hold(In("a"), {access::none, access::none});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Rename(), error::success);
}

TEST_F(MoveInUseContract, MappedFilesMoveAndAreReplacedOnceTheirHandlesAreClosed) {
    const auto source = contract->Map(In("a"));
    const auto target = contract->Map(In("b"));
    ASSERT_NE(source, nullptr);
    ASSERT_NE(target, nullptr);
    EXPECT_TRUE(Is(Replace(), error::success, error::accessDenied));
    EXPECT_TRUE(Is<std::string>(Content(In("b")), "a", "b"));
}

TEST_F(MoveInUseContract, ATargetIsReplacedWhenAllLetItBeDeleted) {
    for (const std::uint32_t use : {access::read, access::read | access::write | access::remove}) {
        auto held = contract->Hold(In("b"), {use, access::all});
        ASSERT_NE(held, nullptr);
        // Windows replaces it by its newer way of renaming, which Wine does not know.
        EXPECT_TRUE(Is(Replace(), error::success, error::accessDenied));
        held.reset();
        EXPECT_TRUE(Is<std::string>(Content(In("b")), "a", "b"));
        Put(In("a"), "a");
        Put(In("b"), "b");
    }
}

TEST_F(MoveInUseContract, ATargetThatSomebodyKeepsIsNotReplaced) {
    for (const std::uint32_t share : {access::none, access::read, access::read | access::write}) {
        const auto held = contract->Hold(In("b"), {access::read, share});
        ASSERT_NE(held, nullptr);
        EXPECT_EQ(Replace(), error::accessDenied);
    }
    EXPECT_EQ(Content(In("a")), "a");
    EXPECT_EQ(Content(In("b")), "b");
}

TEST_F(MoveInUseContract, AProgramThatRunsIsNotReplaced) {
    contract->MakeProgram(In("program.exe"));
    const auto running = contract->Run(In("program.exe"));
    ASSERT_NE(running, nullptr);
    EXPECT_EQ(files.Move(In("a"), In("program.exe"), moveflag::replace), error::accessDenied);
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(MoveInUseContract, AFolderWithAnOpenFileStays) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    Put(In("Folder\\x"), "x");
    auto held = contract->Hold(In("Folder\\x"), {access::read, access::all});
    ASSERT_NE(held, nullptr);
    EXPECT_TRUE(Is(files.Move(In("Folder"), In("New"), moveflag::none), error::accessDenied, error::success));
    held.reset();
    EXPECT_TRUE(Is(files.Move(In("Folder"), In("New"), moveflag::none), error::success, error::fileNotFound));
    EXPECT_EQ(Content(In("New\\x")), "x");
}

TEST_F(MoveInUseContract, AFolderThatIsOpenMovesWhenItMayBeDeleted) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    auto held = contract->Hold(In("Folder"), {access::read, access::read | access::write});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(files.Move(In("Folder"), In("New"), moveflag::none), error::sharingViolation);
    held.reset();
    EXPECT_EQ(files.Move(In("Folder"), In("New"), moveflag::none), error::success);
}

TEST_F(MoveInUseContract, OntoItselfIsNoMove) {
    EXPECT_EQ(files.Move(In("a"), In("a"), moveflag::none), error::success);
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(MoveInUseContract, ANewCaseChangesTheName) {
    ASSERT_EQ(files.CreateFolder(In("Remove Us")), error::success);
    EXPECT_EQ(files.Move(In("a"), In("A"), moveflag::none), error::success);
    EXPECT_EQ(files.Move(In("Remove Us"), In("Remove us"), moveflag::none), error::success);
    EXPECT_TRUE(Is(NamesWithoutDots(In("*")), NameSet{"A", "b", "Remove us"}, NameSet{"a", "b", "Remove Us"}));
}

TEST_F(MoveInUseContract, AFolderIsReplacedByNothing) {
    ASSERT_EQ(files.CreateFolder(In("One")), error::success);
    ASSERT_EQ(files.CreateFolder(In("Two")), error::success);
    EXPECT_EQ(files.Move(In("a"), In("One"), moveflag::replace), error::accessDenied);
    EXPECT_EQ(files.Move(In("Two"), In("One"), moveflag::replace), error::accessDenied);
    EXPECT_EQ(files.Move(In("a"), In("One"), moveflag::none), error::alreadyExists);
    EXPECT_TRUE(EntryOf(In("Two")).IsFolder());
}

TEST_F(MoveInUseContract, AFolderReplacesAFile) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    EXPECT_EQ(files.Move(In("Folder"), In("b"), moveflag::replace), error::success);
    EXPECT_TRUE(EntryOf(In("b")).IsFolder());
    EXPECT_FALSE(Exists(In("Folder")));
}

TEST_F(MoveInUseContract, AReadOnlyFileMovesFreely) {
    ASSERT_EQ(files.SetAttributes(In("a"), attribute::readOnly), error::success);
    EXPECT_EQ(Rename(), error::success);
    EXPECT_NE(EntryOf(In("c")).attributes & attribute::readOnly, 0U);
    ASSERT_EQ(files.SetAttributes(In("c"), attribute::normal), error::success);
}

TEST_F(MoveInUseContract, WildcardsAreNoNames) {
    for (const char* name : {"a?", "a*"}) {
        EXPECT_EQ(files.Move(In("a"), In(name), moveflag::replace), error::invalidName) << name;
    }
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(MoveInUseContract, NothingMovesToAnotherVolume) {
    const std::string other = contract->OtherVolume();
    if (other.empty()) {
        return;  // this machine has one volume: nothing can be asked
    }
    EXPECT_EQ(files.Move(In("a"), other + "\\a", moveflag::replace), error::notSameDevice);
    EXPECT_EQ(Content(In("a")), "a");
    EXPECT_FALSE(Exists(other + "\\a"));
}

}  // namespace
}  // namespace marlok::test
