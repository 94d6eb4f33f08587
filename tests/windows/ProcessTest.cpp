#include <gtest/gtest.h>

#include <windows.h>

#include "win32/Win32Machine.h"
#include "win32/machine/Handles.h"
#include "win32/machine/ModulePath.h"
#include "win32/machine/Wide.h"
#include "win32/machine/Win32Process.h"

namespace marlok::win32 {
namespace {

TEST(Arguments, StandBehindTheProgramsPath) {
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Program Files\\Marlok Backup.exe\" C Daily"), L"C Daily");
    EXPECT_EQ(ArgumentsOf(L"C:\\Marlok.exe   C Daily "), L"C Daily ");
    EXPECT_EQ(ArgumentsOf(L"C:\\Marlok.exe\tX"), L"X");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Marlok.exe\"\"quoted\" x"), L"\"quoted\" x");
    EXPECT_EQ(ArgumentsOf(L"C:\\Marlok.exe"), L"");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Marlok.exe\""), L"");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Marlok.exe\"   "), L"");
    EXPECT_EQ(ArgumentsOf(L"\"unfinished"), L"");
    EXPECT_EQ(ArgumentsOf(L""), L"");
}

TEST(SingleInstance, IsClaimedOnceUntilItsHolderEnds) {
    Win32Machine second;
    {
        Win32Machine first;
        EXPECT_TRUE(first.machine().process.ClaimSingleInstance());
        EXPECT_TRUE(first.machine().process.ClaimSingleInstance()) << "the holder keeps it";
        EXPECT_FALSE(second.machine().process.ClaimSingleInstance());
    }
    EXPECT_TRUE(second.machine().process.ClaimSingleInstance());
}

TEST(StandardError, TakesALineInUtf8) {
    Win32Machine real;
    KernelHandle read;
    KernelHandle write;
    ASSERT_NE(CreatePipe(read.Receive(), write.Receive(), nullptr, 0), 0);
    HANDLE before = GetStdHandle(STD_ERROR_HANDLE);
    SetStdHandle(STD_ERROR_HANDLE, write.Get());
    real.machine().process.WriteError("Error 70: C:\\Mäx");
    SetStdHandle(STD_ERROR_HANDLE, before);
    char buffer[100] = {};
    DWORD count = 0;
    ASSERT_NE(ReadFile(read.Get(), buffer, sizeof buffer, &count, nullptr), 0);
    EXPECT_EQ(std::string(buffer, count), "Error 70: C:\\Mäx\r\n");
}

TEST(ProgramFolder, IsWhereTheProgramLies) {
    Win32Machine real;
    const std::string folder = real.machine().process.ProgramFolder();
    EXPECT_TRUE(FromWide(ModulePath()).starts_with(folder + "\\"));
    EXPECT_FALSE(folder.ends_with("\\"));
}

TEST(SystemFacts, AreTold) {
    Win32Machine real;
    SystemInfo& system = real.machine().system;
    EXPECT_EQ(system.ProductName(), "Marlok Backup Utility");
    VersionRecord version;
    ASSERT_TRUE(system.GetVersion(version));
    EXPECT_EQ(version.platform, 2U);
    EXPECT_GE(version.major, 6U);
    DirectoryEntry entry;
    EXPECT_EQ(real.machine().files.GetEntry(system.WindowsFolder(), entry), error::success);
    EXPECT_TRUE(entry.IsFolder());
    EXPECT_FALSE(system.WindowsFolder().ends_with("\\"));
}

TEST(SystemFacts, ErrorsHaveEnglishSentencesWithoutLineBreak) {
    Win32Machine real;
    SystemInfo& system = real.machine().system;
    const std::string text = system.ErrorText(error::accessDenied);
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos);
    EXPECT_TRUE(text.starts_with("Access")) << text;
    EXPECT_EQ(system.ErrorText(0x2FFFFFFF), "");
}

TEST(SystemFacts, CodePageTextBecomesUtf8) {
    Win32Machine real;
    SystemInfo& system = real.machine().system;
    EXPECT_EQ(system.FromCodePage("plain"), "plain");
    EXPECT_EQ(system.FromCodePage(""), "");
    EXPECT_EQ(system.FromCodePage(std::string("a\0b", 3)), std::string("a\0b", 3));
    if (GetACP() == 1252) {
        EXPECT_EQ(system.FromCodePage("M\xE4x \x80"), "Mäx €");
    }
}

TEST(SystemFacts, TheMachineIsKeptAwakeAndReleased) {
    Win32Machine real;
    real.machine().system.KeepAwake(true);
    // The answer is the state before: on Windows the bits just set, where sleep is unknown always 0.
    const EXECUTION_STATE awake = SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED);
    real.machine().system.KeepAwake(false);
    const EXECUTION_STATE released = SetThreadExecutionState(ES_CONTINUOUS);
    EXPECT_EQ(released & ES_SYSTEM_REQUIRED, 0U);
    EXPECT_TRUE(awake == 0 || (awake & ES_SYSTEM_REQUIRED) != 0);
}

}  // namespace
}  // namespace marlok::win32
