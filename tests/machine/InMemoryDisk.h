#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "tests/machine/InMemoryClock.h"
#include "tests/machine/Node.h"
#include "tests/machine/PathParts.h"

namespace marlok::test {

/// Where a path leads.
struct Place {
    SystemError error = error::success;  ///< why `node` is null
    NodePtr node;                        ///< what is there
    NodePtr parent;    ///< the folder that holds it, or would if it existed; null for a root or a missing folder
    std::string name;  ///< the last component as written
    bool trailingSeparator = false;
};

/// The drives and network shares of the in-memory machine with all that is on them. Knows nothing of steps and
/// faults: tests look at it and change it directly, the services work on it.
class InMemoryDisk {
 public:
    explicit InMemoryDisk(InMemoryClock& clock) : clock_(clock) {}
    InMemoryDisk(const InMemoryDisk&) = delete;
    InMemoryDisk& operator=(const InMemoryDisk&) = delete;
    ~InMemoryDisk();

    /// Adds an empty drive or share ("E:", "\\server\share"), or changes the options of the one there is.
    DiskVolume& AddVolume(const std::string& root, const DriveOptions& options);

    /// Takes a drive or share away, whatever is on it.
    void RemoveVolume(const std::string& root);

    /// The volume of that root; null when there is none.
    [[nodiscard]] DiskVolume* FindVolume(const std::string& root) const;

    /// From now on `drive` ("S:") stands for `folder`, as the subst command does it.
    void Substitute(const std::string& drive, const std::string& folder);

    enum class Follow { no, yes };

    /// Finds `path`. Links on the way are followed; one at its end when `follow` is yes. What is deleted and keeps its
    /// name meanwhile is found as missing, with `error::accessDenied`.
    [[nodiscard]] Place Locate(const std::string& path, Follow follow) const;

    /// As above, for a path taken apart already.
    [[nodiscard]] Place Locate(const PathParts& parts, Follow follow) const;

    /// The volume that holds `path`, found by as much of it as exists; links are followed.
    [[nodiscard]] SystemError VolumeOf(const std::string& path, const DiskVolume*& volume) const;

    /// Names with trailing dots and blanks are kept where a full path says them plainly: without "/", "." and ".." and
    /// with single separators. Every other path is changed as Windows changes paths in their usual form.
    [[nodiscard]] PathParts Parse(const std::string& path, bool wildcards = false) const;
    [[nodiscard]] PathParts ParseUsual(const std::string& path, bool wildcards = false) const;

    /// Adds a file or folder, created now, at a place whose parent exists and which itself does not.
    NodePtr Add(const Place& place, std::uint32_t attributes);

    /// Takes the node out of its folder, as the test's own hand would. It lives on while somebody holds it.
    void Remove(const NodePtr& node);

    /// Deletes the node as its file system does while somebody has it open: the name is free at once, or with the last
    /// handle.
    void Delete(const NodePtr& node);

    /// Puts a node that may be in a folder into `parent` under `name`.
    void Rename(const NodePtr& node, const NodePtr& parent, const std::string& name);

    /// Writes at `position`. When the disk is too small, what fits is written: `error::diskFull`.
    [[nodiscard]] SystemError Write(Node& node, std::uint64_t position, std::string_view bytes);

    /// Makes the file so many bytes long, the new ones zero. `error::diskFull` when they do not fit; nothing changes
    /// then.
    [[nodiscard]] SystemError SetSize(Node& node, std::uint64_t size);

    void Empty(Node& node);

    /// Puts times down as the volume does. One that it cannot put down changes nothing.
    void SetWriteTime(Node& node, FileTime time) const;
    void SetCreationTime(Node& node, FileTime time) const;
    void SetAlias(Node& node, const std::string& alias) const;

    /// Success when a handle of that use can be opened now.
    [[nodiscard]] SystemError CheckUse(Node& node, Use use) const { return node.users.Check(use, clock_.Ticks()); }
    [[nodiscard]] bool IsOpen(Node& node) const { return node.users.Any(clock_.Ticks()); }
    [[nodiscard]] bool IsInTheWay(Node& node) const { return node.users.AnyRefuses(clock_.Ticks()); }
    [[nodiscard]] bool KeepsName(Node& node) const { return node.users.AnyKeepsName(clock_.Ticks()); }
    [[nodiscard]] bool Has(Node& node, Hold::Kind kind) const { return node.users.Has(kind, clock_.Ticks()); }

    /// True when somebody has anything open below the folder.
    [[nodiscard]] bool HoldsOpen(Node& folder) const;

    /// Every node below `folder`, parents before their children, in the order of a listing. Links are not followed.
    [[nodiscard]] static std::vector<NodePtr> Below(Node& folder);

    /// Frees the names of what is deleted and not open any more.
    void Settle(Node& folder) const;

    [[nodiscard]] const InMemoryClock& Clock() const { return clock_; }

    std::string currentFolder = "C:\\";

 private:
    [[nodiscard]] PathParts Unsubstituted(PathParts parts) const;
    [[nodiscard]] Place Walk(const PathParts& parts, Follow follow, int linksLeft) const;
    [[nodiscard]] Place FollowLink(const Node& link, int linksLeft) const;
    void Touch(Node* folder) const;
    void MakeAlias(Node& node) const;
    void Unlink(const NodePtr& node) const;
    [[nodiscard]] static SystemError CheckRoom(const Node& node, std::uint64_t growth, std::uint64_t& room);

    InMemoryClock& clock_;
    std::map<std::u16string, std::unique_ptr<DiskVolume>> volumes_;
    std::map<std::u16string, std::string> substitutes_;
    std::uint64_t lastIndex_ = 0;
};

/// An open handle of the program's. Its file may be deleted and the name free before it is closed.
class Handle {
 public:
    Handle() = default;
    Handle(NodePtr node, Use use);
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept;
    Handle& operator=(Handle&& other) noexcept;
    ~Handle() { Close(); }

    void Close();
    [[nodiscard]] const NodePtr& Get() const { return node_; }

 private:
    NodePtr node_;  ///< null when closed
    Users::Id id_;
    bool writes_ = false;
};

}  // namespace marlok::test
