#include "engine/SavedFolder.h"

#include <memory>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

SystemError SavedFolder::Read(FileSystem& files, const std::string& folder) {
    *this = SavedFolder();
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files.FindFirst(AddBackslash(folder) + "*.*", search, entry);
    while (code == error::success) {
        if (entry.name != "." && entry.name != "..") {
            const std::size_t index = entries_.size();
            if (!byFoldedName_.try_emplace(text::Fold(entry.name), index).second) {
                sameButForCase_.try_emplace(entry.name, index);
            }
            entries_.push_back(std::move(entry));
            entry = DirectoryEntry();
        }
        code = search->Next(entry);
    }
    const bool complete = code == error::noMoreFiles || (code == error::fileNotFound && entries_.empty());
    if (!complete) {
        *this = SavedFolder();
        return code;
    }
    return error::success;
}

const DirectoryEntry* SavedFolder::Find(const std::string& name) const {
    if (!sameButForCase_.empty()) {
        const auto exact = sameButForCase_.find(name);
        if (exact != sameButForCase_.end()) {
            return &entries_[exact->second];
        }
    }
    const std::string folded = text::Fold(name);
    const auto found = byFoldedName_.find(folded);
    if (found != byFoldedName_.end()) {
        return &entries_[found->second];
    }
    return name.find('~') == std::string::npos ? nullptr : FindAlias(folded);
}

const DirectoryEntry* SavedFolder::FindAlias(const std::string& folded) const {
    for (const DirectoryEntry& entry : entries_) {
        if (!entry.alternateName.empty() && text::Fold(entry.alternateName) == folded) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace marlok
