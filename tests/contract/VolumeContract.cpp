#include "platform/Volume.h"

#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class VolumeContract : public ContractTest {
 protected:
    Volume VolumeOf(const std::string& path) {
        Volume volume;
        EXPECT_EQ(files.GetVolume(path, volume), error::success) << path;
        return volume;
    }

    /// The letter of a drive that this machine does not have; 0 when it has them all.
    char MissingDrive() {
        DirectoryEntry entry;
        for (char letter = 'Z'; letter >= 'A'; --letter) {
            if (files.GetEntry(std::string(1, letter) + ":\\", entry) == error::pathNotFound) {
                return letter;
            }
        }
        return 0;
    }
};

TEST_F(VolumeContract, AFolderIsOnTheVolumeOfItsDrive) {
    const Volume volume = VolumeOf(scratch);
    EXPECT_EQ(volume.root.back(), '\\');
    EXPECT_TRUE(EntryOf(volume.root).IsFolder());
    EXPECT_NE(volume.fileSystem, "");
    EXPECT_GT(volume.totalBytes, 0U);
    EXPECT_GE(volume.totalBytes, volume.freeBytes);
    EXPECT_EQ(VolumeOf(volume.root).root, volume.root);
    EXPECT_EQ(VolumeOf(volume.root).serial, volume.serial);
}

TEST_F(VolumeContract, WhatDoesNotExistYetHasAVolumeToo) {
    const Volume volume = VolumeOf(scratch);
    EXPECT_EQ(VolumeOf(In("absent")).root, volume.root);
    EXPECT_EQ(VolumeOf(In("absent\\deeper\\file.txt")).root, volume.root);
    Put(In("file"), "x");
    EXPECT_EQ(VolumeOf(In("file")).root, volume.root);
    EXPECT_EQ(VolumeOf(In("file\\below a file")).root, volume.root);
    EXPECT_EQ(VolumeOf(".").root, VolumeOf(machine.process.CurrentFolder()).root);
}

TEST_F(VolumeContract, ADeepFolderHasAVolume) {
    std::string deep = scratch;
    while (deep.size() < 400) {
        deep += "\\" + std::string(99, 'd');
        ASSERT_EQ(files.CreateFolder(deep), error::success);
    }
    EXPECT_EQ(VolumeOf(deep).root, VolumeOf(scratch).root);
}

TEST_F(VolumeContract, AMissingDriveIsPathNotFound) {
    const char letter = MissingDrive();
    ASSERT_NE(letter, 0);
    const std::string root = std::string(1, letter) + ":\\";
    Volume volume;
    EXPECT_EQ(files.GetVolume(root, volume), error::pathNotFound);
    EXPECT_EQ(files.GetVolume(root + "Backups\\Daily", volume), error::pathNotFound);
}

TEST_F(VolumeContract, AZeroCharacterIsRefused) {
    Volume volume;
    EXPECT_EQ(files.GetVolume(In(std::string("a\0b", 3)), volume), error::invalidName);
}

TEST(VolumeFacts, FatRoundsTimesToTwoSecondsAndEndsBelowFourGigabytes) {
    for (const char* name : {"FAT32", "FAT", "FAT16", "FAT12"}) {
        Volume volume;
        volume.fileSystem = name;
        EXPECT_TRUE(volume.IsFat()) << name;
        EXPECT_TRUE(volume.KeepsCoarseTimes()) << name;
        EXPECT_EQ(volume.TimeStep(), 20'000'000U) << name;
        EXPECT_EQ(volume.LargestFile(), 0xFFFFFFFFU) << name;
    }
}

TEST(VolumeFacts, ExFatRoundsTimesToTenMilliseconds) {
    Volume volume;
    volume.fileSystem = "exFAT";
    EXPECT_FALSE(volume.IsFat());
    EXPECT_TRUE(volume.KeepsCoarseTimes());
    EXPECT_EQ(volume.TimeStep(), 100'000U);
    EXPECT_GT(volume.LargestFile(), 0xFFFFFFFFU);
}

TEST(VolumeFacts, OthersKeepTimesAsTheyAre) {
    for (const char* name : {"NTFS", "ReFS", "UDF", ""}) {
        Volume volume;
        volume.fileSystem = name;
        EXPECT_FALSE(volume.IsFat()) << name;
        EXPECT_FALSE(volume.KeepsCoarseTimes()) << name;
        EXPECT_EQ(volume.TimeStep(), 1U) << name;
        EXPECT_GT(volume.LargestFile(), 0xFFFFFFFFU) << name;
    }
}

}  // namespace
}  // namespace marlok::test
