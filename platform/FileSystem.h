#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/SystemError.h"
#include "platform/Volume.h"

namespace marlok {

/// 100-nanosecond intervals since 1601-01-01 00:00 UTC.
using FileTime = std::uint64_t;

/// Bits of an attribute word, as the file system stores them.
namespace attribute {
inline constexpr std::uint32_t readOnly = 0x1;
inline constexpr std::uint32_t hidden = 0x2;
inline constexpr std::uint32_t system = 0x4;
inline constexpr std::uint32_t directory = 0x10;
inline constexpr std::uint32_t archive = 0x20;
inline constexpr std::uint32_t normal = 0x80;
inline constexpr std::uint32_t temporary = 0x100;
inline constexpr std::uint32_t reparsePoint = 0x400;
inline constexpr std::uint32_t offline = 0x1000;  ///< its content is kept elsewhere
inline constexpr std::uint32_t notIndexed = 0x2000;
inline constexpr std::uint32_t encrypted = 0x4000;
inline constexpr std::uint32_t recallOnDataAccess = 0x400000;  ///< reading it downloads it
}  // namespace attribute

/// Reparse tags that the program tells apart.
namespace reparse {
inline constexpr std::uint32_t mountPoint = 0xA0000003;  ///< a junction or a mounted volume
inline constexpr std::uint32_t symbolicLink = 0xA000000C;
inline constexpr std::uint32_t cloudFile = 0x9000001A;      ///< a placeholder of a file kept online
inline constexpr std::uint32_t nameSurrogate = 0x20000000;  ///< the bit of tags that stand for another name
}  // namespace reparse

/// One entry of a folder, as a listing returns it.
struct DirectoryEntry {
    std::string name;           ///< the name alone, without its folder
    std::string alternateName;  ///< the 8.3 alias, "" when there is none
    std::uint32_t attributes = 0;
    std::uint32_t reparseTag = 0;  ///< 0 where the system does not tell it
    FileTime creationTime = 0;
    FileTime lastWriteTime = 0;
    std::uint64_t size = 0;  ///< bytes

    [[nodiscard]] bool IsFolder() const { return (attributes & attribute::directory) != 0; }

    /// True for junctions and symbolic links, and for a reparse point whose tag is not told. Placeholders of
    /// files kept online are not links.
    [[nodiscard]] bool IsLink() const {
        return (attributes & attribute::reparsePoint) != 0 &&
               (reparseTag == 0 || (reparseTag & reparse::nameSurrogate) != 0);
    }
};

/// A running folder listing; closed by its destructor.
class FolderSearch {
 public:
    virtual ~FolderSearch() = default;

    /// Fetches the next entry. `error::noMoreFiles` ends the listing.
    [[nodiscard]] virtual SystemError Next(DirectoryEntry& entry) = 0;
};

/// An open file; closed by its destructor, errors of that ignored. Call Close to learn them.
class File {
 public:
    virtual ~File() = default;

    /// Reads up to `size` bytes at the current position into `bytes` (resized to what was read; empty at the end).
    [[nodiscard]] virtual SystemError Read(std::string& bytes, std::size_t size) = 0;

    /// Writes all of `bytes` at the current position; a short write is an error (`error::diskFull`).
    [[nodiscard]] virtual SystemError Write(std::string_view bytes) = 0;

    /// Hands what was written to the device.
    [[nodiscard]] virtual SystemError Flush() = 0;

    [[nodiscard]] virtual SystemError Close() = 0;
};

enum class OpenMode {
    read,       ///< existing file, others may read and write it meanwhile
    createNew,  ///< for writing; fails with `error::fileExists` when there is one
    replace,    ///< for writing; created, or emptied when there is one
    append,     ///< for writing at the end; created when missing
};

/// What a copy tells while it runs, with the kernel's reason numbers.
struct CopyProgressInfo {
    enum class Reason : std::uint32_t { chunkFinished = 0, streamSwitch = 1 };
    std::uint64_t totalFileSize = 0;     ///< bytes
    std::uint64_t totalTransferred = 0;  ///< bytes
    Reason reason = Reason::chunkFinished;
};

/// What becomes of a copy after a call of its progress routine.
enum class CopyAnswer { goOn, cancel };

/// Called on the copying thread.
using CopyProgressRoutine = std::function<CopyAnswer(const CopyProgressInfo&)>;

/// Bits of a copy request, as the kernel numbers them.
namespace copyflag {
inline constexpr std::uint32_t none = 0;
inline constexpr std::uint32_t failIfExists = 1;
inline constexpr std::uint32_t restartable = 2;
inline constexpr std::uint32_t allowDecryptedDestination = 8;
}  // namespace copyflag

/// Bits of a move request, as the kernel numbers them.
namespace moveflag {
inline constexpr std::uint32_t none = 0;
inline constexpr std::uint32_t replace = 1;       ///< of an existing file
inline constexpr std::uint32_t writeThrough = 8;  ///< the new name is on the device when the call returns
}  // namespace moveflag

/// Tells a file or folder from every other one on this machine, whatever path it was reached by.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t index = 0;  ///< the number's lower half; all of it where the file system numbers in 64 bits
    std::uint64_t high = 0;

