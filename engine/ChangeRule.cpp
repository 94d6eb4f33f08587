#include "engine/ChangeRule.h"

namespace marlok {

namespace {

/// 100-nanosecond intervals.
constexpr FileTime oneHour = 36'000'000'000;
constexpr FileTime twoSeconds = 20'000'000;

FileTime Apart(FileTime a, FileTime b) {
    return a > b ? a - b : b - a;
}

/// True when `saved` is what becomes of `source` on a volume that keeps times in such steps, rounded up or down.
bool IsRounded(FileTime source, FileTime saved, std::uint64_t step) {
    return step > 1 && saved % step == 0 && Apart(source, saved) < step;
}

bool SameSize(const DirectoryEntry& source, const DirectoryEntry& saved) {
    // The lower halves differ for nearly every pair that differs at all.
    return GetEntrySize(source) == GetEntrySize(saved) && source.size == saved.size;
}

}  // namespace

std::uint32_t GetEntrySize(const DirectoryEntry& entry) {
    return static_cast<std::uint32_t>(entry.size);
}

int CompareWriteTimes(const DirectoryEntry& first, const DirectoryEntry& second) {
    if (first.lastWriteTime == second.lastWriteTime) {
        return 0;
    }
    return first.lastWriteTime < second.lastWriteTime ? -1 : 1;
}

Verdict Judge(const DirectoryEntry& source, const DirectoryEntry& saved, const TimeKeeping& times) {
    const int order = CompareWriteTimes(source, saved);
    const bool same = SameSize(source, saved);
    if (times.step > 1 && (order == 0 || IsRounded(source.lastWriteTime, saved.lastWriteTime, times.step))) {
        return same ? Verdict::unchanged : Verdict::copy;
    }
    if (order >= 0) {
        return order > 0 ? Verdict::copy : same ? Verdict::unchanged : Verdict::different;
    }
    const FileTime later = saved.lastWriteTime - source.lastWriteTime;
    if (!times.local || later > oneHour + twoSeconds) {
        return Verdict::different;
    }
    // Off by the hour to the second: the clocks were set. By anything less: written since, or older; who knows?
    return same && Apart(later, oneHour) <= twoSeconds ? Verdict::unchanged : Verdict::copy;
}

}  // namespace marlok
