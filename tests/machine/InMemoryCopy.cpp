#include "tests/machine/InMemoryCopy.h"

#include <algorithm>

#include "tests/machine/InMemoryFile.h"
#include "tests/machine/InMemoryFiles.h"

namespace marlok::test {
namespace {

/// The attributes that go with a file.
constexpr std::uint32_t copied = attribute::readOnly | attribute::hidden | attribute::system;

/// Those of an existing file that keep it from being overwritten.
constexpr std::uint32_t guarded = attribute::readOnly | attribute::hidden | attribute::system;

constexpr Use reading = {access::read, access::read | access::write};
constexpr Use writing = {access::write, access::read | access::write};

}  // namespace

SystemError InMemoryCopy::Run(const std::string& from, const std::string& to, std::uint32_t flags,
                              const CopyProgressRoutine& progress) {
    if (const SystemError code = OpenSource(from); code != error::success) {
        return code;
    }
    if (const SystemError code = OpenTarget(to, flags); code != error::success) {
        return code;
    }
    SystemError code = disk_.SetSize(*target_, source_->Size());
    code = code == error::success ? Fill(to, progress) : code;
    code = code == error::success ? Finish(to) : code;
    writing_.Close();
    TidyUp(code, flags);
    return code;
}

void InMemoryCopy::TidyUp(SystemError code, std::uint32_t flags) {
    if (code == error::success) {
        return;
    }
    const bool restartable = (flags & copyflag::restartable) != 0;
    const bool goes = code == error::requestAborted || (made_ && !restartable);
    // Somebody who forbids deleting keeps it.
    if (goes && disk_.CheckUse(*target_, {access::remove, access::all}) == error::success) {
        disk_.Delete(target_);
    }
}

SystemError InMemoryCopy::OpenSource(const std::string& from) {
    if (const SystemError code = faults_.Enter("Copy", from, false); code != error::success) {
        return code;
    }
    if (const SystemError code = OpenNode(disk_, from, OpenMode::read, source_); code != error::success) {
        return code;
    }
    // Asked for the source alone first; when somebody is about to delete or rename it, along with him.
    const bool alone = disk_.CheckUse(*source_, reading) == error::success;
    reading_ = Handle(source_, alone ? reading : Use{access::read, access::all});
    return error::success;
}

SystemError InMemoryCopy::CheckTarget(Node& node, std::uint32_t flags) const {
    if ((flags & copyflag::failIfExists) != 0) {
        return error::fileExists;
    }
    if (node.HasUnknownTag()) {
        return error::cannotAccessFile;
    }
    if (node.volume->options.readOnly) {
        return error::writeProtected;
    }
    // The file itself: its reader lets nobody else in.
    if (&node == source_.get()) {
        return error::sharingViolation;
    }
    if (node.IsFolder() || node.denied || node.Has(guarded)) {
        return error::accessDenied;
    }
    if (const SystemError code = disk_.CheckUse(node, writing); code != error::success) {
        return code;
    }
    return disk_.Has(node, Hold::Kind::mapping) ? error::mappedFile : error::success;
}

std::uint32_t InMemoryCopy::TargetAttributes(const DiskVolume& volume) const {
    const std::uint32_t kept = copied | (volume.CanEncrypt() ? attribute::encrypted : 0);
    return (source_->attributes & kept) | attribute::archive;
}

SystemError InMemoryCopy::OpenTarget(const std::string& to, std::uint32_t flags) {
    if (const SystemError code = faults_.Enter("Copy.Create", to, true); code != error::success) {
        return code;
    }
    // A link is written through, one that leads nowhere too.
    const Place place = disk_.Locate(to, InMemoryDisk::Follow::yes);
    if (place.node == nullptr && (place.error != error::fileNotFound || place.trailingSeparator)) {
        return place.trailingSeparator ? error::invalidName : place.error;
    }
    const DiskVolume& volume = place.node != nullptr ? *place.node->volume : *place.parent->volume;
    const SystemError check = place.node != nullptr ? CheckTarget(*place.node, flags) : CheckCreation(*place.parent);
    if (check != error::success) {
        return check;
    }
    if (const SystemError code = CheckEncryption(volume, flags); code != error::success) {
        return code;
    }
    made_ = place.node == nullptr;
    target_ = made_ ? disk_.Add(place, attribute::archive) : place.node;
    disk_.Empty(*target_);
    target_->attributes = TargetAttributes(volume);
    writing_ = Handle(target_, writing);
    return error::success;
}

SystemError InMemoryCopy::CheckEncryption(const DiskVolume& to, std::uint32_t flags) const {
    const bool refused =
        source_->Has(attribute::encrypted) && !to.CanEncrypt() && (flags & copyflag::allowDecryptedDestination) == 0;
    return refused ? error::encryptionFailed : error::success;
}

SystemError InMemoryCopy::Fill(const std::string& to, const CopyProgressRoutine& progress) {
    // The size as it was when the copy began: what somebody appends meanwhile is not waited for.
    const std::uint64_t total = target_->Size();
    CopyProgressInfo info{total, 0, CopyProgressInfo::Reason::streamSwitch};
    if (progress && progress(info) == CopyAnswer::cancel) {
        return error::requestAborted;
    }
    info.reason = CopyProgressInfo::Reason::chunkFinished;
    while (info.totalTransferred < total) {
        const std::uint64_t done = info.totalTransferred;
        // Zeros behind the content cost nothing, however many: they go as one.
        const bool zeros = done >= source_->content.size();
        const std::uint64_t size = zeros ? total - done : std::min<std::uint64_t>(manners_.chunk, total - done);
        const SystemError code = CopyChunk(to, done, size);
        if (code != error::success) {
            return code == source_->readError && manners_.swallowsReadErrors ? disk_.SetSize(*target_, done) : code;
        }
        info.totalTransferred += size;
        if (progress && progress(info) == CopyAnswer::cancel) {
            return error::requestAborted;
        }
    }
    return error::success;
}

SystemError InMemoryCopy::CopyChunk(const std::string& to, std::uint64_t done, std::uint64_t size) {
    if (const SystemError code = faults_.Enter("Copy.Write", to, true); code != error::success) {
        return code;
    }
    if (source_->readError != error::success && done + size > source_->readableBytes) {
        return source_->readError;
    }
    if (done >= source_->content.size()) {
        return error::success;
    }
    const std::string_view content = source_->content;
    return disk_.Write(*target_, done, content.substr(static_cast<std::size_t>(done), static_cast<std::size_t>(size)));
}

SystemError InMemoryCopy::Finish(const std::string& to) {
    if (const SystemError code = faults_.Enter("Copy.Finish", to, true); code != error::success) {
        return code;
    }
    disk_.SetWriteTime(*target_, source_->WriteTime());
    target_->attributes = TargetAttributes(*target_->volume);
    return error::success;
}

}  // namespace marlok::test
