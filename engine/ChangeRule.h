#pragma once

#include <cstdint>

#include "platform/FileSystem.h"

namespace marlok {

/// Lower 32 bits of an entry's size.
[[nodiscard]] std::uint32_t GetEntrySize(const DirectoryEntry& entry);

/// -1, 0 or 1: the first entry was written earlier than the second, at the same time, or later.
[[nodiscard]] int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second);

/// What is to become of a source that has a saved copy.
enum class Verdict {
    copy,       ///< it was written later
    unchanged,  ///< it is what is saved
    different,  ///< it is not what is saved, and not later either: passed over
};

/// How the times of a source and its saved copy may differ although nothing was written.
struct TimeKeeping {
    std::uint64_t step = 1;  ///< of the saved copy's volume: times are multiples of it, in 100-nanosecond intervals

    /// One of the two volumes keeps local times: when the clocks are set, all its files seem to have been written an
    /// hour earlier or later.
    bool local = false;
};

/// A source is copied when it was written later than its saved copy. A source that is older, or has the same time and
/// another size, is deliberately passed over; where the volume's way of keeping times makes it doubtful which of the
/// two is later, it is copied.
[[nodiscard]] Verdict Judge(const DirectoryEntry& source, const DirectoryEntry& saved, const TimeKeeping& times);

}  // namespace marlok
