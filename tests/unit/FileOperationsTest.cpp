#include "fileops/FileOperations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/Callback.h"
#include "forms/Form.h"
#include "forms/Windows.h"
#include "tests/machine/ForwardingShell.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Keeps what the shell was asked.
class RecordingShell : public ForwardingShell {
 public:
    using ForwardingShell::ForwardingShell;
    int Perform(const ShellFileOperation& operation) override {
        asked.push_back(operation);
        return ForwardingShell::Perform(operation);
    }
    std::vector<ShellFileOperation> asked;
};

class FileOperationsTest : public testing::Test {
 protected:
    FileOperationsTest() { machine.AddDrive('E'); }
    void TearDown() override { machine.ExpectNoLeaks(); }

    int Delete(const std::string& path) { return DeleteThisFile(machine.files, shell, path); }

    InMemoryMachine machine;
    RecordingShell shell{machine.shell};
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
    forms::Form form{windows, "Form5", ""};
    forms::ProgressBar bar{form, "ProgressBar1"};
};

TEST_F(FileOperationsTest, TheShellIsAskedSilentlyAndWithoutConfirmation) {
    machine.Seed({{R"(C:\Data\a.txt)", "a"}, {R"(C:\Data\b.txt)", "b"}, {R"(E:\x\)"}});
    EXPECT_EQ(CopyThisFile(shell, R"(C:\Data\a.txt)", R"(E:\x\a.txt)"), 0);
    EXPECT_EQ(Delete(R"(C:\Data\b.txt)"), 0);
    ASSERT_EQ(shell.asked.size(), 2U);
    EXPECT_EQ(shell.asked[0].kind, ShellFileOperation::Kind::copy);
    EXPECT_EQ(shell.asked[1].kind, ShellFileOperation::Kind::remove);
    for (const ShellFileOperation& operation : shell.asked) {
        EXPECT_EQ(operation.flags, 0x14);
    }
    EXPECT_EQ(machine.Read(R"(E:\x\a.txt)"), "a");
    EXPECT_FALSE(machine.Exists(R"(C:\Data\b.txt)"));
}

TEST_F(FileOperationsTest, DeletingWhatIsMissingGivesTheShellsCode) {
    EXPECT_NE(Delete(R"(C:\Data\missing.txt)"), 0);
    ASSERT_EQ(shell.asked.size(), 1U);
}

TEST_F(FileOperationsTest, AFolderGoesWithEverythingBelowIt) {
    machine.Seed({{R"(C:\Data\a\b\c.txt)", "c"},
                  {R"(C:\Data\a\r.txt)", "r", {}, attribute::readOnly},
                  {R"(C:\Data\a\h.txt)", "h", {}, attribute::hidden},
                  {R"(C:\Data\keep.txt)", "k"}});
    EXPECT_EQ(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"keep.txt", "k"}}));
}

TEST_F(FileOperationsTest, ATrailingBackslashMakesNoDifference) {
    machine.Seed({{R"(C:\Data\a\b.txt)", "b"}});
    EXPECT_EQ(Delete(R"(C:\Data\a\)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\a)"));
}

TEST_F(FileOperationsTest, DrivesAndNothingAreRefused) {
    machine.Seed({{R"(E:\a.txt)", "a"}});
    EXPECT_NE(Delete("E:\\"), 0);
    EXPECT_NE(Delete(""), 0);
    EXPECT_THAT(shell.asked, IsEmpty());
    EXPECT_EQ(machine.Read(R"(E:\a.txt)"), "a");
}

TEST_F(FileOperationsTest, ALinkGoesAndItsTargetStays) {
    machine.Seed({{R"(C:\Target\t.txt)", "t"}});
    machine.MakeLink(R"(C:\Link)", R"(C:\Target)");
    EXPECT_EQ(Delete(R"(C:\Link)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Link)"));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
}

TEST_F(FileOperationsTest, AShellThatFollowsLinksIsNeverShownOne) {
    machine.shell.followsLinks = true;
    machine.Seed({{R"(C:\Target\t.txt)", "t"}, {R"(C:\Data\a\b\x.txt)", "x"}});
    machine.MakeLink(R"(C:\Data\a\b\link)", R"(C:\Target)");
    machine.MakeLink(R"(C:\Data\a\soft)", R"(C:\Target)", reparse::symbolicLink);
    EXPECT_EQ(Delete(R"(C:\Data\a)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\a)"));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
}

TEST_F(FileOperationsTest, WhereALinkCannotBeRemovedItStaysAndSoDoesItsTarget) {
    machine.shell.followsLinks = true;
    machine.files.SetCanRemoveLinks(false);
    machine.Seed({{R"(C:\Target\t.txt)", "t"}, {R"(C:\Data\a\b\x.txt)", "x"}, {R"(C:\Data\a\c\y.txt)", "y"}});
    machine.MakeLink(R"(C:\Data\a\b\link)", R"(C:\Target)");
    EXPECT_NE(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"a\\", ""}, {"a\\b\\", ""}, {"a\\b\\link\\", ""}}));
    EXPECT_THAT(shell.asked, IsEmpty());
}

