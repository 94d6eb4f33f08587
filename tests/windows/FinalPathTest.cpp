#include "win32/machine/FinalPath.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

namespace marlok::win32 {
namespace {

const std::vector<DriveDevice> drives = {{L"A:", L""},
                                         {L"C:", L"\\Device\\HarddiskVolume1"},
                                         {L"D:", L"\\Device\\HarddiskVolume12"},
                                         {L"S:", L"\\??\\C:\\Data"}};

TEST(DevicePath, BecomesThePathOfTheLetterThatLeadsThere) {
    EXPECT_EQ(FromDevicePath(L"\\Device\\HarddiskVolume1\\Data\\a.doc", drives), L"C:\\Data\\a.doc");
    EXPECT_EQ(FromDevicePath(L"\\device\\harddiskvolume12\\x", drives), L"D:\\x");
    EXPECT_EQ(FromDevicePath(L"\\Device\\HarddiskVolume12", drives), L"D:\\");
    EXPECT_EQ(FromDevicePath(L"\\Device\\HarddiskVolume12\\", drives), L"D:\\");
}

TEST(DevicePath, IsLeftAloneWithoutALetter) {
    EXPECT_EQ(FromDevicePath(L"\\Device\\HarddiskVolume2\\x", drives), L"");
    EXPECT_EQ(FromDevicePath(L"\\Device\\HarddiskVolume", drives), L"");
    EXPECT_EQ(FromDevicePath(L"", drives), L"");
}

TEST(DevicePath, OfTheNetworkNamesTheShare) {
    EXPECT_EQ(FromDevicePath(L"\\Device\\Mup\\server\\share\\x", drives), L"\\\\server\\share\\x");
}

TEST(DriveDevices, HoldTheSystemsDrive) {
    wchar_t windows[MAX_PATH] = {};
    ASSERT_GT(GetWindowsDirectoryW(windows, MAX_PATH), 2U);
    const std::vector<DriveDevice> found = DriveDevices();
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const DriveDevice& drive) {
        return drive.drive == std::wstring(windows, 2) && drive.device.starts_with(L"\\");
    }));
}

}  // namespace
}  // namespace marlok::win32
