#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class ProcessContract : public ContractTest {};

TEST_F(ProcessContract, TheProgramFolderExists) {
    const std::string folder = machine.process.ProgramFolder();
    ASSERT_GE(folder.size(), 3U);
    EXPECT_EQ(folder[1], ':');
    EXPECT_EQ(folder.back() == '\\', folder.size() == 3);
    EXPECT_TRUE(EntryOf(folder).IsFolder());
}

TEST_F(ProcessContract, TheCurrentFolderExists) {
    const std::string folder = machine.process.CurrentFolder();
    ASSERT_GE(folder.size(), 3U);
    EXPECT_TRUE(EntryOf(folder).IsFolder());
}

TEST_F(ProcessContract, RelativePathsStartAtTheCurrentFolder) {
    std::string relative;
    std::string full;
    ASSERT_EQ(files.FinalPath(".", relative), error::success);
    ASSERT_EQ(files.FinalPath(machine.process.CurrentFolder(), full), error::success);
    EXPECT_EQ(relative, full);
}

TEST_F(ProcessContract, ArgumentsNeverBeginWithABlank) {
    const std::string arguments = machine.process.Arguments();
    EXPECT_TRUE(arguments.empty() || arguments.front() != ' ') << arguments;
    EXPECT_EQ(arguments, machine.process.Arguments());
}

TEST_F(ProcessContract, AMissingProgramCannotBeStarted) {
    EXPECT_EQ(machine.process.StartHidden(In("absent.exe")), error::fileNotFound);
}

TEST_F(ProcessContract, ThisProgramKeepsTheClaimItHolds) {
    ASSERT_TRUE(machine.process.ClaimSingleInstance());
    EXPECT_TRUE(machine.process.ClaimSingleInstance());
}

class SystemInfoContract : public ContractTest {};

TEST_F(SystemInfoContract, TheSystemTellsItsVersion) {
    VersionRecord version;
    ASSERT_TRUE(machine.system.GetVersion(version));
    EXPECT_EQ(version.platform, 2U);
    EXPECT_GE(version.major, 5U);
}

TEST_F(SystemInfoContract, TheWindowsFolderExists) {
    const std::string folder = machine.system.WindowsFolder();
    ASSERT_GT(folder.size(), 3U);
    EXPECT_NE(folder.back(), '\\');
    EXPECT_TRUE(EntryOf(folder).IsFolder());
}

TEST_F(SystemInfoContract, TheCodePageHoldsAscii) {
    EXPECT_EQ(machine.system.FromCodePage("plain text 123\r\n"), "plain text 123\r\n");
    EXPECT_EQ(machine.system.FromCodePage(""), "");
}

TEST_F(SystemInfoContract, ErrorsHaveASentenceWithoutLineBreak) {
    const std::string sentence = machine.system.ErrorText(error::accessDenied);
    EXPECT_NE(sentence, "");
    EXPECT_EQ(sentence.find_first_of("\r\n"), std::string::npos);
    EXPECT_NE(machine.system.ErrorText(error::fileNotFound), sentence);
}

TEST_F(SystemInfoContract, AnUnknownErrorHasNone) {
    EXPECT_EQ(machine.system.ErrorText(0x2FFFFFFF), "");
}

class DesktopContract : public ContractTest {};

TEST_F(DesktopContract, TheScreenHasASizeInTwips) {
    EXPECT_GE(machine.desktop.ScreenWidth(), 640 * 15);
    EXPECT_GE(machine.desktop.ScreenHeight(), 480 * 15);
}

TEST_F(DesktopContract, WaitingEndsWithoutInput) {
    const std::uint64_t before = machine.clock.TickCount();
    machine.desktop.WaitForInput(20);
    EXPECT_LT(machine.clock.TickCount() - before, 5000U);
}

}  // namespace
}  // namespace marlok::test
