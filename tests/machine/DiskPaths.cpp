#include "tests/machine/InMemoryDisk.h"

#include <utility>

namespace marlok::test {
namespace {

constexpr int mostLinks = 63;  // as many as the kernel follows on one path

Place Missing(SystemError code) {
    Place place;
    place.error = code;
    return place;
}

/// What comes of the kernel's refusal to go through a folder.
SystemError CheckPassage(const Node& node) {
    if (node.deletePending) {
        return error::accessDenied;
    }
    if (node.HasUnknownTag()) {
        return error::cannotAccessFile;
    }
    return node.IsFolder() ? error::success : error::pathNotFound;
}

}  // namespace

PathParts InMemoryDisk::Parse(const std::string& path, bool wildcards) const {
    return Unsubstituted(ParsePath(path, currentFolder, {wildcards, !IsPlainPath(path)}));
}

PathParts InMemoryDisk::ParseUsual(const std::string& path, bool wildcards) const {
    return Unsubstituted(ParsePath(path, currentFolder, {wildcards, true}));
}

PathParts InMemoryDisk::Unsubstituted(PathParts parts) const {
    const auto found = substitutes_.find(NameKey(parts.root));
    if (found == substitutes_.end()) {
        return parts;
    }
    PathParts target = ParsePath(found->second, "", {});
    target.names.insert(target.names.end(), parts.names.begin(), parts.names.end());
    target.trailingSeparator = parts.trailingSeparator;
    return target;
}

Place InMemoryDisk::Locate(const std::string& path, Follow follow) const {
    return Locate(Parse(path), follow);
}

Place InMemoryDisk::Locate(const PathParts& parts, Follow follow) const {
    if (parts.error != error::success) {
        return Missing(parts.error);
    }
    Place place = Walk(parts, follow, mostLinks);
    place.trailingSeparator = parts.trailingSeparator && !parts.names.empty();
    if (place.trailingSeparator && place.node != nullptr && !place.node->IsFolder()) {
        return Missing(error::invalidName);
    }
    return place;
}

SystemError InMemoryDisk::VolumeOf(const std::string& path, const DiskVolume*& volume) const {
    PathParts parts = Parse(path);
    if (parts.error != error::success) {
        return parts.error;
    }
    for (;; parts.names.pop_back()) {
        const Place place = Walk(parts, Follow::yes, mostLinks);
        if (place.node != nullptr) {
            volume = place.node->volume;
            return error::success;
        }
        if (parts.names.empty()) {
            return place.error;
        }
    }
}

Place InMemoryDisk::Walk(const PathParts& parts, Follow follow, int linksLeft) const {
    const DiskVolume* volume = FindVolume(parts.root);
    if (volume == nullptr) {
        return Missing(parts.root[0] == '\\' ? error::badNetworkPath : error::pathNotFound);
    }
    if (volume->failure != error::success) {
        return Missing(volume->failure);
    }
    Place at;
    at.node = volume->folder;
    for (const std::string& name : parts.names) {
        if (at.node == nullptr) {
            return Missing(error::pathNotFound);
        }
        if (at.node->IsLink()) {
            at = FollowLink(*at.node, linksLeft);
            if (at.node == nullptr) {
                return Missing(at.error == error::fileNotFound ? error::pathNotFound : at.error);
            }
        }
        if (const SystemError code = CheckPassage(*at.node); code != error::success) {
            return Missing(code);
        }
        at.parent = std::move(at.node);
        Settle(*at.parent);
        at.node = at.parent->Find(name);
        at.name = name;
    }
    if (at.node == nullptr) {
        at.error = error::fileNotFound;
    } else if (at.node->deletePending) {
        at.node = nullptr;
        at.error = error::accessDenied;
    } else if (follow == Follow::yes && at.node->IsLink()) {
        return FollowLink(*at.node, linksLeft);
    }
    return at;
}

Place InMemoryDisk::FollowLink(const Node& link, int linksLeft) const {
    if (linksLeft == 0) {
        return Missing(error::cannotResolveName);
    }
    const PathParts target = Unsubstituted(ParsePath(link.linkTarget, link.parent->Path(), {}));
    return target.error == error::success ? Walk(target, Follow::yes, linksLeft - 1) : Missing(target.error);
}

}  // namespace marlok::test
