#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace marlok {

/// Flags of a volume, as the system numbers them.
namespace volumeflag {
inline constexpr std::uint32_t caseSensitiveSearch = 0x1;
inline constexpr std::uint32_t casePreservedNames = 0x2;
inline constexpr std::uint32_t supportsReparsePoints = 0x80;
inline constexpr std::uint32_t supportsEncryption = 0x20000;
inline constexpr std::uint32_t namedStreams = 0x40000;
inline constexpr std::uint32_t readOnly = 0x80000;
}  // namespace volumeflag

/// A formatted disk, stick or network share, as its file system describes it.
struct Volume {
    std::string root;              ///< "C:\" or "\\server\share\", or the folder that it is mounted at; ends in "\"
    std::uint32_t serial = 0;      ///< given by formatting, copied by cloning; travels with the disk
    std::string label;             ///< "" for none
    std::string fileSystem;        ///< "NTFS", "ReFS", "FAT32", "exFAT", "FAT", ...
    std::uint32_t flags = 0;       ///< `volumeflag::` bits, and others
    std::uint64_t totalBytes = 0;  ///< its size, as far as this user may use it
    std::uint64_t freeBytes = 0;   ///< that this user may still fill

    /// True for FAT in all its sizes, exFAT excepted.
    [[nodiscard]] bool IsFat() const {
        return fileSystem == "FAT32" || fileSystem == "FAT" || fileSystem == "FAT16" || fileSystem == "FAT12";
    }

    /// The steps in which last-write times are kept, in 100-nanosecond intervals; 1 for file systems that keep every
    /// time as it is. Other systems behind a network name may round more than they tell.
    [[nodiscard]] std::uint64_t TimeStep() const {
        constexpr std::uint64_t twoSeconds = 20'000'000;
        constexpr std::uint64_t tenMilliseconds = 100'000;
        return IsFat() ? twoSeconds : fileSystem == "exFAT" ? tenMilliseconds : 1;
    }

    /// True where a copy's last-write time may differ from its source's by rounding.
    [[nodiscard]] bool KeepsCoarseTimes() const { return TimeStep() > 1; }

    /// The size in bytes of the largest file that fits on it, however much room there is.
    [[nodiscard]] std::uint64_t LargestFile() const {
        constexpr std::uint64_t largestOnFat = 0xFFFFFFFF;
        return IsFat() ? largestOnFat : std::numeric_limits<std::uint64_t>::max();
    }

    friend bool operator==(const Volume&, const Volume&) = default;
};

}  // namespace marlok
