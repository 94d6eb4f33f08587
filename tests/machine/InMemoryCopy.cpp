#include "tests/machine/InMemoryCopy.h"

#include "tests/machine/InMemoryFile.h"
#include "tests/machine/InMemoryFiles.h"

namespace marlok::test {
namespace {

constexpr std::uint32_t copied = attribute::readOnly | attribute::hidden | attribute::system;

/// Counts a handle on a node while it lives.
class Held {
 public:
    explicit Held(int& count) : count_(count) { ++count_; }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { --count_; }

 private:
    int& count_;
};

}  // namespace

SystemError InMemoryCopy::Run(const std::string& from, const std::string& to, std::uint32_t flags,
                              const CopyProgressRoutine& progress) {
    if (const SystemError code = OpenSource(from); code != error::success) {
        return code;
    }
    const Held reading(source_->holders);
    if (const SystemError code = OpenTarget(to, flags); code != error::success) {
        return code;
    }
    SystemError code = error::success;
    {
        const Held writing(target_->writers);
        code = Fill(to, progress);
        code = code == error::success ? Finish(to) : code;
    }
    const bool stays = (flags & copyflag::restartable) != 0 && code != error::requestAborted;
    if (code != error::success && !stays) {
        disk_.Remove(target_);
    }
    return code;
}

SystemError InMemoryCopy::OpenSource(const std::string& from) {
    if (const SystemError code = faults_.Enter("Copy", from, false); code != error::success) {
        return code;
    }
    return OpenNode(disk_, from, OpenMode::read, source_);
}

SystemError InMemoryCopy::CheckTarget(const Node& node, std::uint32_t flags) const {
    if ((flags & copyflag::failIfExists) != 0) {
        return error::fileExists;
    }
    if (node.volume->options.readOnly) {
        return error::writeProtected;
    }
    if (node.IsFolder() || node.denied || node.Has(copied)) {
        return error::accessDenied;
    }
    return node.locked || node.IsOpen() ? error::sharingViolation : error::success;
}

SystemError InMemoryCopy::OpenTarget(const std::string& to, std::uint32_t flags) {
    if (const SystemError code = faults_.Enter("Copy.Create", to, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(to, InMemoryDisk::Follow::yes);
    if (place.node == nullptr && (place.error != error::fileNotFound || place.trailingSeparator)) {
        return place.trailingSeparator ? error::invalidName : place.error;
    }
    const DiskVolume& volume = place.node != nullptr ? *place.node->volume : *place.parent->volume;
    if (const SystemError code = CheckEncryption(volume, flags); code != error::success) {
        return code;
    }
    const std::uint32_t attributes = (source_->attributes & copied) | attribute::archive;
    if (place.node == nullptr) {
        const SystemError code = CheckCreation(*place.parent);
        target_ = code == error::success ? disk_.Add(place, attributes) : nullptr;
        return code;
    }
    const SystemError code = CheckTarget(*place.node, flags);
    if (code == error::success) {
        target_ = place.node;
        disk_.Empty(*target_);
        target_->attributes = attributes;
    }
    return code;
}

SystemError InMemoryCopy::CheckEncryption(const DiskVolume& to, std::uint32_t flags) const {
    const bool refused = source_->Has(attribute::encrypted) && to.options.fileSystem != "NTFS" &&
                         (flags & copyflag::allowDecryptedDestination) == 0;
    return refused ? error::encryptionFailed : error::success;
}

SystemError InMemoryCopy::Fill(const std::string& to, const CopyProgressRoutine& progress) {
    // The content as it was when the copy began: what somebody appends meanwhile is not waited for.
    const std::string content = source_->content;
    CopyProgressInfo info{content.size(), 0, CopyProgressInfo::Reason::streamSwitch};
    if (progress && progress(info) == CopyAnswer::cancel) {
        return error::requestAborted;
    }
    info.reason = CopyProgressInfo::Reason::chunkFinished;
    for (std::size_t done = 0; done < content.size();) {
        if (const SystemError code = faults_.Enter("Copy.Write", to, true); code != error::success) {
            return code;
        }
        const std::string_view chunk = std::string_view(content).substr(done, manners_.chunk);
        if (source_->readError != error::success && done + chunk.size() > source_->readableBytes) {
            return manners_.swallowsReadErrors ? error::success : source_->readError;
        }
        if (const SystemError code = disk_.Write(*target_, done, chunk); code != error::success) {
            return code;
        }
        done += chunk.size();
        info.totalTransferred = done;
        if (progress && progress(info) == CopyAnswer::cancel) {
            return error::requestAborted;
        }
    }
    return error::success;
}

SystemError InMemoryCopy::Finish(const std::string& to) {
    if (const SystemError code = faults_.Enter("Copy.Finish", to, true); code != error::success) {
        return code;
    }
    disk_.SetWriteTime(*target_, source_->lastWriteTime);
    target_->attributes = (source_->attributes & copied) | attribute::archive;
    return error::success;
}

}  // namespace marlok::test
