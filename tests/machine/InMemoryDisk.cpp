#include "tests/machine/InMemoryDisk.h"

#include <algorithm>
#include <utility>

namespace marlok::test {
namespace {

constexpr int mostLinks = 63;  // as many as the kernel follows on one path
constexpr SystemError cannotResolve = 1921;

FileTime Rounded(FileTime time, const DiskVolume& volume) {
    const std::uint64_t granularity = std::max<std::uint64_t>(volume.options.timeGranularity, 1);
    return time - time % granularity;
}

Place Missing(SystemError code) {
    Place place;
    place.error = code;
    return place;
}

}  // namespace

NodePtr Node::Find(std::string_view wanted) const {
    const std::u16string key = NameKey(wanted);
    if (const auto found = children.find(key); found != children.end()) {
        return found->second;
    }
    if (const auto found = aliases.find(key); found != aliases.end()) {
        return children.at(NameKey(found->second->name));
    }
    return nullptr;
}

DirectoryEntry Node::Entry() const {
    DirectoryEntry entry;
    entry.name = name;
    entry.alternateName = alternateName;
    entry.attributes = attributes == 0 ? attribute::normal : attributes;
    entry.reparseTag = reparseTag;
    entry.creationTime = creationTime;
    entry.lastWriteTime = lastWriteTime;
    entry.size = content.size();
    return entry;
}

std::string Node::Path() const {
    if (parent == nullptr) {
        return volume->root + "\\";
    }
    std::vector<const Node*> chain;
    for (const Node* node = this; node->parent != nullptr; node = node->parent) {
        chain.push_back(node);
    }
    std::string path = volume->root;
    for (auto node = chain.rbegin(); node != chain.rend(); ++node) {
        path += "\\" + (*node)->name;
    }
    return path;
}

InMemoryDisk::~InMemoryDisk() {
    // Folders may be nested thousands deep: taken apart one by one, not by destructors calling each other.
    std::vector<NodePtr> pending;
    for (const auto& [key, volume] : volumes_) {
        pending.push_back(std::move(volume->folder));
    }
    while (!pending.empty()) {
        const NodePtr node = std::move(pending.back());
        pending.pop_back();
        for (auto& [key, child] : node->children) {
            pending.push_back(std::move(child));
        }
        node->children.clear();
    }
}

DiskVolume& InMemoryDisk::AddVolume(const std::string& root, const DriveOptions& options) {
    std::unique_ptr<DiskVolume>& volume = volumes_[NameKey(root)];
    if (volume == nullptr) {
        volume = std::make_unique<DiskVolume>();
        volume->root = root;
        volume->serial = 0x1000 + static_cast<std::uint32_t>(volumes_.size());
        volume->folder = std::make_shared<Node>();
        volume->folder->attributes = attribute::directory | attribute::hidden | attribute::system;
        volume->folder->volume = volume.get();
        volume->folder->index = ++lastIndex_;
        volume->folder->creationTime = volume->folder->lastWriteTime = clock_.NowAsFileTime();
    }
    volume->options = options;
    volume->serial = options.serial != 0 ? options.serial : volume->serial;
    return *volume;
}

void InMemoryDisk::RemoveVolume(const std::string& root) {
    volumes_.erase(NameKey(root));
}

DiskVolume* InMemoryDisk::FindVolume(const std::string& root) const {
    const auto found = volumes_.find(NameKey(root));
    return found == volumes_.end() ? nullptr : found->second.get();
}

void InMemoryDisk::Substitute(const std::string& drive, const std::string& folder) {
    substitutes_[NameKey(drive)] = folder;
}

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
        if (!at.node->IsFolder()) {
            return Missing(error::pathNotFound);
        }
        at.parent = std::move(at.node);
        at.node = at.parent->Find(name);
        at.name = name;
    }
    if (at.node == nullptr) {
        at.error = error::fileNotFound;
    } else if (follow == Follow::yes && at.node->IsLink()) {
        return FollowLink(*at.node, linksLeft);
    }
    return at;
}

