#include "engine/RunReport.h"

#include "engine/RunLog.h"

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RunReportTest : public ProgramTest {
 protected:
    RunReport report;
};

TEST_F(RunReportTest, OneLineForEachThingThatFailed) {
    report.Add(R"(C:\Data\a.doc)", error::sharingViolation);
    report.Add(R"(C:\Data\README)", "taken for a folder");
    report.Add(R"(C:\Data\b.doc)", SystemError{4711});
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::success);
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation),
                            R"(C:\Data\README: taken for a folder)", Failed(R"(C:\Data\b.doc)", 4711)));
}

TEST_F(RunReportTest, AnErrorWithoutAnOwnSentenceHasTheSystems) {
    report.Add("C:\\x", error::ioDevice);
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::success);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(HasSubstr(machine.system.ErrorText(error::ioDevice))));
}

TEST_F(RunReportTest, ALaterReportReplacesTheFormer) {
    machine.Seed({{Beside("Backup Error Log.txt"), "old\r\n", {}, attribute::readOnly}});
    report.Add("C:\\x", error::fileNotFound);
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::success);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed("C:\\x", error::fileNotFound)));
}

TEST_F(RunReportTest, WithNothingToReportTheFileGoes) {
    machine.Seed({{Beside("Backup Error Log.txt"), "old\r\n", {}, attribute::readOnly}});
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::success);
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt")));
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::success);
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt")));
    EXPECT_THAT(machine.process.ErrorLines(), IsEmpty());
}

TEST_F(RunReportTest, WhatCannotBeWrittenGoesToStandardError) {
    machine.Seed({{Beside("Backup Error Log.txt"), "old\r\n"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    report.Add("C:\\x", error::fileNotFound);
    EXPECT_EQ(WriteErrorLog(machine.machine(), report), error::sharingViolation);
    EXPECT_EQ(machine.Read(Beside("Backup Error Log.txt")), "old\r\n");
    EXPECT_THAT(machine.process.ErrorLines(),
                ElementsAre(Failed(Beside("Backup Error Log.txt"), error::sharingViolation), HasSubstr("C:\\x: ")));
}

TEST_F(RunReportTest, ARunThatFailsNothingRemovesTheReportOfTheRunBefore) {
    machine.Seed({{R"(C:\Data\a.doc)", "one"}, {R"(C:\Data\b.doc)", "two"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}});
    machine.Lock(R"(C:\Data\a.doc)");
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Data\a.doc)", error::sharingViolation)));
    machine.Lock(R"(C:\Data\a.doc)", false);
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_FALSE(machine.Exists(Beside("Backup Error Log.txt")));
}

}  // namespace
}  // namespace marlok::test
