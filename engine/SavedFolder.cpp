#include "engine/SavedFolder.h"

#include <algorithm>

#include "fileops/FolderListing.h"
#include "paths/Path.h"

namespace marlok {

namespace {

bool IsForeign(const std::string& name) {
    return std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// Every volume folds these, whatever its table.
std::string PlainFold(std::string name) {
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return name;
}

}  // namespace

SystemError SavedFolder::Read(FileSystem& files, const std::string& folder) {
    *this = SavedFolder();
    folder_ = folder;
    const SystemError code = ListFolder(files, folder, [this](DirectoryEntry& entry) {
        const std::size_t index = entries_.size();
        byName_.try_emplace(entry.name, index);
        byPlainFold_.try_emplace(PlainFold(entry.name), index);
        anyAlias_ = anyAlias_ || !entry.alternateName.empty();
        entries_.push_back(std::move(entry));
        return true;
    });
    if (code != error::success) {
        *this = SavedFolder();
        folder_ = folder;
    }
    return code;
}

/// False when no entry can be taken for `name`, by whatever table. A letter beyond ASCII may fold to one of ASCII on
/// some volumes, and the other way round.
bool SavedFolder::MayHold(const std::string& name) const {
    return IsForeign(name) || byPlainFold_.contains(PlainFold(name)) ||
           (anyAlias_ && name.find('~') != std::string::npos);
}

SavedFolder::Found SavedFolder::Find(FileSystem& files, const std::string& name) const {
    if (entries_.empty()) {
        return {};
    }
    const auto found = byName_.find(name);
    if (found != byName_.end()) {
        return {error::success, entries_[found->second]};
    }
    return MayHold(name) ? FindOnVolume(files, Join(folder_, name)) : Found();
}

SavedFolder::Found FindOnVolume(FileSystem& files, const std::string& path) {
    SavedFolder::Found found;
    std::unique_ptr<FolderSearch> search;
    found.code = files.FindFirst(path, search, found.entry);
    return found;
}

}  // namespace marlok
