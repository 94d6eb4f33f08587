#include "fileops/ListedFolders.h"

#include <utility>

namespace marlok {

namespace {

/// About 30 megabytes.
constexpr std::size_t mostEntries = 200'000;

}  // namespace

void ListedFolders::Keep(const std::string& folder, std::vector<DirectoryEntry> files) {
    if (entries_ + files.size() > mostEntries) {
        return;
    }
    entries_ += files.size();
    folders_.insert_or_assign(folder, std::move(files));
}

std::optional<std::vector<DirectoryEntry>> ListedFolders::Take(const std::string& folder) {
    const auto found = folders_.find(folder);
    if (found == folders_.end()) {
        return std::nullopt;
    }
    std::vector<DirectoryEntry> files = std::move(found->second);
    entries_ -= files.size();
    folders_.erase(found);
    return files;
}

void ListedFolders::Clear() {
    folders_.clear();
    entries_ = 0;
}

}  // namespace marlok
