// The program takes paths apart by itself; here it is held to what the system's own functions make of them.

#include <gtest/gtest.h>
#include <windows.h>
// Behind windows.h, whose types it uses.
#include <shlwapi.h>
// The system's header gives our functions' names another meaning.
#undef PathFindNextComponent
#undef PathFindFileName

#include <set>

#include "fileops/FolderFunctions.h"
#include "paths/Path.h"
#include "tests/contract/ContractMachine.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

/// Heads, middles and tails put together in every way, and what people and other programs have been seen to write.
std::set<std::string> Paths() {
    std::set<std::string> paths{"",          "\\",           "\\\\",        "\\\\\\",  "/",     "//",
                                ".",         "..",           "a",           "a\\",     "a:",    "a:b",
                                ":",         "::",           "\\a",         "/a",      "C:/A/", "C:A\\b",
                                "C:\\A/b\\", "\\\\?\\C:\\a", "\\\\.\\COM1", "a\\:\\b", " ",     "a b\\c d"};
    for (const char* head :
         {"C:\\", "C:", "\\\\server\\share\\", "\\\\server\\", "\\\\", "\\", "", "..\\", "C:/", "z:\\\\"}) {
        for (const char* middle : {"", "A\\", "A\\\\", "A/", "\u00C4\u4E2D\\", "A.b\\C\\", "\U0001F600 x\\"}) {
            for (const char* tail : {"", "b.txt", "b", "b\\", "b\\\\", "b/", "b:", "\u0416\u0443\u043A.doc"}) {
                paths.insert(std::string(head) + middle + tail);
            }
        }
    }
    return paths;
}

std::string NextComponentOfSystem(const std::string& path) {
    const std::wstring wide = win32::ToWide(path);
    const wchar_t* next = ::PathFindNextComponentW(wide.c_str());
    return next == nullptr ? std::string() : win32::FromWide(next);
}

std::string FileNameOfSystem(const std::string& path) {
    const std::wstring wide = win32::ToWide(path);
    return win32::FromWide(::PathFindFileNameW(wide.c_str()));
}

TEST(PathFunctionsTest, TheTableIsLongEnough) {
    EXPECT_GE(Paths().size(), 200U);
}

TEST(PathFunctionsTest, WhatFollowsTheFirstComponent) {
    for (const std::string& path : Paths()) {
        EXPECT_EQ(std::string(PathFindNextComponent(path)), NextComponentOfSystem(path)) << '"' << path << '"';
    }
}

TEST(PathFunctionsTest, TheLastComponent) {
    for (const std::string& path : Paths()) {
        EXPECT_EQ(std::string(PathFindFileName(path)), FileNameOfSystem(path)) << '"' << path << '"';
    }
}

TEST(PathFunctionsTest, WhatAFolderIs) {
    const auto contract = MakeContractMachine();
    const std::string scratch = contract->ScratchFolder();
    FileSystem& files = contract->machine().files;
    ASSERT_EQ(files.CreateFolder(scratch + "\\folder"), error::success);
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open(scratch + "\\file.txt", OpenMode::createNew, file), error::success);
    file.reset();
    for (const std::string& path :
         {scratch, scratch + "\\", scratch + "\\folder", scratch + "\\folder\\", scratch + "\\file.txt",
          scratch + "\\none", scratch + "\\none\\none", std::string("C:\\"), std::string("C:"), std::string("Q:\\"),
          std::string(""), scratch + "\\folder\\..", scratch + "\\folder\\."}) {
        EXPECT_EQ(IsDirectoryPath(files, path), ::PathIsDirectoryW(win32::ToWide(path).c_str()) != FALSE) << path;
    }
}

}  // namespace
}  // namespace marlok::test
