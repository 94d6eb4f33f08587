#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "tests/machine/DiskVolume.h"
#include "tests/machine/Sharing.h"

namespace marlok::test {

/// A file, folder or link on the in-memory disk.
struct Node {
    std::string name;
    std::string alternateName;  ///< the 8.3 alias, "" when there is none
    std::uint32_t attributes = 0;
    std::uint32_t reparseTag = 0;
    FileTime created = 0;        ///< as the volume has put it down; see DiskVolume::Shown
    FileTime written = 0;        ///< likewise
    std::string content;         ///< of a file
    std::uint64_t zeros = 0;     ///< bytes behind the content, all zero: of a large file, or one that is being copied
    std::string linkTarget;      ///< of a junction or symbolic link; absolute, or relative to the link's folder
    std::uint64_t index = 0;     ///< unlike every other node's; grows in the order of creation
    std::uint64_t sequence = 0;  ///< grows in the order in which nodes came into folders
    Node* parent = nullptr;      ///< null for a root, and for what has been removed
    DiskVolume* volume = nullptr;
    std::map<std::u16string, NodePtr> children;  ///< by KeyOf
    std::map<std::u16string, Node*> aliases;     ///< children by NameKey of their alias
    bool caseSensitive = false;                  ///< of a folder: "a" and "A" are two files in it
    bool denied = false;                         ///< the user has no right to it
    bool pageFile = false;       ///< the system keeps it for itself, and not even says what it is when asked by name
    bool deletePending = false;  ///< deleted, with the name still taken until its last handle is closed
    int pendingChildren = 0;     ///< of a folder: those of them that are
    SystemError readError = error::success;  ///< what reading its content beyond `readableBytes` ends with
    std::size_t readableBytes = 0;
    Users users;

    /// What the listing tells while somebody writes: it is brought up to date when the last writer closes.
    struct Listed {
        std::uint64_t size;
        FileTime written;
        std::uint32_t attributes;
    };
    std::optional<Listed> listed;

    [[nodiscard]] bool IsFolder() const { return (attributes & attribute::directory) != 0; }
    [[nodiscard]] bool IsLink() const { return !linkTarget.empty(); }
    [[nodiscard]] bool Has(std::uint32_t bits) const { return (attributes & bits) != 0; }
    [[nodiscard]] std::uint64_t Size() const { return content.size() + zeros; }
    [[nodiscard]] FileTime CreationTime() const { return volume->Shown(created); }
    [[nodiscard]] FileTime WriteTime() const { return volume->Shown(written); }

    /// True for a reparse point that is no link and that no driver of this machine handles: nobody can open it.
    [[nodiscard]] bool HasUnknownTag() const;

    /// The key of a name in this folder.
    [[nodiscard]] std::u16string KeyOf(std::string_view wanted) const;

    /// The child called `wanted`, by name or alias; null when there is none.
    [[nodiscard]] NodePtr Find(std::string_view wanted) const;

    /// What it is now, names included.
    [[nodiscard]] DirectoryEntry Entry() const;

    /// What a listing tells of it: the same, except while it is being written.
    [[nodiscard]] DirectoryEntry ListedEntry() const;

    /// The path from the root of its volume; links and substituted drives are resolved by nature.
    [[nodiscard]] std::string Path() const;

    /// The content as text, zeros included. @throws std::length_error when that is more than a test can want.
    [[nodiscard]] std::string Text() const;
};

}  // namespace marlok::test
