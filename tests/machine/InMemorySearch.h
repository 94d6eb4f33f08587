#pragma once

#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// A listing of what a folder held when it was begun. As in a real one, entries that vanish meanwhile are still told.
class InMemorySearch : public FolderSearch {
 public:
    /// Counts itself in `openSearches` as long as it lives.
    InMemorySearch(FaultPlan& faults, int& openSearches, std::string pattern, bool tellsReparseTags);
    InMemorySearch(const InMemorySearch&) = delete;
    InMemorySearch& operator=(const InMemorySearch&) = delete;
    ~InMemorySearch() override;

    [[nodiscard]] SystemError Next(DirectoryEntry& entry) override;

    /// Takes in what matches the last component of the pattern.
    void Collect(Handle folder, const std::string& pattern);

    /// Next without counting a step; false behind the last entry.
    [[nodiscard]] bool Fetch(DirectoryEntry& entry);

 private:
    void AddDots(const Node& folder, const std::string& pattern);
    void AddAll(const Node& folder, const std::string& pattern);

    FaultPlan& faults_;
    int& openSearches_;
    std::string path_;  ///< the pattern as the program gave it
    bool tellsReparseTags_;
    Handle folder_;
    std::vector<DirectoryEntry> dots_;
    std::vector<NodePtr> nodes_;
    std::size_t next_ = 0;
};

}  // namespace marlok::test