Place InMemoryDisk::FollowLink(const Node& link, int linksLeft) const {
    if (linksLeft == 0) {
        return Missing(cannotResolve);
    }
    const PathParts target = Unsubstituted(ParsePath(link.linkTarget, link.parent->Path(), {}));
    return target.error == error::success ? Walk(target, Follow::yes, linksLeft - 1) : Missing(target.error);
}

void InMemoryDisk::Touch(Node* folder) const {
    SetWriteTime(*folder, clock_.NowAsFileTime());
}

NodePtr InMemoryDisk::Add(const Place& place, std::uint32_t attributes) {
    auto node = std::make_shared<Node>();
    node->name = place.name;
    node->attributes = attributes;
    node->index = node->sequence = ++lastIndex_;
    node->parent = place.parent.get();
    node->volume = place.parent->volume;
    node->creationTime = node->lastWriteTime = Rounded(clock_.NowAsFileTime(), *node->volume);
    place.parent->children[NameKey(node->name)] = node;
    Touch(node->parent);
    return node;
}

void InMemoryDisk::Remove(const NodePtr& node) {
    Node* folder = node->parent;
    if (folder == nullptr) {
        return;
    }
    node->volume->used -= node->content.size();
    SetAlias(*node, "");
    folder->children.erase(NameKey(node->name));
    node->parent = nullptr;
    Touch(folder);
}

void InMemoryDisk::Rename(const NodePtr& node, const NodePtr& parent, const std::string& name) {
    Node* before = node->parent;
    SetAlias(*node, "");
    before->children.erase(NameKey(node->name));
    node->name = name;
    node->parent = parent.get();
    node->sequence = ++lastIndex_;
    parent->children[NameKey(name)] = node;
    Touch(before);
    Touch(parent.get());
}

SystemError InMemoryDisk::Write(Node& node, std::size_t position, std::string_view bytes) {
    DiskVolume& volume = *node.volume;
    // What has been removed while it was open takes no room that anybody counts.
    const bool counted = node.parent != nullptr;
    const std::size_t end = std::max(node.content.size(), position + bytes.size());
    std::size_t growth = end - node.content.size();
    SystemError code = error::success;
    if (counted && volume.options.capacityBytes != 0 && volume.used + growth > volume.options.capacityBytes) {
        const std::uint64_t room = volume.options.capacityBytes - std::min(volume.used, volume.options.capacityBytes);
        bytes = bytes.substr(0, bytes.size() - std::min<std::size_t>(bytes.size(), growth - room));
        growth = static_cast<std::size_t>(room);
        code = error::diskFull;
    }
    node.content.resize(node.content.size() + growth);
    std::copy(bytes.begin(), bytes.end(), node.content.begin() + static_cast<std::ptrdiff_t>(position));
    volume.used += counted ? growth : 0;
    SetWriteTime(node, clock_.NowAsFileTime());
    return code;
}

void InMemoryDisk::Empty(Node& node) {
    node.volume->used -= node.parent != nullptr ? node.content.size() : 0;
    node.content.clear();
    SetWriteTime(node, clock_.NowAsFileTime());
}

void InMemoryDisk::SetWriteTime(Node& node, FileTime time) const {
    node.lastWriteTime = Rounded(time, *node.volume);
}

void InMemoryDisk::SetCreationTime(Node& node, FileTime time) const {
    node.creationTime = Rounded(time, *node.volume);
}

void InMemoryDisk::SetAlias(Node& node, const std::string& alias) const {
    if (node.parent != nullptr && !node.alternateName.empty()) {
        node.parent->aliases.erase(NameKey(node.alternateName));
    }
    node.alternateName = alias;
    if (node.parent != nullptr && !alias.empty()) {
        node.parent->aliases[NameKey(alias)] = &node;
    }
}

std::vector<NodePtr> InMemoryDisk::Below(const Node& folder) {
    std::vector<NodePtr> nodes;
    std::vector<NodePtr> pending;
    const auto push = [&pending](const Node& node) {
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child) {
            pending.push_back(child->second);
        }
    };
    push(folder);
    while (!pending.empty()) {
        nodes.push_back(std::move(pending.back()));
        pending.pop_back();
        push(*nodes.back());
    }
    return nodes;
}

}  // namespace marlok::test
