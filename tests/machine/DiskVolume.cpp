#include "tests/machine/DiskVolume.h"

#include <algorithm>
#include <limits>

#include "tests/machine/Node.h"

namespace marlok::test {
namespace {

constexpr std::uint64_t second = 10'000'000;
constexpr std::uint64_t hundredth = second / 100;

FileTime RoundedUp(FileTime time, std::uint64_t step) {
    return (time + step - 1) / step * step;
}

/// FAT has two digits and a bit for the year: 1980 to 2107.
bool FitsFat(FileTime local) {
    static const FileTime first = ToFileTime({1980, 1, 1, 2, 0, 0, 0});
    static const FileTime behind = ToFileTime({2108, 1, 1, 0, 0, 0, 0});
    return local >= first && RoundedUp(local, 2 * second) < behind;
}

}  // namespace

bool DiskVolume::MakesShortNames() const {
    return options.shortNames.value_or(IsFat() || (root == "C:" && options.fileSystem == "NTFS"));
}

std::uint64_t DiskVolume::LargestFile() const {
    return options.largest.value_or(IsFat() ? 0xFFFFFFFF : std::numeric_limits<std::uint64_t>::max());
}

std::optional<FileTime> DiskVolume::StoredWriteTime(FileTime time) const {
    if (IsFat()) {
        const FileTime local = time + clock->UtcOffset();
        return FitsFat(local) ? std::optional(RoundedUp(local, 2 * second)) : std::nullopt;
    }
    if (IsExFat()) {
        return RoundedUp(time, hundredth);
    }
    return time - time % std::max<std::uint64_t>(options.timeGranularity, 1);
}

std::optional<FileTime> DiskVolume::StoredCreationTime(FileTime time) const {
    if (IsFat()) {
        const FileTime local = time + clock->UtcOffset();
        return FitsFat(local) ? std::optional(local - local % hundredth) : std::nullopt;
    }
    return StoredWriteTime(time);
}

FileTime DiskVolume::Shown(FileTime stored) const {
    return IsFat() ? stored - clock->UtcOffset() : stored;
}

void DiskVolume::Remember(const Node& node) {
    if (node.parent != nullptr && !node.IsFolder()) {
        gone_[{node.parent->index, node.parent->KeyOf(node.name)}] = {node.created, clock->Ticks()};
    }
}

std::optional<FileTime> DiskVolume::Remembered(const Node& parent, const std::u16string& key) const {
    constexpr std::uint64_t limit = 15'000;
    const auto found = gone_.find({parent.index, key});
    if (found == gone_.end() || clock->Ticks() - found->second.tick > limit) {
        return std::nullopt;
    }
    return found->second.created;
}

}  // namespace marlok::test
