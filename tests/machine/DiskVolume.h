#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "tests/machine/InMemoryClock.h"
#include "tests/machine/Upcase.h"

namespace marlok::test {

struct Node;
using NodePtr = std::shared_ptr<Node>;

/// What a drive or network share is like. What is left open is as the file system has it.
struct DriveOptions {
    bool readOnly = false;
    std::uint64_t capacityBytes = 0;    ///< room for file contents; 0: unlimited
    std::uint64_t timeGranularity = 1;  ///< a server's disk may cut times down to multiples of so many 100-nanosecond
                                        ///< intervals without saying so
    bool listsInCreationOrder = false;  ///< as FAT and exFAT do in any case, instead of by name
    Drive::Kind kind = Drive::Kind::fixed;
    std::string volumeName = {};
    std::string fileSystem = "NTFS";            ///< or "FAT32", "exFAT"
    std::uint32_t serial = 0;                   ///< 0: one of the drive's own, unlike every other's
    std::optional<bool> shortNames = {};        ///< makes 8.3 aliases: NTFS on drive C: and FAT do, exFAT cannot
    std::optional<bool> freesNames = {};        ///< a deleted name is free while the file is open: NTFS alone
    std::optional<std::uint64_t> largest = {};  ///< bytes of the largest file: 4 GB - 1 on FAT
    UpcaseTable upcase = &Upcase;
};

/// A drive or share with what its file system makes of names, times and sizes.
struct DiskVolume {
    std::string root;  ///< "C:" or "\\server\share"
    DriveOptions options;
    std::uint32_t serial = 0;
    std::uint64_t used = 0;                ///< bytes of all contents
    SystemError failure = error::success;  ///< what every access ends with while it is not success
    NodePtr folder;                        ///< the root folder
    const InMemoryClock* clock = nullptr;

    [[nodiscard]] bool IsFat() const { return options.fileSystem == "FAT32"; }
    [[nodiscard]] bool IsExFat() const { return options.fileSystem == "exFAT"; }
    [[nodiscard]] bool IsShare() const { return root.front() == '\\'; }
    [[nodiscard]] bool MakesShortNames() const;
    [[nodiscard]] bool FreesNames() const { return options.freesNames.value_or(!IsFat() && !IsExFat()); }
    [[nodiscard]] bool ListsInCreationOrder() const { return options.listsInCreationOrder || IsFat() || IsExFat(); }
    [[nodiscard]] bool CanEncrypt() const { return options.fileSystem == "NTFS"; }
    [[nodiscard]] std::uint64_t LargestFile() const;

    /// Last-write and creation times as they are put down; nothing for those that cannot be.
    [[nodiscard]] std::optional<FileTime> StoredWriteTime(FileTime time) const;
    [[nodiscard]] std::optional<FileTime> StoredCreationTime(FileTime time) const;

    /// What a time that was put down reads as now. FAT keeps the time of the clock on the wall and takes it for one of
    /// today's: when the clocks change, every file's time does.
    [[nodiscard]] FileTime Shown(FileTime stored) const;

    /// The system gives a name that comes back within 15 seconds the creation time it had.
    void Remember(const Node& node);
    [[nodiscard]] std::optional<FileTime> Remembered(const Node& folder, const std::u16string& key) const;

 private:
    struct Gone {
        FileTime created;  ///< as put down
        std::uint64_t tick;
    };
    std::map<std::pair<std::uint64_t, std::u16string>, Gone> gone_;  ///< by the folder's number and the name's key
};

}  // namespace marlok::test
