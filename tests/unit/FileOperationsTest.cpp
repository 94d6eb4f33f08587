#include "fileops/FileOperations.h"

#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(FileOperationsTest, EveryCopyOverwritesAndSaysWhyItFailed) {
    InMemoryMachine machine;
    machine.AddDrive('E');
    machine.Seed({{R"(C:\Data\a.txt)", "new"}, {R"(E:\x\1)", "old"}, {R"(E:\x\2)", "old"}, {R"(E:\x\3)", "old"}});
    const std::string source = R"(C:\Data\a.txt)";
    EXPECT_EQ(CopyWithProgress(machine.files, source, R"(E:\x\1)", copyflag::none, nullptr), error::success);
    EXPECT_EQ(CopyThisFile(machine.files, source, R"(E:\x\2)"), error::success);
    EXPECT_EQ(CopyPlain(machine.files, source, R"(E:\x\3)", copyflag::none), error::success);
    EXPECT_EQ(machine.Tree(R"(E:\x)"), (Tree{{"1", "new"}, {"2", "new"}, {"3", "new"}}));
    EXPECT_EQ(CopyPlain(machine.files, source, R"(E:\x\3)", copyflag::failIfExists), error::fileExists);
    EXPECT_EQ(CopyPlain(machine.files, R"(C:\Data\none)", R"(E:\x\4)", copyflag::none), error::fileNotFound);
    EXPECT_EQ(CopyWithProgress(machine.files, source, R"(E:\none\4)", copyflag::none, nullptr), error::pathNotFound);
    EXPECT_EQ(CopyThisFile(machine.files, source, R"(E:\none\4)"), error::pathNotFound);
}

}  // namespace
}  // namespace marlok::test
