#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

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

TEST_F(SystemInfoContract, MachineAndUserHaveNames) {
    EXPECT_NE(machine.system.ComputerName(), "");
    EXPECT_NE(machine.system.UserName(), "");
    EXPECT_EQ(machine.system.UserName().find('\0'), std::string::npos);
}

TEST_F(SystemInfoContract, TheUserHasAFolder) {
    const std::string folder = machine.system.ProfileFolder();
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

}  // namespace
}  // namespace marlok::test
