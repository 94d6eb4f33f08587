#include "fileops/SystemFolders.h"

#include <gtest/gtest.h>

namespace marlok {
namespace {

DirectoryEntry Entry(const std::string& name, std::uint32_t attributes) {
    DirectoryEntry entry;
    entry.name = name;
    entry.attributes = attributes;
    return entry;
}

constexpr std::uint32_t folder = attribute::directory;
constexpr std::uint32_t protectedFolder = attribute::directory | attribute::hidden | attribute::system;

TEST(SystemFolders, TheSystemsFoldersInARootAreKnownByName) {
    for (const char* name : {"$RECYCLE.BIN", "$Recycle.Bin", "System Volume Information", "RECYCLER"}) {
        EXPECT_TRUE(IsSystemFolderOfRoot(Entry(name, folder), "E:\\")) << name;
        EXPECT_TRUE(IsSystemFolderOfRoot(Entry(name, folder), "\\\\server\\share")) << name;
        EXPECT_TRUE(IsSystemFolderOfRoot(Entry(name, folder), "\\\\server\\share\\")) << name;
    }
}

TEST(SystemFolders, AnyHiddenSystemFolderInARootIsTheSystems) {
    EXPECT_TRUE(IsSystemFolderOfRoot(Entry("Recovery", protectedFolder), "C:\\"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("Recovery", folder | attribute::hidden), "C:\\"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("Recovery", folder | attribute::system), "C:\\"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("Data", folder), "C:\\"));
}

TEST(SystemFolders, OnlyFoldersStraightInARootAreTheSystems) {
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("$RECYCLE.BIN", folder), "E:\\Save"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("Data", protectedFolder), "E:\\Save"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("Data", protectedFolder), "\\\\server\\share\\Save"));
    EXPECT_FALSE(IsSystemFolderOfRoot(Entry("$RECYCLE.BIN", attribute::hidden | attribute::system), "E:\\"));
}

}  // namespace
}  // namespace marlok
