#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

constexpr FileTime second = 10'000'000;
constexpr FileTime hour = 3600 * second;

/// What becomes of files on volumes that are not NTFS.
class InMemoryVolumeTest : public ::testing::Test {
 protected:
    InMemoryVolumeTest() {
        memory.AddDrive('F', {.volumeName = "STICK", .fileSystem = "FAT32", .serial = 0x1234ABCD});
        memory.AddDrive('X', {.fileSystem = "exFAT"});
        memory.Seed({{"C:\\D\\a", "a", At(10, 0, 3) + 1}});
    }

    Volume VolumeOf(const std::string& path) {
        Volume volume;
        EXPECT_EQ(files.GetVolume(path, volume), error::success) << path;
        return volume;
    }

    InMemoryMachine memory;
    FileSystem& files = memory.machine().files;
};

TEST_F(InMemoryVolumeTest, AVolumeTellsWhatItIs) {
    const Volume stick = VolumeOf("F:\\not\\there");
    EXPECT_EQ(stick.root, "F:\\");
    EXPECT_EQ(stick.serial, 0x1234ABCDU);
    EXPECT_EQ(stick.label, "STICK");
    EXPECT_EQ(stick.fileSystem, "FAT32");
    EXPECT_TRUE(stick.IsFat());
    EXPECT_NE(VolumeOf("C:\\").serial, VolumeOf("X:\\").serial);
    EXPECT_NE(VolumeOf("C:\\").flags & volumeflag::namedStreams, 0U);
}

TEST_F(InMemoryVolumeTest, AVolumeTellsItsRoom) {
    memory.AddDrive('G', {.readOnly = true, .capacityBytes = 100});
    memory.AddDrive('G', {.capacityBytes = 100});
    memory.Seed({{"G:\\a", "1234567890"}});
    EXPECT_EQ(VolumeOf("G:\\").totalBytes, 100U);
    EXPECT_EQ(VolumeOf("G:\\").freeBytes, 90U);
    ASSERT_EQ(files.Delete("G:\\a"), error::success);
    EXPECT_EQ(VolumeOf("G:\\").freeBytes, 100U);
}

TEST_F(InMemoryVolumeTest, ThePathsOfOneDiskHaveOneVolume) {
    memory.MakeLink("C:\\Link", "F:\\");
    memory.disk.Substitute("S:", "C:\\D");
    memory.AddShare("\\\\server\\share");
    EXPECT_EQ(VolumeOf("C:\\Link\\deeper").root, "F:\\");
    EXPECT_EQ(VolumeOf("S:\\x").root, "C:\\");
    EXPECT_EQ(VolumeOf("\\\\server\\share\\x").root, "\\\\server\\share\\");
    Volume volume;
    EXPECT_EQ(files.GetVolume("\\\\gone\\share\\x", volume), error::badNetworkPath);
    memory.SetDriveFailure("F:", error::unrecognizedVolume);
    EXPECT_EQ(files.GetVolume("F:\\x", volume), error::unrecognizedVolume);
}

TEST_F(InMemoryVolumeTest, FatRoundsWriteTimesUpAndOnce) {
    ASSERT_EQ(files.Copy("C:\\D\\a", "F:\\a", copyflag::none, {}), error::success);
    EXPECT_EQ(memory.EntryOf("F:\\a").lastWriteTime, At(10, 0, 4));
    ASSERT_EQ(files.Copy("F:\\a", "F:\\b", copyflag::none, {}), error::success);
    EXPECT_EQ(memory.EntryOf("F:\\b").lastWriteTime, At(10, 0, 4));
    memory.Seed({{"F:\\c", "c", At(10, 0, 4) + 12'345'678}});
    EXPECT_EQ(memory.EntryOf("F:\\c").creationTime, At(10, 0, 5) + 2'300'000);
}

