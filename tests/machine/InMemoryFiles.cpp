#include "tests/machine/InMemoryFiles.h"

#include <algorithm>
#include <utility>

#include "tests/machine/InMemoryCopy.h"
#include "tests/machine/InMemoryFile.h"
#include "tests/machine/InMemorySearch.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

using Follow = InMemoryDisk::Follow;

/// The attribute bits that a program can set.
constexpr std::uint32_t settable = attribute::readOnly | attribute::hidden | attribute::system | attribute::archive;

bool IsBelow(const Node* node, const Node* folder) {
    while (node != nullptr && node != folder) {
        node = node->parent;
    }
    return node != nullptr;
}

}  // namespace

SystemError CheckCreation(const Node& parent) {
    if (parent.volume->options.readOnly) {
        return error::writeProtected;
    }
    return parent.denied ? error::accessDenied : error::success;
}

SystemError CheckRemoval(const Node& node) {
    if (node.volume->options.readOnly) {
        return error::writeProtected;
    }
    if (node.locked || node.holders > 0 || node.writers > 0) {
        return error::sharingViolation;
    }
    return node.denied || node.parent == nullptr ? error::accessDenied : error::success;
}

SystemError InMemoryFiles::FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                     DirectoryEntry& first) {
    search.reset();
    const SystemError code = faults_.Enter("FindFirst", pattern, false);
    return code == error::success ? Search(pattern, search, first) : code;
}

SystemError InMemoryFiles::Search(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                  DirectoryEntry& first) {
    PathParts parts = disk_.Parse(pattern, true);
    if (parts.error != error::success) {
        return parts.error;
    }
    // A bare root, and what ends in a separator, names no entry of any folder.
    const bool namesNothing = parts.names.empty() || parts.trailingSeparator;
    std::string name;
    if (!namesNothing) {
        name = std::move(parts.names.back());
        parts.names.pop_back();
    }
    const Place folder = disk_.Locate(parts, Follow::yes);
    if (folder.node == nullptr) {
        return folder.error == error::fileNotFound ? error::pathNotFound : folder.error;
    }
    if (!folder.node->IsFolder()) {
        return error::invalidFolderName;
    }
    if (folder.node->denied) {
        return error::accessDenied;
    }
    if (namesNothing) {
        return error::fileNotFound;
    }
    auto found = std::make_unique<InMemorySearch>(faults_, openSearches_, pattern, tellsReparseTags_);
    found->Collect(folder.node, name);
    if (!found->Fetch(first)) {
        return error::fileNotFound;
    }
    search = std::move(found);
    return error::success;
}

SystemError InMemoryFiles::GetEntry(const std::string& path, DirectoryEntry& entry) {
    if (const SystemError code = faults_.Enter("GetEntry", path, false); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node == nullptr) {
        return place.error;
    }
    entry = place.node->Entry();
    entry.name.clear();
    entry.alternateName.clear();
    entry.reparseTag = tellsReparseTags_ ? entry.reparseTag : 0;
    return error::success;
}