TEST_F(FileOperationsTest, WildcardsDeleteWhatMatchesAndNoLinksTarget) {
    machine.shell.followsLinks = true;
    machine.Seed({{R"(C:\Target\t.txt)", "t"},
                  {R"(C:\Data\a1.txt)", "1"},
                  {R"(C:\Data\a2.txt)", "2"},
                  {R"(C:\Data\b.txt)", "b"}});
    machine.MakeLink(R"(C:\Data\a3)", R"(C:\Target)");
    EXPECT_EQ(Delete(R"(C:\Data\a*)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"b.txt", "b"}}));
    EXPECT_EQ(machine.Read(R"(C:\Target\t.txt)"), "t");
    EXPECT_NE(Delete(R"(C:\Data\z*)"), 0);
}

TEST_F(FileOperationsTest, WhatTheShellCannotReachTheKernelDeletes) {
    std::string path = R"(C:\Data\deep)";
    while (path.size() < 4100) {
        path += R"(\folder)";
    }
    machine.Seed({{path + R"(\a.txt)", "a"}, {R"(C:\Data\deep\r.txt)", "r", {}, attribute::readOnly}});
    EXPECT_EQ(Delete(R"(C:\Data\deep)"), 0);
    EXPECT_FALSE(machine.Exists(R"(C:\Data\deep)"));
}

TEST_F(FileOperationsTest, ALockedFileStaysAndTheRestGoes) {
    machine.Seed({{R"(C:\Data\a\locked.txt)", "l"}, {R"(C:\Data\a\free.txt)", "f"}});
    machine.Lock(R"(C:\Data\a\locked.txt)");
    EXPECT_NE(Delete(R"(C:\Data\a)"), 0);
    EXPECT_EQ(machine.Tree(R"(C:\Data)"), (Tree{{"a\\", ""}, {"a\\locked.txt", "l"}}));
}

TEST_F(FileOperationsTest, TheBarShowsTheBytesOfAFile) {
    machine.Seed({{R"(C:\Data\big.bin)", std::string(200'000, 'x')}, {R"(E:\x\)"}});
    EXPECT_EQ(CopyWithProgress(machine.files, R"(C:\Data\big.bin)", R"(E:\x\big.bin)", bar), error::success);
    EXPECT_EQ(bar.Min.Get(), 0.0F);
    EXPECT_EQ(bar.Max.Get(), 200'000.0F);
    EXPECT_EQ(bar.Value.Get(), 200'000.0F);
}

TEST_F(FileOperationsTest, AnEmptyFileLeavesTheBarsMaxAlone) {
    machine.Seed({{R"(C:\Data\empty.bin)"}, {R"(E:\x\)"}});
    bar.Min = 5.0F;
    bar.Max = 77.0F;
    bar.Value = 50.0F;
    EXPECT_EQ(CopyWithProgress(machine.files, R"(C:\Data\empty.bin)", R"(E:\x\empty.bin)", bar), error::success);
    EXPECT_EQ(bar.Min.Get(), 0.0F);
    EXPECT_EQ(bar.Max.Get(), 77.0F);
    EXPECT_EQ(bar.Value.Get(), 0.0F);
}

TEST_F(FileOperationsTest, EveryCopyOverwritesAndTellsWhyItFailed) {
    machine.Seed({{R"(C:\Data\a.txt)", "new"}, {R"(E:\x\1)", "old"}, {R"(E:\x\2)", "old"}, {R"(E:\x\3)", "old"}});
    const std::string source = R"(C:\Data\a.txt)";
    EXPECT_EQ(CopyWithProgress(machine.files, source, R"(E:\x\1)", bar), error::success);
    EXPECT_EQ(CopyCountingFiles(machine.files, source, R"(E:\x\2)", bar), error::success);
    EXPECT_EQ(CopyPlain(machine.files, source, R"(E:\x\3)"), error::success);
    EXPECT_EQ(machine.Tree(R"(E:\x)"), (Tree{{"1", "new"}, {"2", "new"}, {"3", "new"}}));
    EXPECT_EQ(CopyPlain(machine.files, source, R"(E:\x\3)", copyflag::failIfExists), error::fileExists);
    EXPECT_EQ(CopyPlain(machine.files, R"(C:\Data\none)", R"(E:\x\4)"), error::fileNotFound);
    EXPECT_EQ(CopyWithProgress(machine.files, source, R"(E:\none\4)", bar), error::pathNotFound);
}

TEST_F(FileOperationsTest, TheCountingBarGoesFromOneToNinetyNineAndStartsAgain) {
    machine.Seed({{R"(C:\Data\a.txt)", "a"}, {R"(E:\x\)"}});
    bar.Value = 0.0F;
    for (int file = 1; file <= 99; ++file) {
        static_cast<void>(CopyCountingFiles(machine.files, R"(C:\Data\a.txt)", R"(E:\x\a.txt)", bar));
        EXPECT_EQ(bar.Value.Get(), static_cast<float>(file));
    }
    static_cast<void>(CopyCountingFiles(machine.files, R"(C:\Data\a.txt)", R"(E:\x\a.txt)", bar));
    EXPECT_EQ(bar.Value.Get(), 1.0F);
}

TEST_F(FileOperationsTest, OtherReasonsLeaveTheBarAlone) {
    bar.Min = 1.0F;
    bar.Max = 2.0F;
    bar.Value = 1.5F;
    CopyProgress(bar, {10, 5, static_cast<CopyProgressInfo::Reason>(7)});
    EXPECT_EQ(bar.Value.Get(), 1.5F);
    CopyProgress(bar, {10, 5, CopyProgressInfo::Reason::chunkFinished});
    EXPECT_EQ(bar.Value.Get(), 5.0F);
    EXPECT_EQ(bar.Max.Get(), 2.0F);
}

}  // namespace
}  // namespace marlok::test
