#include <gtest/gtest.h>

#include <windows.h>

#include <shlobj.h>

#include "tests/contract/ContractTest.h"
#include "win32/machine/Com.h"
#include "win32/machine/ShellLink.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

/// What the shell itself reads out of a shortcut file.
Shortcut ReadBack(const std::string& path) {
    Shortcut found;
    found.path = path;
    win32::ComPtr<IShellLinkW> link;
    win32::ComPtr<IPersistFile> file;
    EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.ReceiveVoid()),
              S_OK);
    EXPECT_EQ(link->QueryInterface(IID_IPersistFile, file.ReceiveVoid()), S_OK);
    EXPECT_EQ(file->Load(win32::ToWide(path).c_str(), STGM_READ), S_OK) << path;
    wchar_t text[1024] = {};
    // The item list is what the Explorer follows; the plain path beside it is in the system's code page.
    ITEMIDLIST* items = nullptr;
    EXPECT_EQ(link->GetIDList(&items), S_OK);
    EXPECT_NE(SHGetPathFromIDListW(items, text), FALSE);
    CoTaskMemFree(items);
    found.targetPath = win32::FromWide(text);
    EXPECT_EQ(link->GetShowCmd(&found.windowStyle), S_OK);
    int icon = -1;
    EXPECT_EQ(link->GetIconLocation(text, static_cast<int>(std::size(text)), &icon), S_OK);
    found.iconLocation = win32::FromWide(text) + "," + std::to_string(icon);
    EXPECT_EQ(link->GetDescription(text, static_cast<int>(std::size(text))), S_OK);
    found.description = win32::FromWide(text);
    EXPECT_EQ(link->GetWorkingDirectory(text, static_cast<int>(std::size(text))), S_OK);
    found.workingDirectory = win32::FromWide(text);
    return found;
}

class ShortcutTest : public ContractTest {
 protected:
    Shortcut Wanted(const std::string& folder) {
        EXPECT_TRUE(folder == scratch || files.CreateFolder(folder) == error::success);
        Put(folder + "\\log.txt", "log");
        return {folder + "\\Backup Log File.lnk", folder + "\\log.txt",  1,
                folder + "\\Marlok Backup.exe,0", "Shortcut to the log", folder};
    }

    void ExpectSame(const Shortcut& wanted) {
        const Shortcut found = ReadBack(wanted.path);
        EXPECT_EQ(found.targetPath, wanted.targetPath);
        EXPECT_EQ(found.windowStyle, wanted.windowStyle);
        EXPECT_EQ(found.iconLocation, wanted.iconLocation);
        EXPECT_EQ(found.description, wanted.description);
        EXPECT_EQ(found.workingDirectory, wanted.workingDirectory);
    }
};

TEST_F(ShortcutTest, EveryFieldIsWritten) {
    const Shortcut wanted = Wanted(scratch);
    ASSERT_EQ(machine.shell.SaveShortcut(wanted), error::success);
    ExpectSame(wanted);
}

TEST_F(ShortcutTest, BothWaysWriteTheSame) {
    const Shortcut wanted = Wanted(scratch);
    ASSERT_EQ(win32::SaveShortcutByScriptHost(wanted), error::success);
    ExpectSame(wanted);
    ASSERT_EQ(files.Delete(wanted.path), error::success);
    ASSERT_EQ(win32::SaveShortcutByLinkObject(wanted), error::success);
    ExpectSame(wanted);
}

TEST_F(ShortcutTest, AnExistingOneIsReplaced) {
    Shortcut wanted = Wanted(scratch);
    ASSERT_EQ(machine.shell.SaveShortcut(wanted), error::success);
    wanted.description = "Another text";
    ASSERT_EQ(machine.shell.SaveShortcut(wanted), error::success);
    ExpectSame(wanted);
}

TEST_F(ShortcutTest, NamesOfEveryScriptSurvive) {
    const Shortcut wanted = Wanted(In("日本 Ωmega Ä"));
    EXPECT_FALSE(win32::FitsCodePage(wanted)) << "no single code page holds them";
    ASSERT_EQ(machine.shell.SaveShortcut(wanted), error::success);
    EXPECT_EQ(NamesWithoutDots(In("日本 Ωmega Ä\\*.lnk")), std::set<std::string>{"Backup Log File.lnk"});
    ExpectSame(wanted);
}

TEST_F(ShortcutTest, TheIconsIndexIsKept) {
    Shortcut wanted = Wanted(scratch);
    wanted.iconLocation = scratch + "\\icons, and more.dll,12";
    ASSERT_EQ(win32::SaveShortcutByLinkObject(wanted), error::success);
    ExpectSame(wanted);
}

TEST_F(ShortcutTest, AMissingFolderIsAnError) {
    Shortcut wanted = Wanted(scratch);
    wanted.path = In("absent\\x.lnk");
    EXPECT_NE(machine.shell.SaveShortcut(wanted), error::success);
}

}  // namespace
}  // namespace marlok::test