SystemError InMemoryFiles::CreateFolder(const std::string& path) {
    if (const SystemError code = faults_.Enter("CreateFolder", path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node != nullptr || place.error == error::invalidName) {
        return place.node != nullptr ? error::alreadyExists : error::invalidName;
    }
    if (place.parent == nullptr) {
        return place.error;
    }
    const SystemError code = CheckCreation(*place.parent);
    if (code == error::success) {
        disk_.Add(place, attribute::directory);
    }
    return code;
}

SystemError InMemoryFiles::RemoveFolder(const std::string& path) {
    if (const SystemError code = faults_.Enter("RemoveFolder", path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node == nullptr) {
        return place.error;
    }
    const Node& node = *place.node;
    if (node.IsLink()) {
        return error::notSupported;
    }
    if (!node.IsFolder()) {
        return error::invalidFolderName;
    }
    if (const SystemError code = CheckRemoval(node); code != error::success) {
        return code;
    }
    if (node.Has(attribute::readOnly)) {
        return error::accessDenied;
    }
    if (!node.children.empty()) {
        return error::directoryNotEmpty;
    }
    disk_.Remove(place.node);
    return error::success;
}

SystemError InMemoryFiles::RemoveLink(const std::string& path) {
    if (const SystemError code = faults_.Enter("RemoveLink", path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node == nullptr) {
        return place.error;
    }
    if (!canRemoveLinks_ || !place.node->IsLink()) {
        return error::notSupported;
    }
    const SystemError code = place.node->Has(attribute::readOnly) ? error::accessDenied : CheckRemoval(*place.node);
    if (code == error::success) {
        disk_.Remove(place.node);
    }
    return code;
}

SystemError InMemoryFiles::Delete(const std::string& path) {
    if (const SystemError code = faults_.Enter("Delete", path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node == nullptr) {
        return place.error;
    }
    if (place.node->IsFolder() || place.node->Has(attribute::readOnly)) {
        return error::accessDenied;
    }
    const SystemError code = CheckRemoval(*place.node);
    if (code == error::success) {
        disk_.Remove(place.node);
    }
    return code;
}

SystemError InMemoryFiles::CheckReplace(const Node& from, const Place& to) const {
    if (to.node == nullptr || to.node.get() == &from) {
        return error::success;
    }
    const bool refused = to.node->IsFolder() || from.IsFolder() || to.node->Has(attribute::readOnly);
    return refused || to.node->readers > 0 ? error::accessDenied : CheckRemoval(*to.node);
}

SystemError InMemoryFiles::Move(const std::string& from, const std::string& to, std::uint32_t flags) {
    if (const SystemError code = faults_.Enter("Move", from, true); code != error::success) {
        return code;
    }
    movesWrittenThrough_ += (flags & moveflag::writeThrough) != 0 ? 1 : 0;
    return Rename(from, to, (flags & moveflag::replace) != 0);
}

SystemError InMemoryFiles::Rename(const std::string& from, const std::string& to, bool replace) {
    const Place source = disk_.Locate(from, Follow::no);
    const Place target = disk_.Locate(to, Follow::no);
    if (source.node == nullptr) {
        return source.error;
    }
    if (const SystemError code = CheckRemoval(*source.node); code != error::success) {
        return code;
    }
    if (target.node != nullptr && target.node != source.node && !replace) {
        return error::alreadyExists;
    }
    if (target.parent == nullptr) {
        return target.node == nullptr ? target.error : error::accessDenied;
    }
    if (target.parent->volume != source.node->volume) {
        return error::notSameDevice;
    }
    const SystemError creation = CheckCreation(*target.parent);
    const SystemError code = creation == error::success ? CheckReplace(*source.node, target) : creation;
    if (code != error::success) {
        return code;
    }
    if (IsBelow(target.parent.get(), source.node.get())) {
        return error::sharingViolation;
    }
    if (target.node != nullptr && target.node != source.node) {
        disk_.Remove(target.node);
    }
    disk_.Rename(source.node, target.parent, target.name);
    return error::success;
}

SystemError InMemoryFiles::Replace(const std::string& replaced, const std::string& replacement,
                                   const std::string& backup) {
    if (const SystemError code = faults_.Enter("Replace", replaced, true); code != error::success) {
        return code;
    }
    const Place old = disk_.Locate(replaced, Follow::no);
    const Place young = disk_.Locate(replacement, Follow::no);
    if (old.node == nullptr || young.node == nullptr) {
        return old.node == nullptr ? old.error : young.error;
    }
    if (disk_.Parse(backup).error != error::success) {
        return disk_.Parse(backup).error;
    }
    if (old.node->IsFolder() || young.node->IsFolder() || old.node->Has(attribute::readOnly) ||
        young.node->Has(attribute::readOnly)) {
        return error::accessDenied;
    }
    if (const SystemError code = CheckRemoval(*old.node); code != error::success) {
        return code;
    }
    if (young.node->IsOpen()) {
        return error::sharingViolation;
    }
    if (old.parent->volume != young.parent->volume) {
        return error::replacementNotMoved;
    }
    const std::uint32_t attributes = old.node->attributes;
    const FileTime created = old.node->creationTime;
    if (Rename(replaced, backup, true) != error::success) {
        return error::replacedKept;
    }
    // A process that dies here leaves nothing under the name, as the real one can.
    SystemError code = faults_.Enter("Replace.Second", replaced, true);
    code = code == error::success ? Rename(replacement, replaced, false) : code;
    if (code != error::success) {
        return error::replacedMovedAway;
    }
    young.node->attributes = attributes;
    young.node->creationTime = created;
    return error::success;
}

SystemError InMemoryFiles::Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                const CopyProgressRoutine& progress) {
    InMemoryCopy copy(disk_, faults_, {copyChunk_, swallowsReadErrors_});
    return copy.Run(from, to, flags, progress);
}

SystemError InMemoryFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
    if (const SystemError code = faults_.Enter("SetAttributes", path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::no);
    if (place.node == nullptr) {
        return place.error;
    }
    if (place.node->volume->options.readOnly) {
        return error::writeProtected;
    }
    if (place.node->denied) {
        return error::accessDenied;
    }
    place.node->attributes = (place.node->attributes & ~settable) | (attributes & settable);
    return error::success;
}

SystemError InMemoryFiles::Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) {
    file.reset();
    if (const SystemError code = faults_.Enter("Open", path, mode != OpenMode::read); code != error::success) {
        return code;
    }
    NodePtr node;
    const SystemError code = OpenNode(disk_, path, mode, node);
    if (code == error::success) {
        file = std::make_unique<InMemoryFile>(disk_, faults_, openFiles_, path, std::move(node), mode);
    }
    return code;
}

SystemError InMemoryFiles::FinalPath(const std::string& path, std::string& finalPath) {
    if (const SystemError code = faults_.Enter("FinalPath", path, false); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::yes);
    if (place.node != nullptr) {
        finalPath = place.node->Path();
    }
    return place.error;
}

SystemError InMemoryFiles::Identify(const std::string& path, FileIdentity& identity) {
    if (const SystemError code = faults_.Enter("Identify", path, false); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(path, Follow::yes);
    if (place.node != nullptr) {
        identity = {place.node->volume->serial, place.node->index, 0};
    }
    return place.error;
}

SystemError InMemoryFiles::GetVolume(const std::string& path, Volume& volume) {
    if (const SystemError code = faults_.Enter("GetVolume", path, false); code != error::success) {
        return code;
    }
    const DiskVolume* found = nullptr;
    if (const SystemError code = disk_.VolumeOf(path, found); code != error::success) {
        return code;
    }
    const DriveOptions& options = found->options;
    constexpr std::uint64_t plenty = std::uint64_t{1} << 40;
    volume = {found->root + "\\", found->serial, options.volumeName, options.fileSystem, 0};
    volume.flags = volumeflag::casePreservedNames | (options.readOnly ? volumeflag::readOnly : 0);
    if (options.fileSystem == "NTFS") {
        volume.flags |= volumeflag::supportsReparsePoints | volumeflag::supportsEncryption | volumeflag::namedStreams;
    }
    volume.totalBytes = options.capacityBytes != 0 ? options.capacityBytes : plenty;
    volume.freeBytes = volume.totalBytes - std::min(found->used, volume.totalBytes);
    return error::success;
}

}  // namespace marlok::test
