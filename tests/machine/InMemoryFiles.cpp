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

/// The attribute bits that a program can set; others are passed over.
constexpr std::uint32_t settable = attribute::readOnly | attribute::hidden | attribute::system | attribute::archive |
                                   attribute::temporary | attribute::offline | attribute::notIndexed;

constexpr Use removing = {access::remove, access::all};

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

SystemError CheckRemoval(const InMemoryDisk& disk, Node& node) {
    if (node.volume->options.readOnly) {
        return error::writeProtected;
    }
    if (node.denied || node.parent == nullptr) {
        return error::accessDenied;
    }
    return disk.CheckUse(node, removing);
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
    // The right to list is asked of a link, too: that is how the system keeps people out of those for old programs.
    const Place named = disk_.Locate(parts, Follow::no);
    const Place folder = disk_.Locate(parts, Follow::yes);
    if (folder.node == nullptr) {
        return folder.error == error::fileNotFound ? error::pathNotFound : folder.error;
    }
    if (folder.node->HasUnknownTag()) {
        return error::cannotAccessFile;
    }
    if (!folder.node->IsFolder()) {
        return error::invalidFolderName;
    }
    if (folder.node->denied || named.node->denied) {
        return error::accessDenied;
    }
    if (namesNothing) {
        return error::fileNotFound;
    }
    constexpr Use listing = {access::read, access::all};
    if (const SystemError code = disk_.CheckUse(*folder.node, listing); code != error::success) {
        return code;
    }
    disk_.Settle(*folder.node);
    auto found = std::make_unique<InMemorySearch>(faults_, openSearches_, pattern, tellsReparseTags_);
    found->Collect(Handle(folder.node, listing), name);
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
    if (place.node->pageFile && place.parent->denied) {
        return error::accessDenied;  // the real machine looks such a file up in its folder
    }
    entry = place.node->pageFile ? place.node->ListedEntry() : place.node->Entry();
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
    Node& node = *place.node;
    if (node.IsLink()) {
        return error::notSupported;
    }
    if (!node.IsFolder()) {
        return error::invalidFolderName;
    }
    if (const SystemError code = CheckRemoval(disk_, node); code != error::success) {
        return code;
    }
    if (node.Has(attribute::readOnly)) {
        return error::accessDenied;
    }
    if (IsCurrentFolder(node)) {
        return error::sharingViolation;
    }
    disk_.Settle(node);
    if (!node.children.empty()) {
        return error::directoryNotEmpty;
    }
    disk_.Delete(place.node);
    return error::success;
}

