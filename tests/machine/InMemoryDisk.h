#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "tests/machine/InMemoryClock.h"
#include "tests/machine/PathParts.h"

namespace marlok::test {

struct Node;
struct DiskVolume;
using NodePtr = std::shared_ptr<Node>;

/// A file, folder or link on the in-memory disk.
struct Node {
    std::string name;
    std::string alternateName;  ///< the 8.3 alias, "" when there is none
    std::uint32_t attributes = 0;
    std::uint32_t reparseTag = 0;
    FileTime creationTime = 0;
    FileTime lastWriteTime = 0;
    std::string content;         ///< of a file
    std::string linkTarget;      ///< of a junction or symbolic link; absolute, or relative to the link's folder
    std::uint64_t index = 0;     ///< unlike every other node's; grows in the order of creation
    std::uint64_t sequence = 0;  ///< grows in the order in which nodes came into folders
    Node* parent = nullptr;      ///< null for a root, and for what has been removed
    DiskVolume* volume = nullptr;
    std::map<std::u16string, NodePtr> children;  ///< by NameKey
    std::map<std::u16string, Node*> aliases;     ///< children by NameKey of their alias
    bool locked = false;                         ///< as if another program held it open without sharing
    bool denied = false;                         ///< the user has no right to it
    SystemError readError = error::success;      ///< what reading its content beyond `readableBytes` ends with
    std::size_t readableBytes = 0;
    int readers = 0;  ///< handles that let others delete and rename it
    int holders = 0;  ///< reading handles that do not: those of a running copy
    int writers = 0;

    [[nodiscard]] bool IsFolder() const { return (attributes & attribute::directory) != 0; }
    [[nodiscard]] bool IsLink() const { return !linkTarget.empty(); }
    [[nodiscard]] bool Has(std::uint32_t bits) const { return (attributes & bits) != 0; }
    [[nodiscard]] bool IsOpen() const { return readers + holders + writers > 0; }

    /// The child called `wanted`, by name or alias; null when there is none.
    [[nodiscard]] NodePtr Find(std::string_view wanted) const;

    /// What a listing tells of it, names included.
    [[nodiscard]] DirectoryEntry Entry() const;

    /// The path from the root of its volume; links and substituted drives are resolved by nature.
    [[nodiscard]] std::string Path() const;
};

/// What a drive or network share is like.
struct DriveOptions {
    bool readOnly = false;
    std::uint64_t capacityBytes = 0;    ///< room for file contents; 0: unlimited
    std::uint64_t timeGranularity = 1;  ///< file times are kept as multiples of this many 100-nanosecond intervals
    bool listsInCreationOrder = false;  ///< as FAT does, instead of by name
    Drive::Kind kind = Drive::Kind::fixed;
    std::string volumeName = {};
    std::string fileSystem = "NTFS";
    std::uint32_t serial = 0;  ///< 0: one of the drive's own, unlike every other's
};

struct DiskVolume {
    std::string root;  ///< "C:" or "\\server\share"
    DriveOptions options;
    std::uint32_t serial = 0;
    std::uint64_t used = 0;                ///< bytes of all contents
    SystemError failure = error::success;  ///< what every access ends with while it is not success
    NodePtr folder;                        ///< the root folder
};

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

    /// Finds `path`. Links on the way are followed; one at its end when `follow` is yes.
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

    /// Takes the node out of its folder. It lives on while somebody holds it.
    void Remove(const NodePtr& node);

    /// Puts a node that may be in a folder into `parent` under `name`.
    void Rename(const NodePtr& node, const NodePtr& parent, const std::string& name);

    /// Writes at `position`. When the disk is too small, what fits is written: `error::diskFull`.
    [[nodiscard]] SystemError Write(Node& node, std::size_t position, std::string_view bytes);

    void Empty(Node& node);

    void SetWriteTime(Node& node, FileTime time) const;
    void SetCreationTime(Node& node, FileTime time) const;
    void SetAlias(Node& node, const std::string& alias) const;

    /// Every node below `folder`, parents before their children, in the order of a listing. Links are not followed.
    [[nodiscard]] static std::vector<NodePtr> Below(const Node& folder);

    std::string currentFolder = "C:\\";

 private:
    [[nodiscard]] PathParts Unsubstituted(PathParts parts) const;
    [[nodiscard]] Place Walk(const PathParts& parts, Follow follow, int linksLeft) const;
    [[nodiscard]] Place FollowLink(const Node& link, int linksLeft) const;
    void Touch(Node* folder) const;

    InMemoryClock& clock_;
    std::map<std::u16string, std::unique_ptr<DiskVolume>> volumes_;
    std::map<std::u16string, std::string> substitutes_;
    std::uint64_t lastIndex_ = 0;
};

}  // namespace marlok::test