TEST_F(InMemoryVolumeTest, ExFatRoundsTimesUpToHundredths) {
    ASSERT_EQ(files.Copy("C:\\D\\a", "X:\\a", copyflag::none, {}), error::success);
    EXPECT_EQ(memory.EntryOf("X:\\a").lastWriteTime, At(10, 0, 3) + 100'000);
}

TEST_F(InMemoryVolumeTest, WhenTheClocksChangeTheTimesOnFatDoAll) {
    memory.clock.SetUtcOffset(60);
    for (const char* copy : {"F:\\a", "X:\\a", "C:\\b"}) {
        ASSERT_EQ(files.Copy("C:\\D\\a", copy, copyflag::none, {}), error::success);
    }
    EXPECT_EQ(memory.EntryOf("F:\\a").lastWriteTime, At(10, 0, 4));
    EXPECT_EQ(memory.clock.Now().hour, 13);
    memory.clock.SetUtcOffset(120);
    EXPECT_EQ(memory.EntryOf("F:\\a").lastWriteTime, At(10, 0, 4) - hour);
    EXPECT_EQ(memory.EntryOf("X:\\a").lastWriteTime, At(10, 0, 3) + 100'000);
    EXPECT_EQ(memory.EntryOf("C:\\b").lastWriteTime, At(10, 0, 3) + 1);
    memory.clock.SetUtcOffset(60);
    EXPECT_EQ(memory.EntryOf("F:\\a").lastWriteTime, At(10, 0, 4));
}

TEST_F(InMemoryVolumeTest, FatDoesNotKnowTheSeventies) {
    memory.Seed({{"C:\\old", "x", ToFileTime({1979, 12, 31, 1, 23, 59, 59})},
                 {"C:\\new", "x", ToFileTime({2108, 1, 1, 0, 0, 0, 0})}});
    for (const char* name : {"old", "new"}) {
        ASSERT_EQ(files.Copy(std::string("C:\\") + name, std::string("F:\\") + name, copyflag::none, {}),
                  error::success);
        EXPECT_EQ(memory.EntryOf(std::string("F:\\") + name).lastWriteTime, At(12, 0)) << "the time of the copy stays";
    }
}

TEST_F(InMemoryVolumeTest, FatTakesNoFileOfFourGigabytes) {
    memory.Seed({{"C:\\large", "x", At(9, 0)}, {"C:\\less", "x"}});
    memory.MakeLarge("C:\\large", 0x100000000);
    memory.MakeLarge("C:\\less", 0xFFFFFFFF);
    EXPECT_EQ(memory.EntryOf("C:\\large").size, 0x100000000U);
    EXPECT_EQ(memory.EntryOf("C:\\large").lastWriteTime, At(9, 0));
    EXPECT_EQ(files.Copy("C:\\large", "F:\\large", copyflag::none, {}), error::diskFull);
    EXPECT_FALSE(memory.Exists("F:\\large"));
    EXPECT_EQ(files.Copy("C:\\less", "F:\\less", copyflag::none, {}), error::success);
    EXPECT_EQ(files.Copy("C:\\large", "X:\\large", copyflag::none, {}), error::success);
    EXPECT_EQ(memory.EntryOf("X:\\large").size, 0x100000000U);
    EXPECT_THROW(static_cast<void>(memory.Read("X:\\large")), std::length_error);
    memory.AddDrive('G', {.largest = 3});
    std::unique_ptr<File> file;
    ASSERT_EQ(files.Open("G:\\a", OpenMode::createNew, file), error::success);
    EXPECT_EQ(file->Write("1234"), error::diskFull);
    EXPECT_EQ(memory.Read("G:\\a"), "123");
}

TEST_F(InMemoryVolumeTest, LargeFilesAreReadToTheirEnd) {
    memory.Seed({{"C:\\f", "abc"}});
    memory.MakeLarge("C:\\f", 6);
    std::unique_ptr<File> file;
    std::string bytes;
    ASSERT_EQ(files.Open("C:\\f", OpenMode::read, file), error::success);
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, std::string("abc\0", 4));
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, std::string("\0\0", 2));
    ASSERT_EQ(file->Read(bytes, 4), error::success);
    EXPECT_EQ(bytes, "");
    file.reset();
    ASSERT_EQ(files.Open("C:\\f", OpenMode::append, file), error::success);
    ASSERT_EQ(file->Write("end"), error::success);
    EXPECT_EQ(memory.Read("C:\\f"), std::string("abc\0\0\0end", 9));
}

TEST_F(InMemoryVolumeTest, FatHasCodesOfItsOwnForWhatCannotBeReplaced) {
    memory.Seed({{"F:\\a", "a"}, {"F:\\b", "b", {}, attribute::readOnly}, {"F:\\D\\"}});
    memory.Seed({{"C:\\b", "b", {}, attribute::readOnly}, {"C:\\E\\"}});
    EXPECT_EQ(files.Move("F:\\a", "F:\\b", moveflag::replace), error::alreadyExists);
    EXPECT_EQ(files.Move("F:\\a", "F:\\D", moveflag::replace), error::alreadyExists);
    EXPECT_EQ(files.Move("C:\\D\\a", "C:\\b", moveflag::replace), error::accessDenied);
    EXPECT_EQ(files.Move("C:\\D\\a", "C:\\E", moveflag::replace), error::accessDenied);
    EXPECT_EQ(files.Move("C:\\E", "C:\\D\\a", moveflag::replace), error::success) << "a folder replaces a file";
}

TEST_F(InMemoryVolumeTest, ANameThatComesBackSoonHasItsOldCreationTime) {
    memory.Seed({{"C:\\n", "old", At(7, 0)}});
    ASSERT_EQ(files.Delete("C:\\n"), error::success);
    memory.clock.Advance(15'000);
    memory.Write("C:\\N", "new");
    EXPECT_EQ(memory.EntryOf("C:\\n").creationTime, At(7, 0));
    EXPECT_EQ(memory.EntryOf("C:\\n").lastWriteTime, At(12, 0, 15));
    ASSERT_EQ(files.Delete("C:\\n"), error::success);
    memory.clock.Advance(15'001);
    memory.Write("C:\\n", "newer");
    EXPECT_EQ(memory.EntryOf("C:\\n").creationTime, At(12, 0, 30) + 10'000);
}

TEST_F(InMemoryVolumeTest, SticksListInTheOrderOfCreationAndSharesWithDots) {
    memory.Seed({{"F:\\b", ""}, {"F:\\a", ""}});
    memory.AddShare("\\\\server\\share");
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("F:\\*", search, entry), error::success);
    EXPECT_EQ(entry.name, "b");
    ASSERT_EQ(files.FindFirst("\\\\server\\share\\*", search, entry), error::success);
    EXPECT_EQ(entry.name, ".");
    EXPECT_EQ(files.FindFirst("X:\\*", search, entry), error::fileNotFound) << "an empty root";
}

TEST_F(InMemoryVolumeTest, EveryRootHasTheSystemsFolders) {
    memory.SeedSystemFolders('C');
    memory.SeedSystemFolders('F');
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst("C:\\*", search, entry), error::success);
    EXPECT_EQ(entry.name, "$RECYCLE.BIN");
    EXPECT_NE(entry.attributes & attribute::system, 0U);
    EXPECT_EQ(files.FindFirst("C:\\System Volume Information\\*", search, entry), error::accessDenied);
    EXPECT_EQ(files.FindFirst("F:\\System Volume Information\\*", search, entry), error::success);
}

}  // namespace
}  // namespace marlok::test