bool InMemoryFiles::IsCurrentFolder(const Node& node) const {
    return disk_.Locate(disk_.currentFolder, Follow::yes).node.get() == &node;
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
    const SystemError code =
        place.node->Has(attribute::readOnly) ? error::accessDenied : CheckRemoval(disk_, *place.node);
    if (code == error::success) {
        disk_.Delete(place.node);
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
    const bool runs = disk_.Has(*place.node, Hold::Kind::image);
    if (place.node->IsFolder() || place.node->Has(attribute::readOnly) || runs) {
        return error::accessDenied;
    }
    const SystemError code = CheckRemoval(disk_, *place.node);
    if (code == error::success) {
        disk_.Delete(place.node);
    }
    return code;
}

SystemError InMemoryFiles::Move(const std::string& from, const std::string& to, std::uint32_t flags) {
    if (const SystemError code = faults_.Enter("Move", from, true); code != error::success) {
        return code;
    }
    movesWrittenThrough_ += (flags & moveflag::writeThrough) != 0 ? 1 : 0;
    return Rename(from, to, (flags & moveflag::replace) != 0);
}

SystemError InMemoryFiles::CheckReplaced(Node& node) const {
    if (node.IsFolder() || node.Has(attribute::readOnly)) {
        return node.volume->IsFat() ? error::alreadyExists : error::accessDenied;
    }
    if (node.denied || disk_.Has(node, Hold::Kind::image)) {
        return error::accessDenied;
    }
    // The newer way of renaming takes the name from whoever lets others delete the file.
    const bool stays = node.volume->FreesNames() ? disk_.KeepsName(node) : disk_.IsInTheWay(node);
    return stays ? error::accessDenied : error::success;
}

SystemError InMemoryFiles::CheckMove(const Place& source, const Place& target, bool replace) const {
    const bool ontoOther = target.node != nullptr && target.node != source.node;
    if (source.node->IsFolder() && disk_.HoldsOpen(*source.node)) {
        return error::accessDenied;
    }
    if (target.parent == nullptr) {
        return target.node == nullptr ? target.error : error::accessDenied;
    }
    if (target.node == nullptr && target.error != error::fileNotFound) {
        return target.error;
    }
    if (target.parent->volume != source.node->volume) {
        return error::notSameDevice;
    }
    if (ontoOther && !replace) {
        return error::alreadyExists;
    }
    if (const SystemError code = CheckCreation(*target.parent); code != error::success) {
        return code;
    }
    if (ontoOther) {
        if (const SystemError code = CheckReplaced(*target.node); code != error::success) {
            return code;
        }
    }
    return IsBelow(target.parent.get(), source.node.get()) ? error::sharingViolation : error::success;
}

SystemError InMemoryFiles::Rename(const std::string& from, const std::string& to, bool replace) {
    const Place source = disk_.Locate(from, Follow::no);
    const Place target = disk_.Locate(to, Follow::no);
    if (source.node == nullptr) {
        return source.error;
    }
    if (const SystemError code = CheckRemoval(disk_, *source.node); code != error::success) {
        return code;
    }
    if (const SystemError code = CheckMove(source, target, replace); code != error::success) {
        return code;
    }
    if (target.node != nullptr && target.node != source.node) {
        disk_.Remove(target.node);
    }
    disk_.Rename(source.node, target.parent, target.name);
    return error::success;
}

SystemError InMemoryFiles::CheckReplacement(const Place& old, const Place& young) const {
    for (const Place* place : {&old, &young}) {
        if (place->node == nullptr) {
            return place->error;
        }
        if (place->node->IsFolder() || place->node->Has(attribute::readOnly)) {
            return error::accessDenied;
        }
    }
    // The old file is opened for reading and deleting along with everybody, the new one alone.
    if (const SystemError code = disk_.CheckUse(*old.node, {access::read | access::remove, access::all})) {
        return code;
    }
    if (const SystemError code = CheckRemoval(disk_, *old.node); code != error::success) {
        return code;
    }
    if (disk_.IsInTheWay(*young.node)) {
        return error::sharingViolation;
    }
    return old.parent->volume == young.parent->volume ? CheckRemoval(disk_, *young.node) : error::replacementNotMoved;
}

SystemError InMemoryFiles::Replace(const std::string& replaced, const std::string& replacement,
                                   const std::string& backup) {
    if (const SystemError code = faults_.Enter("Replace", replaced, true); code != error::success) {
        return code;
    }
    const Place old = disk_.Locate(replaced, Follow::no);
    const Place young = disk_.Locate(replacement, Follow::no);
    if (const SystemError code = CheckReplacement(old, young); code != error::success) {
        return code;
    }
    if (const SystemError code = disk_.Parse(backup).error; code != error::success) {
        return code;
    }
    const std::uint32_t attributes = old.node->attributes;
    const FileTime created = old.node->CreationTime();
    if (Rename(replaced, backup, true) != error::success) {
        return error::replacedKept;
    }
    // A process that dies here leaves nothing under the name, as the real one can.
    SystemError code = faults_.Enter("Replace.Second", replaced, true);
    code = code == error::success ? Rename(replacement, replaced, false) : code;
    if (code != error::success) {
        code = faults_.Enter("Replace.Back", replaced, true);
        code = code == error::success ? Rename(backup, replaced, false) : code;
        return code == error::success ? error::replacementNotMoved : error::replacedMovedAway;
    }
    young.node->attributes = attributes;
    disk_.SetCreationTime(*young.node, created);
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

SystemError InMemoryFiles::OpenForQuestions(const std::string& path, NodePtr& node) const {
    const Place place = disk_.Locate(path, Follow::yes);
    if (place.node == nullptr) {
        return place.error;
    }
    if (place.node->HasUnknownTag() || place.node->pageFile) {
        return place.node->pageFile ? error::sharingViolation : error::cannotAccessFile;
    }
    node = place.node;
    return error::success;
}

SystemError InMemoryFiles::FinalPath(const std::string& path, std::string& finalPath) {
    if (const SystemError code = faults_.Enter("FinalPath", path, false); code != error::success) {
        return code;
    }
    NodePtr node;
    const SystemError code = OpenForQuestions(path, node);
    if (code == error::success) {
        finalPath = node->Path();
    }
    return code;
}

SystemError InMemoryFiles::Identify(const std::string& path, FileIdentity& identity) {
    if (const SystemError code = faults_.Enter("Identify", path, false); code != error::success) {
        return code;
    }
    NodePtr node;
    const SystemError code = OpenForQuestions(path, node);
    if (code == error::success) {
        identity = {node->volume->serial, node->index, 0};
    }
    return code;
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