    /// True when the file system gives its files no numbers: nothing can be told by this then.
    [[nodiscard]] bool NumbersNothing() const { return index == 0 && high == 0; }

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// The kernel's file services. Paths may have any length; drive, network and relative forms are accepted.
/// A path that holds a zero character fails with `error::invalidName`.
class FileSystem {
 public:
    virtual ~FileSystem() = default;

    /// Starts a listing of what matches `pattern` (a path whose last component may hold wildcards) and fetches its
    /// first entry. On failure `search` stays empty: `error::fileNotFound` when nothing matches, `error::pathNotFound`
    /// when the folder does not exist.
    [[nodiscard]] virtual SystemError FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                                DirectoryEntry& first) = 0;

    /// The entry of `path` itself; a link is not followed. Drive roots have an entry too. The names stay empty.
    [[nodiscard]] virtual SystemError GetEntry(const std::string& path, DirectoryEntry& entry) = 0;

    /// Creates one folder; `error::alreadyExists`, or `error::pathNotFound` when its parent is missing.
    [[nodiscard]] virtual SystemError CreateFolder(const std::string& path) = 0;

    /// Removes an empty folder. A link is refused with `error::notSupported`: see RemoveLink.
    [[nodiscard]] virtual SystemError RemoveFolder(const std::string& path) = 0;

    /// Removes a link (to a folder or a file) and never what it leads to. `error::notSupported` when the system cannot
    /// open the link apart from its target, or `path` is no link; nothing is removed then. As with Delete, its name may
    /// stay for a while.
    [[nodiscard]] virtual SystemError RemoveLink(const std::string& path) = 0;

    /// Deletes one file; a link to a file goes and its target stays. Read-only files fail with `error::accessDenied`.
    /// Where the file system can do it, the name is free at once; elsewhere (FAT, exFAT, some servers) a file that
    /// somebody has open keeps its name until it is closed, every access fails with `error::accessDenied` meanwhile,
    /// and its folder is not empty.
    [[nodiscard]] virtual SystemError Delete(const std::string& path) = 0;

    /// Renames a file or folder within its volume, as the `moveflag::` bits of `flags` say. An existing destination is
    /// replaced when asked, else the call fails with `error::alreadyExists`. Never copies: `error::notSameDevice`.
    /// Replacing fails with `error::accessDenied` when the destination is a folder or read-only, or in use in a way
    /// that does not let others delete it; FAT says `error::alreadyExists` for the first two, and for every use
    /// `error::accessDenied`. A folder that replaces takes the place of a file.
    [[nodiscard]] virtual SystemError Move(const std::string& from, const std::string& to, std::uint32_t flags) = 0;

    /// Puts `replacement` in the place of `replaced`, which then lies under the name `backup` (what was there is
    /// replaced); all three on one volume. The new file keeps its content and last-write time and takes over what else
    /// belongs to the name: creation time, rights, streams and attributes of the old one.
    /// Failures leave everything as it was, `error::replacedKept` and `error::replacementNotMoved` included, except for
    /// `error::replacedMovedAway`: nothing bears the name then, the old file lies under `backup`, and the replacement
    /// has its own name still. Fails with `error::accessDenied` when either file is read-only or a folder.
    [[nodiscard]] virtual SystemError Replace(const std::string& replaced, const std::string& replacement,
                                              const std::string& backup) = 0;

    /// Copies one file with its attributes and last-write time; an existing destination is overwritten unless
    /// `copyflag::failIfExists` is set (`error::fileExists`), or it is hidden or read-only (`error::accessDenied`).
    /// Succeeds only when all bytes have arrived: `error::readFault` for a copy that ends early without saying so.
    /// When `progress` says so the copy is called off: `error::requestAborted`, and the destination is gone unless
    /// somebody has it open in a way that forbids deleting. `error::encryptionFailed` when the source is encrypted and
    /// the destination cannot be, unless `copyflag::allowDecryptedDestination` is set. What a copy that failed
    /// otherwise leaves at the destination is not promised.
    [[nodiscard]] virtual SystemError Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                           const CopyProgressRoutine& progress) = 0;

    /// Sets the attribute word (`attribute::` bits that can be set).
    [[nodiscard]] virtual SystemError SetAttributes(const std::string& path, std::uint32_t attributes) = 0;

    [[nodiscard]] virtual SystemError Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) = 0;

    /// The path of an existing file or folder with all links, aliases and substituted drives resolved
    /// ("D:\Data" or "\\server\share\x").
    [[nodiscard]] virtual SystemError FinalPath(const std::string& path, std::string& finalPath) = 0;

    /// Identity of an existing file or folder; links are followed. It may number nothing: see FileIdentity.
    [[nodiscard]] virtual SystemError Identify(const std::string& path, FileIdentity& identity) = 0;

    /// The volume that holds `path`, which need not exist itself; links on the way are followed as far as they lead.
    /// Errors are those of the drive or share: `error::pathNotFound`, `error::notReady`, `error::badNetworkPath`,
    /// `error::unrecognizedVolume`, ... A server that is gone makes the caller wait as long as the system does for one
    /// question.
    [[nodiscard]] virtual SystemError GetVolume(const std::string& path, Volume& volume) = 0;
};

}  // namespace marlok
