#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// The files that a folder scan met on its way, kept for whoever works through the same folders next: listing a folder
/// is most of the cost of finding that nothing has changed. Keeps a bounded number of entries; what is over is listed
/// again.
class ListedFolders {
 public:
    /// Keeps the files of `folder` (a path with "\" at its end) unless the bound is reached.
    void Keep(const std::string& folder, std::vector<DirectoryEntry> files);

    /// The files of `folder` in the order of the listing, handed over once; empty when they are not kept.
    [[nodiscard]] std::optional<std::vector<DirectoryEntry>> Take(const std::string& folder);

    void Clear();

 private:
    std::unordered_map<std::string, std::vector<DirectoryEntry>> folders_;
    std::size_t entries_ = 0;
};

}  // namespace marlok
