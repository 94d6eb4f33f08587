#pragma once

#include <cstddef>

#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The kernel's file services on the in-memory disk. A copy is several steps, each seen by hooks and faults:
/// "Copy" (the source is opened), "Copy.Create", "Copy.Write" once a chunk, "Copy.Finish" (times and attributes). So is
/// Replace: "Replace" (the old file gets the backup's name), "Replace.Second" (the new one gets the old one's) and,
/// where that fails, "Replace.Back".
class InMemoryFiles : public FileSystem {
 public:
    InMemoryFiles(InMemoryDisk& disk, FaultPlan& faults) : disk_(disk), faults_(faults) {}

    [[nodiscard]] SystemError FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                        DirectoryEntry& first) override;
    [[nodiscard]] SystemError GetEntry(const std::string& path, DirectoryEntry& entry) override;
    [[nodiscard]] SystemError CreateFolder(const std::string& path) override;
    [[nodiscard]] SystemError RemoveFolder(const std::string& path) override;
    [[nodiscard]] SystemError RemoveLink(const std::string& path) override;
    [[nodiscard]] SystemError Delete(const std::string& path) override;
    [[nodiscard]] SystemError Move(const std::string& from, const std::string& to, std::uint32_t flags) override;
    [[nodiscard]] SystemError Replace(const std::string& replaced, const std::string& replacement,
                                      const std::string& backup) override;
    [[nodiscard]] SystemError Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                   const CopyProgressRoutine& progress) override;
    [[nodiscard]] SystemError SetAttributes(const std::string& path, std::uint32_t attributes) override;
    [[nodiscard]] SystemError Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) override;
    [[nodiscard]] SystemError FinalPath(const std::string& path, std::string& finalPath) override;
    [[nodiscard]] SystemError Identify(const std::string& path, FileIdentity& identity) override;
    [[nodiscard]] SystemError GetVolume(const std::string& path, Volume& volume) override;

    /// Whether this system can open a link apart from its target. It can unless it is told otherwise.
    void SetCanRemoveLinks(bool can) { canRemoveLinks_ = can; }
    [[nodiscard]] bool CanRemoveLinks() const { return canRemoveLinks_; }

    /// Whether listings tell reparse tags. They do unless told otherwise.
    void SetTellsReparseTags(bool tells) { tellsReparseTags_ = tells; }

    /// Whether a copy takes a source that it can read no further for one that ends there, and succeeds with fewer
    /// bytes. It does not unless told otherwise, and no system that keeps to the contract does.
    void SetSwallowsReadErrors(bool swallows) { swallowsReadErrors_ = swallows; }

    /// Moves that were to be on the device when they returned.
    [[nodiscard]] int MovesWrittenThrough() const { return movesWrittenThrough_; }

    void SetCopyChunk(std::size_t bytes) { copyChunk_ = bytes; }

    [[nodiscard]] int OpenSearches() const { return openSearches_; }
    [[nodiscard]] int OpenFiles() const { return openFiles_; }

 private:
    [[nodiscard]] SystemError Search(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                     DirectoryEntry& first);
    [[nodiscard]] SystemError Rename(const std::string& from, const std::string& to, bool replace);
    [[nodiscard]] SystemError CheckMove(const Place& source, const Place& target, bool replace) const;
    [[nodiscard]] SystemError CheckReplaced(Node& node) const;
    [[nodiscard]] SystemError CheckReplacement(const Place& old, const Place& young) const;
    /// What `path` leads to, opened without any access.
    [[nodiscard]] SystemError OpenForQuestions(const std::string& path, NodePtr& node) const;
    [[nodiscard]] bool IsCurrentFolder(const Node& node) const;

    InMemoryDisk& disk_;
    FaultPlan& faults_;
    bool canRemoveLinks_ = true;
    bool tellsReparseTags_ = true;
    bool swallowsReadErrors_ = false;
    int movesWrittenThrough_ = 0;
    std::size_t copyChunk_ = 65536;
    int openSearches_ = 0;
    int openFiles_ = 0;
};

/// Success when a file or folder may be created in `parent`.
[[nodiscard]] SystemError CheckCreation(const Node& parent);

/// Success when `node` may be removed from its folder: nobody forbids it, and the disk takes changes.
[[nodiscard]] SystemError CheckRemoval(const InMemoryDisk& disk, Node& node);

}  // namespace marlok::test
