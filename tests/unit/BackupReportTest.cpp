#include "engine/BackupReport.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

TEST(HistoryLineTest, ComesBackAsItWas) {
    const HistoryLine line{
        "2026-11-21 18:02:00", 75, 12, 3400, 2, 1, 123'456'789'012, {{R"(E:\Daily Backups)", true}, {"F:\\", false}}};
    const std::string text = FormatHistoryLine(line);
    EXPECT_EQ(text, "2026-11-21 18:02:00\t75\t12\t3400\t2\t1\t123456789012\tok E:\\Daily Backups\tfailed F:\\");
    const auto parsed = ParseHistoryLine(text);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(FormatHistoryLine(*parsed), text);
    EXPECT_EQ(parsed->outcomes.size(), 2U);
    EXPECT_FALSE(parsed->outcomes[1].well);
}

TEST(HistoryLineTest, WhatIsNoLineIsNone) {
    for (const char* text : {"", "2026", "2026-11-21 18:02:00\t75\t12\t3400\t2\t1", "when\t1\t2\t3\t4\t5\t-6",
                             "when\t1\t2\t3\t4\t5\t99999999999999999999", "when\t1\t2\t3\t4\t5\t6\tE:\\Daily"}) {
        EXPECT_FALSE(ParseHistoryLine(text)) << text;
    }
}

class BackupReportTest : public ProgramTest {
 protected:
    BackupReportTest() {
        Configure(machine, {{R"(E:\Daily)", {R"(C:\Data)"}}, {R"(E:\Weekly)", {R"(C:\Work)"}}});
        machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Work\b.doc)", "three"}});
    }

    Lines Report() { return LinesBeside(machine, "Backup Report.txt"); }
    Lines History() { return LinesBeside(machine, "Backup History.txt"); }
};

TEST_F(BackupReportTest, SaysWhatBecameOfEveryFile) {
    machine.Seed({{R"(C:\Data\old.doc)", "older", At(8, 0)}, {R"(E:\Daily\Data\old.doc)", "newer copy", At(9, 0)}});
    machine.Lock(R"(C:\Work\b.doc)");
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(Report(),
                testing::IsSupersetOf(
                    {std::string("Copied:    1 (3 bytes)"), std::string("Unchanged: 0"), std::string("Different: 1"),
                     std::string("Failed:    1"), std::string(R"(E:\Daily: all is saved)"),
                     std::string(R"(E:\Weekly: something is not saved)"), std::string(R"(C:\Data\old.doc)")}));
    EXPECT_THAT(Report(), Contains(StartsWith(R"(C:\Work\b.doc: )")));
    EXPECT_THAT(Report(), Contains(R"(E:\Weekly: last went well never, last failed 2004-11-15 12:00:00)"));
}

TEST_F(BackupReportTest, AFailureIsNotForgottenBecauseAnotherLocationWentWell) {
    machine.Lock(R"(C:\Work\b.doc)");
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    machine.clock.Advance(3'600'000);
    EXPECT_EQ(RunUnattended(machine, "C Daily"), exitcode::allDone);
    EXPECT_THAT(History(), SizeIs(2));
    EXPECT_THAT(Report(), Contains(R"(E:\Weekly: last went well never, last failed 2004-11-15 12:00:00)"));
    EXPECT_THAT(Report(), Contains(HasSubstr(R"(E:\Daily: last went well 2004-11-15 13:00:0)")));
}

TEST_F(BackupReportTest, TheHistoryKeepsTheLastFourHundredRuns) {
    std::string text;
    for (int run = 0; run < 400; ++run) {
        text += "run " + std::to_string(run) + "\t1\t2\t3\t4\t5\t6\tok E:\\Daily\r\n";
    }
    machine.Seed({{Beside("Backup History.txt"), text}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_THAT(History(), SizeIs(400));
    EXPECT_THAT(History().front(), StartsWith("run 1\t"));
    EXPECT_THAT(History().back(), StartsWith("2004-11-15 12:00:00\t"));
}

TEST_F(BackupReportTest, AHistoryThatCannotBeReadIsKept) {
    machine.Seed({{Beside("Backup History.txt"), "what was there"}});
    machine.Lock(Beside("Backup History.txt"));
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(Beside("Backup History.txt"))));
    machine.Lock(Beside("Backup History.txt"), false);
    EXPECT_EQ(machine.Read(Beside("Backup History.txt")), "what was there");
}

}  // namespace
}  // namespace marlok::test
