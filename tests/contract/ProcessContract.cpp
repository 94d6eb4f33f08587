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

}  // namespace
}  // namespace marlok::test
