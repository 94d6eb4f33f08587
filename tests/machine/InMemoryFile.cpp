#include "tests/machine/InMemoryFile.h"

#include <algorithm>
#include <utility>

#include "tests/machine/InMemoryFiles.h"

namespace marlok::test {
namespace {

/// What the real machine asks for: readers let everybody do everything, writers let others read.
Use UseFor(OpenMode mode) {
    return mode == OpenMode::read ? Use{access::read, access::all} : Use{access::write, access::read};
}

SystemError CheckExisting(const InMemoryDisk& disk, Node& node, OpenMode mode) {
    if (mode == OpenMode::createNew) {
        return error::fileExists;
    }
    if (node.HasUnknownTag()) {
        return error::cannotAccessFile;
    }
    if (node.IsFolder() || node.denied) {
        return error::accessDenied;
    }
    if (mode != OpenMode::read && node.volume->options.readOnly) {
        return error::writeProtected;
    }
    if (mode != OpenMode::read && node.Has(attribute::readOnly)) {
        return error::accessDenied;
    }
    if (const SystemError code = disk.CheckUse(node, UseFor(mode)); code != error::success) {
        return code;
    }
    return mode == OpenMode::replace && disk.Has(node, Hold::Kind::mapping) ? error::mappedFile : error::success;
}

SystemError CreateFile(InMemoryDisk& disk, const Place& place, OpenMode mode, NodePtr& node) {
    if (mode == OpenMode::read || place.error != error::fileNotFound) {
        return place.error;
    }
    if (place.trailingSeparator) {
        return error::invalidName;
    }
    const SystemError code = CheckCreation(*place.parent);
    if (code == error::success) {
        node = disk.Add(place, attribute::archive);
    }
    return code;
}

}  // namespace

SystemError OpenNode(InMemoryDisk& disk, const std::string& path, OpenMode mode, NodePtr& node) {
    const Place place = disk.Locate(path, InMemoryDisk::Follow::yes);
    if (place.node == nullptr) {
        return CreateFile(disk, place, mode, node);
    }
    const SystemError code = CheckExisting(disk, *place.node, mode);
    if (code != error::success) {
        return code;
    }
    node = place.node;
    if (mode == OpenMode::replace) {
        disk.Empty(*node);
        node->attributes |= attribute::archive;
    }
    return error::success;
}

InMemoryFile::InMemoryFile(InMemoryDisk& disk, FaultPlan& faults, int& openFiles, std::string path, NodePtr node,
                           OpenMode mode)
    : disk_(disk),
      faults_(faults),
      openFiles_(openFiles),
      path_(std::move(path)),
      handle_(node, UseFor(mode)),
      node_(std::move(node)),
      mode_(mode),
      position_(mode == OpenMode::append ? node_->Size() : 0) {
    ++openFiles_;
    if (Writes() && !node_->listed) {
        node_->listed = {node_->Size(), node_->written, node_->attributes};
    }
}

InMemoryFile::~InMemoryFile() {
    Release();
}

void InMemoryFile::Release() {
    if (node_ != nullptr) {
        handle_.Close();
        --openFiles_;
        node_.reset();
    }
}

SystemError InMemoryFile::Read(std::string& bytes, std::size_t size) {
    bytes.clear();
    if (const SystemError code = faults_.Enter("Read", path_, false); code != error::success) {
        return code;
    }
    if (node_ == nullptr) {
        return error::invalidHandle;
    }
    if (Writes()) {
        return error::accessDenied;
    }
    const bool broken = node_->readError != error::success;
    if (broken && position_ >= node_->readableBytes) {
        return node_->readError;
    }
    const std::uint64_t end = broken ? std::min<std::uint64_t>(node_->readableBytes, node_->Size()) : node_->Size();
    const std::uint64_t wanted = std::min<std::uint64_t>(size, end - std::min(end, position_));
    if (position_ < node_->content.size()) {
        bytes = node_->content.substr(static_cast<std::size_t>(position_), static_cast<std::size_t>(wanted));
    }
    bytes.resize(static_cast<std::size_t>(wanted), '\0');
    position_ += wanted;
    return error::success;
}

SystemError InMemoryFile::Put(std::string_view bytes) {
    if (node_ == nullptr) {
        return error::invalidHandle;
    }
    if (!Writes()) {
        return error::accessDenied;
    }
    const SystemError code = disk_.Write(*node_, position_, bytes);
    position_ += bytes.size();
    return code;
}

SystemError InMemoryFile::Write(std::string_view bytes) {
    const std::string_view torn = faults_.TearsWrites() ? bytes.substr(0, bytes.size() / 2) : std::string_view();
    SystemError code = error::success;
    try {
        code = faults_.Enter("Write", path_, true);
    } catch (const ProcessDied&) {
        static_cast<void>(Put(torn));  // nobody is left to hear of its result
        throw;
    }
    if (code != error::success) {
        static_cast<void>(Put(torn));  // the planned error is the result
        return code;
    }
    return Put(bytes);
}

SystemError InMemoryFile::Flush() {
    const SystemError code = faults_.Enter("Flush", path_, false);
    return code == error::success && node_ == nullptr ? error::invalidHandle : code;
}

SystemError InMemoryFile::Close() {
    // The handle is gone whatever the result.
    const bool wasOpen = node_ != nullptr;
    Release();
    const SystemError code = faults_.Enter("Close", path_, false);
    return code == error::success && !wasOpen ? error::invalidHandle : code;
}

}  // namespace marlok::test
