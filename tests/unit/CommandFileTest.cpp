#include "app/CommandLine.h"
#include "engine/CommandFile.h"
#include "platform/RuntimeError.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitCommandLineTest, FiveCharactersSeparate) {
    EXPECT_THAT(app::SplitCommandLine("a b,c/d\te\"f"), ElementsAre("a", "b", "c", "d", "e", "f"));
}

TEST(SplitCommandLineTest, RunsOfSeparatorsCountAsOne) {
    EXPECT_THAT(app::SplitCommandLine("  , A  ,, \t/Save\"\" / "), ElementsAre("A", "Save"));
}

TEST(SplitCommandLineTest, SeparatorsAloneAreNoArgument) {
    EXPECT_THAT(app::SplitCommandLine(""), IsEmpty());
    EXPECT_THAT(app::SplitCommandLine(" ,/ \t\" ,/"), IsEmpty());
}

TEST(SplitCommandLineTest, QuotesDoNotGroup) {
    EXPECT_THAT(app::SplitCommandLine(R"(A "My Backups\Daily files")"),
                ElementsAre("A", "My", R"(Backups\Daily)", "files"));
}

TEST(SplitCommandLineTest, BackslashesAreOrdinary) {
    EXPECT_THAT(app::SplitCommandLine(R"(c Backups\Daily)"), ElementsAre("c", R"(Backups\Daily)"));
    EXPECT_THAT(app::SplitCommandLine("\\"), ElementsAre("\\"));
}

TEST(SplitCommandLineTest, OtherCharactersSurvive) {
    EXPECT_THAT(app::SplitCommandLine("Sicherung\u00C4\u4E2D;x\r\ny"), ElementsAre("Sicherung\u00C4\u4E2D;x\r\ny"));
}

TEST(SplitCommandLineTest, ArgumentsBehindTheLastAreDropped) {
    EXPECT_THAT(app::SplitCommandLine("a b c", 2), ElementsAre("a", "b"));
    EXPECT_THAT(app::SplitCommandLine("a b c", 3), ElementsAre("a", "b", "c"));
    EXPECT_THAT(app::SplitCommandLine("a b c", 0), IsEmpty());
}

class CommandFileTest : public ProgramTest {
 protected:
    CommandFileTest() { program.session.gCommandFile = Beside("Command.txt"); }

    bool Take(const std::string& arguments) {
        machine.process.arguments = arguments;
        return app::GetCommandLine(program.session);
    }

    void TakeFlagsOf(const std::string& file) {
        machine.Write(Beside("Command.txt"), file);
        app::TakeRunFlags(program.session);
    }

    Program program{machine.machine(), nullptr};
};

TEST_F(CommandFileTest, EachArgumentBecomesALine) {
    struct {
        const char* arguments;
        const char* file;
    } const cases[] = {
        {R"(A Backups\Daily S)", "A\r\nBackups\\Daily\r\nS\r\n"},
        {"c,Save", "c\r\nSave\r\n"},
        {"/A /S", "A\r\nS\r\n"},
    };
    for (const auto& one : cases) {
        EXPECT_TRUE(Take(one.arguments));
        EXPECT_EQ(machine.Read(Beside("Command.txt")), one.file);
    }
}

TEST_F(CommandFileTest, WithoutArgumentsNothingIsWritten) {
    for (const char* arguments : {"", "   ", " ,//\t\"\" "}) {
        EXPECT_FALSE(Take(arguments));
        EXPECT_FALSE(machine.Exists(Beside("Command.txt")));
    }
}

TEST_F(CommandFileTest, AnOldFileIsReplacedWhole) {
    machine.Write(Beside("Command.txt"), "A\r\nOld\r\nLines\r\nS\r\n");
    EXPECT_TRUE(Take("C"));
    EXPECT_EQ(machine.Read(Beside("Command.txt")), "C\r\n");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(CommandFileTest, AHundredArgumentsAreWritten) {
    std::string arguments;
    for (int i = 1; i <= 101; ++i) {
        arguments += "n" + std::to_string(i) + " ";
    }
    EXPECT_TRUE(Take(arguments));
    const Lines lines = LinesBeside(machine, "Command.txt");
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines.back(), "n100");
}

TEST_F(CommandFileTest, AFileThatCannotBeWrittenIsARunTimeError) {
    machine.Seed({{Beside("Command.txt"), "old"}});
    machine.Lock(Beside("Command.txt"));
    try {
        static_cast<void>(Take("A"));  // it throws before it returns
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::permissionDenied);
    }
    EXPECT_EQ(machine.Read(Beside("Command.txt")), "old");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(CommandFileTest, TheLastLetterOfAKindCounts) {
    TakeFlagsOf("A\r\nC\r\n");
    EXPECT_FALSE(program.session.gAllFiles);
    TakeFlagsOf("C\r\nSave\r\na\r\n");
    EXPECT_TRUE(program.session.gAllFiles);
    EXPECT_FALSE(program.session.gShowMessage);
}

TEST_F(CommandFileTest, ALastLineWithoutLineBreakSetsItsFlag) {
    TakeFlagsOf("A\r\nSave\r\nS");
    EXPECT_TRUE(program.session.gAllFiles);
    EXPECT_TRUE(program.session.gShowMessage);
}

TEST_F(CommandFileTest, OnlyExactLettersCount) {
    TakeFlagsOf("All\r\n A\r\n-A\r\nA \r\nSS\r\nS\n\r\n\r\nA\r");
    EXPECT_FALSE(program.session.gAllFiles);
    EXPECT_FALSE(program.session.gShowMessage);
}

TEST_F(CommandFileTest, AMissingFileIsARunTimeError) {
    try {
        app::TakeRunFlags(program.session);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::fileNotFound);
    }
}

TEST(ChooseLocationsTest, ALetterBehindTheLocationsHasHadItsEffect) {
    const std::vector<Location> configured = LocationsAt({R"(E:\Week)"});
    EXPECT_THAT(ChooseLocations({"Week", "C"}, configured).withoutEffect, testing::IsEmpty());
    EXPECT_THAT(ChooseLocations({"C"}, configured).withoutEffect, testing::ElementsAre("C")) << "nothing is run";
    EXPECT_THAT(ChooseLocations({"Week", "Weak"}, configured).withoutEffect, testing::ElementsAre("Weak"));
}

}  // namespace
}  // namespace marlok::test
