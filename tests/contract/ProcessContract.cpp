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
    EXPECT_EQ(machine.process.StartHidden(In("absent.exe"), ""), error::fileNotFound);
    EXPECT_EQ(machine.process.StartHidden(In(std::string("a\0.exe", 6)), ""), error::invalidName);
}

TEST_F(ProcessContract, TheIdentificationIsTheNumberAndTheTimeOfCreation) {
    const std::string identification = machine.process.Identification();
    const std::string id = std::to_string(machine.process.ProcessId());
    ASSERT_TRUE(identification.starts_with(id + " ")) << identification;
    const std::string time = identification.substr(id.size() + 1);
    EXPECT_EQ(time.find_first_not_of("0123456789"), std::string::npos);
    EXPECT_GE(machine.clock.ToLocal(std::stoull(time)).year, 2000);
    EXPECT_EQ(identification, machine.process.Identification());
}

TEST_F(ProcessContract, ThisProgramKeepsTheClaimItHolds) {
    ASSERT_TRUE(machine.process.ClaimSingleInstance());
    EXPECT_TRUE(machine.process.ClaimSingleInstance());
}

}  // namespace
}  // namespace marlok::test
