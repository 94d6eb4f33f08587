#include "win32/machine/WidePath.h"

#include <gtest/gtest.h>

namespace marlok::win32 {
namespace {

std::wstring Wide(const std::string& path) {
    std::wstring wide;
    EXPECT_EQ(ToWidePath(path, wide), error::success) << path;
    return wide;
}

const std::string longName(100, 'n');

TEST(WidePath, OrdinaryPathsStayWhatTheyAre) {
    for (const char* path :
         {"C:\\", "C:\\Data\\a.txt", "\\\\server\\share\\a.txt", "relative\\a.txt", "C:a.txt", "a.", "C:\\Data\\",
          "C:\\Data\\*.*", "C:\\Data\\*.", "", "C:\\Data\\.hidden", "D:\\console.txt", "D:\\com10", "D:\\com"}) {
        EXPECT_EQ(Wide(path), std::wstring(path, path + std::string(path).size()));
    }
}

TEST(WidePath, LongPathsGetTheLongForm) {
    const std::string tail = longName + "\\" + longName + "\\" + longName;
    EXPECT_EQ(Wide("C:\\" + tail).substr(0, 8), L"\\\\?\\C:\\n");
    EXPECT_EQ(Wide("\\\\server\\share\\" + tail).substr(0, 22), L"\\\\?\\UNC\\server\\share\\n");
    EXPECT_EQ(Wide("C:\\" + tail).size(), tail.size() + 7);
    EXPECT_EQ(Wide("C:\\" + tail + "\\*.").substr(tail.size() + 7), L"\\*.");
}

TEST(WidePath, LongPathsAreResolvedFirstWhereWindowsWouldHaveTo) {
    const std::string tail = longName + "\\" + longName + "\\" + longName;
    EXPECT_EQ(Wide("C:\\x\\..\\" + tail), Wide("C:\\" + tail));
    EXPECT_EQ(Wide("C:/" + longName + "/" + longName + "/" + longName), Wide("C:\\" + tail));
    EXPECT_EQ(Wide("C:\\.\\" + tail + "\\*."), Wide("C:\\" + tail + "\\*."));
    EXPECT_EQ(Wide(tail).substr(0, 4), L"\\\\?\\") << "a relative path counts with the current folder";
}

TEST(WidePath, NamesThatWindowsWouldAlterGetTheLongForm) {
    EXPECT_EQ(Wide("C:\\Data\\name."), L"\\\\?\\C:\\Data\\name.");
    EXPECT_EQ(Wide("C:\\Data\\name "), L"\\\\?\\C:\\Data\\name ");
    EXPECT_EQ(Wide("C:\\Data \\name"), L"\\\\?\\C:\\Data \\name");
    EXPECT_EQ(Wide("\\\\server\\share\\x."), L"\\\\?\\UNC\\server\\share\\x.");
    EXPECT_EQ(Wide("C:\\Data.\\*."), L"\\\\?\\C:\\Data.\\*.");
}

TEST(WidePath, DeviceNamesAreFilesHere) {
    EXPECT_EQ(Wide("D:\\Data\\nul.txt"), L"\\\\?\\D:\\Data\\nul.txt");
}

TEST(WidePath, DevicePathsAndLongFormsAreLeftAlone) {
    EXPECT_EQ(Wide("\\\\.\\C:"), L"\\\\.\\C:");
    EXPECT_EQ(Wide("\\\\?\\C:\\x."), L"\\\\?\\C:\\x.");
}

TEST(WidePath, AZeroIsRefused) {
    std::wstring wide;
    EXPECT_EQ(ToWidePath(std::string("C:\\a\0b", 6), wide), error::invalidName);
}

TEST(WidePath, TheLongFormComesOff) {
    EXPECT_EQ(WithoutLongForm(L"\\\\?\\C:\\Data"), L"C:\\Data");
    EXPECT_EQ(WithoutLongForm(L"\\\\?\\UNC\\server\\share\\x"), L"\\\\server\\share\\x");
    EXPECT_EQ(WithoutLongForm(L"C:\\Data"), L"C:\\Data");
}

}  // namespace
}  // namespace marlok::win32
