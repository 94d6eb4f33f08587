#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/contract/ContractTest.h"
#include "win32/machine/Wide.h"
#include "win32/machine/Win32Drives.h"

namespace marlok::test {
namespace {

std::string Letters(const std::vector<Drive>& drives) {
    std::string letters;
    for (const Drive& drive : drives) {
        letters += drive.root.substr(0, 1);
    }
    return letters;
}

class DrivesTest : public ContractTest {
 protected:
    [[nodiscard]] const Drive& SystemDrive() const {
        const auto found =
            std::find_if(list.begin(), list.end(), [](const Drive& drive) { return drive.root == "C:\\"; });
        if (found == list.end()) {
            throw std::runtime_error("no drive C:");
        }
        return *found;
    }

    std::vector<Drive> list = win32::Win32Drives().List();
};

TEST_F(DrivesTest, EveryLetterInUseIsThereInItsOrder) {
    std::string inUse;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((GetLogicalDrives() & (1U << (letter - 'A'))) != 0) {
            inUse += letter;
        }
    }
    EXPECT_FALSE(inUse.empty());
    EXPECT_EQ(Letters(list), inUse);
    for (const Drive& drive : list) {
        EXPECT_EQ(drive.root.substr(1), ":\\");
    }
}

TEST_F(DrivesTest, TheSystemDriveIsFixedAndHasTheNameOfItsVolume) {
    wchar_t name[MAX_PATH + 1] = L"not asked";
    ASSERT_NE(GetVolumeInformationW(L"C:\\", name, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0), 0);
    EXPECT_EQ(SystemDrive().kind, Drive::Kind::fixed);
    EXPECT_EQ(SystemDrive().volumeName, win32::FromWide(name));
}

/// A drive letter for a folder, for as long as it lives.
class MadeDrive {
 public:
    MadeDrive(wchar_t letter, std::wstring folder)
        : name_{letter, L':'},
          folder_(std::move(folder)),
          made_(DefineDosDeviceW(0, name_.c_str(), folder_.c_str()) != 0) {}
    MadeDrive(const MadeDrive&) = delete;
    MadeDrive& operator=(const MadeDrive&) = delete;
    ~MadeDrive() { Remove(); }

    [[nodiscard]] bool IsMade() const { return made_; }

    void Remove() {
        if (made_) {
            DefineDosDeviceW(DDD_REMOVE_DEFINITION, name_.c_str(), nullptr);
            made_ = false;
        }
    }

 private:
    std::wstring name_;
    std::wstring folder_;
    bool made_;
};

/// A letter that is not in use.
wchar_t FreeLetter() {
    wchar_t letter = L'Y';
    while (letter > L'D' && (GetLogicalDrives() & (1U << (letter - L'A'))) != 0) {
        --letter;
    }
    return letter;
}

TEST_F(DrivesTest, DrivesThatComeAndGoAreFoundAnew) {
    const wchar_t letter = FreeLetter();
    MadeDrive made(letter, win32::ToWide(scratch));
    ASSERT_TRUE(made.IsMade());
    const std::string letters = Letters(list);
    std::string expected = letters + static_cast<char>(letter);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Letters(win32::Win32Drives().List()), expected);
    made.Remove();
    EXPECT_EQ(Letters(win32::Win32Drives().List()), letters);
}

TEST_F(DrivesTest, TheProgramsOwnErrorModeIsLeftAsItWas) {
    const DWORD before = GetThreadErrorMode();
    static_cast<void>(win32::Win32Drives().List());
    EXPECT_EQ(GetThreadErrorMode(), before);
}

}  // namespace
}  // namespace marlok::test
