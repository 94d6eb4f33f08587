#include <gtest/gtest.h>

#include <windows.h>

#include "tests/contract/ContractTest.h"
#include "tests/windows/Waiting.h"
#include "win32/machine/Handles.h"
#include "win32/machine/ModulePath.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

/// The restart program, in a folder of its own with a stand-in for the main program (see StandIn.h).
class RestartTest : public ContractTest {
 protected:
    void SetUp() override {
        const std::string own = win32::FromWide(win32::ModulePath());
        const std::string folder = machine.process.ProgramFolder();
        // The build puts the programs one folder above the tests.
        const std::string above = folder.substr(0, folder.rfind('\\'));
        const std::string built = Exists(folder + "\\Restart.exe") ? folder : above;
        ASSERT_EQ(files.Copy(built + "\\Restart.exe", In("Restart.exe"), copyflag::none, {}), error::success);
        ASSERT_EQ(files.Copy(own, In("Marlok Backup.exe"), copyflag::none, {}), error::success);
    }

    void TearDown() override {
        Put(In("stop.txt"), "");
        // A program that still runs could not be removed with the folder.
        EXPECT_TRUE(WaitUntil([this] { return DeleteFileW(win32::ToWide(In("Marlok Backup.exe")).c_str()) != 0; }));
    }

    win32::KernelHandle Start(const std::string& program, const std::string& arguments = "") {
        std::wstring commandLine = win32::ToWide("\"" + In(program) + "\" " + arguments);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION information{};
        EXPECT_NE(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                 &information),
                  0);
        CloseHandle(information.hThread);
        return win32::KernelHandle(information.hProcess);
    }

    /// How often the stand-in was started.
    int Starts() {
        std::unique_ptr<File> file;
        std::string text;
        if (files.Open(In("starts.txt"), OpenMode::read, file) != error::success ||
            file->Read(text, 4096) != error::success) {
            return 0;
        }
        lastStart = text;
        return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    }

    /// What a process says of itself to the restart program.
    static std::string Identification(const win32::KernelHandle& process) {
        FILETIME created{};
        FILETIME unused{};
        EXPECT_NE(GetProcessTimes(process.Get(), &created, &unused, &unused, &unused), 0);
        const std::uint64_t time = (std::uint64_t{created.dwHighDateTime} << 32) | created.dwLowDateTime;
        return std::to_string(GetProcessId(process.Get())) + " " + std::to_string(time);
    }

    static DWORD ExitCode(const win32::KernelHandle& process) {
        EXPECT_EQ(WaitForSingleObject(process.Get(), 30000), WAIT_OBJECT_0) << "it ends in every case";
        DWORD code = ~0U;
        GetExitCodeProcess(process.Get(), &code);
        return code;
    }

    std::string lastStart;
};

TEST_F(RestartTest, TheProgramIsStartedOnceItHasEnded) {
    const win32::KernelHandle program = Start("Marlok Backup.exe");
    ASSERT_TRUE(WaitUntil([this] { return Starts() == 1; }));
    const win32::KernelHandle restart = Start("Restart.exe");
    // While the program runs, nothing may happen; half a second is ample for a wrong start to show.
    EXPECT_FALSE(WaitUntil([this] { return Starts() > 1; }, std::chrono::milliseconds(500)));
    EXPECT_EQ(WaitForSingleObject(restart.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    Put(In("stop.txt"), "");
    EXPECT_EQ(ExitCode(program), 0U);
    EXPECT_EQ(ExitCode(restart), 0U);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 2; }));
}

TEST_F(RestartTest, AProgramThatHasEndedAlreadyIsStartedAtOnceFromItsFolder) {
    Put(In("stop.txt"), "");
    const win32::KernelHandle restart = Start("Restart.exe");
    EXPECT_EQ(ExitCode(restart), 0U);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 1; }));
    EXPECT_EQ(lastStart, scratch + "\r\n");
}

TEST_F(RestartTest, AProgramOfThatNameElsewhereIsNotWaitedFor) {
    ASSERT_EQ(files.CreateFolder(In("Other")), error::success);
    ASSERT_EQ(files.Copy(In("Marlok Backup.exe"), In("Other\\Marlok Backup.exe"), copyflag::none, {}), error::success);
    const win32::KernelHandle other = Start("Other\\Marlok Backup.exe");
    ASSERT_TRUE(WaitUntil([this] { return Exists(In("Other\\starts.txt")); }));
    Put(In("stop.txt"), "");
    const win32::KernelHandle restart = Start("Restart.exe");
    EXPECT_EQ(ExitCode(restart), 0U);
    EXPECT_EQ(WaitForSingleObject(other.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT)) << "the other one still runs";
    Put(In("Other\\stop.txt"), "");
    EXPECT_EQ(ExitCode(other), 0U);
}

TEST_F(RestartTest, OnlyTheProgramThatAskedIsWaitedFor) {
    const win32::KernelHandle asker = Start("Marlok Backup.exe");
    ASSERT_TRUE(WaitUntil([this] { return Starts() == 1; }));
    const win32::KernelHandle restart = Start("Restart.exe", Identification(asker));
    EXPECT_FALSE(WaitUntil([this] { return Starts() > 1; }, std::chrono::milliseconds(500)));
    EXPECT_EQ(WaitForSingleObject(restart.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
    TerminateProcess(asker.Get(), 0);
    EXPECT_EQ(ExitCode(restart), 0U);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 2; }));
    // Another one runs now; that one has not asked.
    EXPECT_EQ(ExitCode(Start("Restart.exe", Identification(asker))), 0U);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 3; }));
}

TEST_F(RestartTest, ANumberThatBelongsToAnotherProcessNowIsNotWaitedFor) {
    const win32::KernelHandle other = Start("Marlok Backup.exe");
    ASSERT_TRUE(WaitUntil([this] { return Starts() == 1; }));
    const win32::KernelHandle restart = Start("Restart.exe", std::to_string(GetProcessId(other.Get())) + " 12345");
    EXPECT_EQ(ExitCode(restart), 0U);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 2; }));
}

TEST_F(RestartTest, AMissingProgramIsReported) {
    ASSERT_EQ(files.Move(In("Marlok Backup.exe"), In("away.exe"), false), error::success);
    EXPECT_EQ(ExitCode(Start("Restart.exe")), 2U);
    ASSERT_EQ(files.Move(In("away.exe"), In("Marlok Backup.exe"), false), error::success);
}

TEST_F(RestartTest, StartHiddenStartsAProgramInItsFolder) {
    Put(In("stop.txt"), "");
    ASSERT_EQ(machine.process.StartHidden(In("Marlok Backup.exe"), ""), error::success);
    EXPECT_TRUE(WaitUntil([this] { return Starts() == 1; }));
    EXPECT_EQ(lastStart, scratch + "\r\n");
    EXPECT_EQ(machine.process.StartHidden(In("absent.exe"), ""), error::fileNotFound);
}

}  // namespace
}  // namespace marlok::test
