#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

/// Deleting what other programs have open.
class DeleteInUseContract : public ContractTest {
 protected:
    void SetUp() override { Put(In("a"), "a"); }

    SystemError Delete() { return files.Delete(In("a")); }
};

TEST_F(DeleteInUseContract, WhoForbidsItKeepsTheFile) {
    for (const Use use : {Use{access::read, access::none}, Use{access::write, access::read | access::write}}) {
        const auto held = contract->Hold(In("a"), use);
        ASSERT_NE(held, nullptr);
        EXPECT_EQ(Delete(), error::sharingViolation);
    }
    EXPECT_EQ(Content(In("a")), "a");
}

TEST_F(DeleteInUseContract, WhoSharesItLosesTheNameAtOnce) {
    auto held = contract->Hold(In("a"), {access::read, access::all});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Delete(), error::success);
    DirectoryEntry entry;
    EXPECT_TRUE(Is(files.GetEntry(In("a"), entry), error::fileNotFound, error::success));
    EXPECT_TRUE(Is(Delete(), error::fileNotFound, error::success));
    std::unique_ptr<File> file;
    EXPECT_TRUE(Is(files.Open(In("a"), OpenMode::createNew, file), error::success, error::fileExists));
    file.reset();
    held.reset();
    EXPECT_TRUE(Is(Exists(In("a")), true, false)) << "it is a new one";
}

TEST_F(DeleteInUseContract, AFolderOfADeletedFileThatIsOpenCanGo) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    Put(In("Folder\\x"), "x");
    auto held = contract->Hold(In("Folder\\x"), {access::read, access::all});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(files.Delete(In("Folder\\x")), error::success);
    EXPECT_TRUE(Is(files.RemoveFolder(In("Folder")), error::success, error::directoryNotEmpty));
    held.reset();
    EXPECT_TRUE(Is(files.RemoveFolder(In("Folder")), error::fileNotFound, error::success));
}

TEST_F(DeleteInUseContract, AProgramThatRunsStays) {
    contract->MakeProgram(In("program.exe"));
    auto running = contract->Run(In("program.exe"));
    ASSERT_NE(running, nullptr);
    EXPECT_EQ(files.Delete(In("program.exe")), error::accessDenied);
    running.reset();
    EXPECT_EQ(files.Delete(In("program.exe")), error::success);
}

TEST_F(DeleteInUseContract, AFolderThatSomebodyKeepsStays) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    auto held = contract->Hold(In("Folder"), {access::remove, access::none});
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::sharingViolation);
    held.reset();
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::success);
}

TEST_F(DeleteInUseContract, TheCurrentFolderStays) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    contract->EnterFolder(In("Folder"));
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::sharingViolation);
    contract->EnterFolder(scratch);
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::success);
    contract->EnterFolder("C:\\");
}

TEST_F(DeleteInUseContract, AReadOnlyFolderStays) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    ASSERT_EQ(files.SetAttributes(In("Folder"), attribute::readOnly), error::success);
    Put(In("Folder\\x"), "a read-only folder takes files");
    ASSERT_EQ(files.Delete(In("Folder\\x")), error::success);
    // Wine does not keep the attribute of a folder.
    EXPECT_TRUE(Is(files.RemoveFolder(In("Folder")), error::accessDenied, error::success));
    const SystemError cleared = files.SetAttributes(In("Folder"), attribute::normal);
    EXPECT_TRUE(Is(cleared, error::success, error::fileNotFound));
}

TEST_F(DeleteInUseContract, AHiddenFolderGoes) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    ASSERT_EQ(files.SetAttributes(In("Folder"), attribute::hidden), error::success);
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::success);
}

TEST_F(DeleteInUseContract, AFolderWithAFileInUseIsNotEmpty) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    Put(In("Folder\\x"), "x");
    const auto held = contract->Hold(In("Folder\\x"), {access::read, access::none});
    EXPECT_EQ(files.RemoveFolder(In("Folder")), error::directoryNotEmpty);
}

TEST_F(DeleteInUseContract, WildcardsAreNoNames) {
    ASSERT_EQ(files.CreateFolder(In("Folder")), error::success);
    for (const char* name : {"Folde?", "F*"}) {
        EXPECT_EQ(files.RemoveFolder(In(name)), error::invalidName) << name;
        EXPECT_EQ(files.Delete(In(name)), error::invalidName) << name;
    }
    EXPECT_TRUE(Exists(In("Folder")));
}

}  // namespace
}  // namespace marlok::test
