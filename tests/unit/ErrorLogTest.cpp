#include "engine/ErrorLog.h"

#include "engine/AbsentDrives.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ErrorLogTest : public ProgramTest {
 protected:
    marlok::ErrorLog log_{machine.machine()};
};

TEST_F(ErrorLogTest, ANoteIsAddedToWhatIsThere) {
    EXPECT_EQ(log_.Note("one"), error::success);
    machine.clock.SetNow(At(17, 5));
    EXPECT_EQ(log_.Note("two"), error::success);
    EXPECT_EQ(machine.Read(Beside("Backup Error Log.txt")),
              "Marlok Backup Utility: Monday, Nov 15 2004 12:00 PM: one\r\n"
              "Marlok Backup Utility: Monday, Nov 15 2004 05:05 PM: two\r\n");
}

TEST_F(ErrorLogTest, NotesAreToldFromLinesOfReports) {
    machine.Seed({{log_.Path(), "C:\\Marlok Backup Utility: x\r\n"}});
    EXPECT_EQ(log_.Note("one"), error::success);
    EXPECT_THAT(log_.Notes(), ElementsAre(testing::EndsWith(": one")));
    machine.Remove(log_.Path());
    EXPECT_THAT(log_.Notes(), IsEmpty());
}

TEST_F(ErrorLogTest, ANoteThatCannotBeAddedGoesToStandardError) {
    machine.Deny(programFolder);
    EXPECT_EQ(log_.Note("one"), error::accessDenied);
    EXPECT_THAT(machine.process.ErrorLines(),
                ElementsAre(Failed(log_.Path(), error::accessDenied), testing::EndsWith(": one")));
}

TEST_F(ErrorLogTest, WithoutLinesThereIsNoFile) {
    machine.Seed({{log_.Path(), "old"}});
    EXPECT_EQ(log_.Write({}), error::success);
    EXPECT_FALSE(machine.Exists(log_.Path()));
}

TEST_F(ErrorLogTest, OnlyWhatFailedBecauseItsDriveIsMissingSaysSo) {
    machine.AddShare(R"(\\server\share)");
    machine.AddDrive('F');
    machine.AddDrive('G');
    machine.SetDriveFailure(R"(\\server\share)", error::badNetworkPath);
    machine.SetDriveFailure("G:", error::notReady);
    RunReport report;
    report.Add(R"(N:\Data\a.doc)", error::pathNotFound);
    report.Add(R"(\\server\share\x)", error::badNetworkPath);
    report.Add(R"(G:\x)", error::notReady);
    report.Add(R"(E:\Gone\a.doc)", error::pathNotFound);
    report.Add(R"(N:\Data\b.doc)", error::sharingViolation);
    report.Add(R"(N:\Data\c.doc)", "a reason of its own");
    report.Add("Backup Log File.lnk", error::pathNotFound);
    EXPECT_THAT(
        ErrorLogLines(machine.machine(), report, "go on"),
        ElementsAre(R"(N:\Data\a.doc: Drive N: is not connected. Connect it, then go on (error 3))",
                    R"(\\server\share\x: \\server\share cannot be reached. Connect to its network and see that the )"
                    "server runs, then go on (error 53)",
                    R"(G:\x: Drive G: holds no disk. Insert it, then go on (error 21))",
                    R"(E:\Gone\a.doc: the folder or drive was not found (error 3))",
                    R"(N:\Data\b.doc: the file is in use by another program (error 32))",
                    R"(N:\Data\c.doc: a reason of its own)",
                    "Backup Log File.lnk: the folder or drive was not found (error 3)"));
}

TEST_F(ErrorLogTest, AMissingDriveIsLookedForOnce) {
    AbsentDrives drives(machine.files, "try again");
    machine.faults.Reset();
    for (int i = 0; i < 10; ++i) {
        EXPECT_THAT(drives.Sentence(R"(N:\Data\)" + std::to_string(i), error::pathNotFound), HasSubstr("Drive N:"));
    }
    EXPECT_EQ(machine.faults.Count("GetEntry"), 1U);
}

}  // namespace
}  // namespace marlok::test
