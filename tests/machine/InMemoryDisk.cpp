#include "tests/machine/InMemoryDisk.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tests/machine/ShortNames.h"

namespace marlok::test {

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
    const bool added = volume == nullptr;
    if (added) {
        volume = std::make_unique<DiskVolume>();
        volume->root = root;
        volume->clock = &clock_;
        volume->serial = 0x1000 + static_cast<std::uint32_t>(volumes_.size());
        volume->folder = std::make_shared<Node>();
        volume->folder->attributes = attribute::directory | attribute::hidden | attribute::system;
        volume->folder->volume = volume.get();
        volume->folder->index = ++lastIndex_;
    }
    volume->options = options;
    volume->serial = options.serial != 0 ? options.serial : volume->serial;
    if (added) {
        SetWriteTime(*volume->folder, clock_.NowAsFileTime());
        SetCreationTime(*volume->folder, clock_.NowAsFileTime());
    }
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
    SetWriteTime(*node, clock_.NowAsFileTime());
    SetCreationTime(*node, clock_.NowAsFileTime());
    const std::u16string key = node->parent->KeyOf(node->name);
    if (!node->IsFolder()) {
        node->created = node->volume->Remembered(*node->parent, key).value_or(node->created);
    }
    MakeAlias(*node);
    node->parent->children[key] = node;
    Touch(node->parent);
    return node;
}

void InMemoryDisk::MakeAlias(Node& node) const {
    if (node.volume->MakesShortNames()) {
        const Node& folder = *node.parent;
        SetAlias(node,
                 MakeShortName(node.name, [&folder](const std::string& name) { return folder.Find(name) != nullptr; }));
    }
}

void InMemoryDisk::Unlink(const NodePtr& node) const {
    Node* folder = node->parent;
    node->volume->Remember(*node);
    node->volume->used -= node->Size();
    SetAlias(*node, "");
    folder->children.erase(folder->KeyOf(node->name));
    folder->pendingChildren -= node->deletePending ? 1 : 0;
    node->parent = nullptr;
}

void InMemoryDisk::Remove(const NodePtr& node) {
    if (Node* folder = node->parent; folder != nullptr) {
        Unlink(node);
        Touch(folder);
    }
}

void InMemoryDisk::Delete(const NodePtr& node) {
    if (node->volume->FreesNames() || !IsOpen(*node)) {
        Remove(node);
        return;
    }
    node->deletePending = true;
    ++node->parent->pendingChildren;
}

void InMemoryDisk::Settle(Node& folder) const {
    if (folder.pendingChildren == 0) {
        return;
    }
    std::vector<NodePtr> gone;
    for (const auto& [key, child] : folder.children) {
        if (child->deletePending && !IsOpen(*child)) {
            gone.push_back(child);
        }
    }
    for (const NodePtr& node : gone) {
        Unlink(node);
    }
}

void InMemoryDisk::Rename(const NodePtr& node, const NodePtr& parent, const std::string& name) {
    Node* before = node->parent;
    node->volume->Remember(*node);
    SetAlias(*node, "");
    before->children.erase(before->KeyOf(node->name));
    node->name = name;
    node->parent = parent.get();
    node->sequence = ++lastIndex_;
    const std::u16string key = parent->KeyOf(name);
    if (!node->IsFolder()) {
        node->created = node->volume->Remembered(*parent, key).value_or(node->created);
    }
    MakeAlias(*node);
    parent->children[key] = node;
    Touch(before);
    Touch(parent.get());
}

SystemError InMemoryDisk::CheckRoom(const Node& node, std::uint64_t growth, std::uint64_t& room) {
    const DiskVolume& volume = *node.volume;
    const std::uint64_t largest = volume.LargestFile();
    // What has been removed while it was open takes no room that anybody counts.
    const bool counted = node.parent != nullptr && volume.options.capacityBytes != 0;
    const std::uint64_t capacity = counted ? volume.options.capacityBytes : ~std::uint64_t{0};
    const std::uint64_t used = counted ? volume.used : 0;
    room = std::min(largest - std::min(largest, node.Size()), capacity - std::min(used, capacity));
    return growth > room ? error::diskFull : error::success;
}

SystemError InMemoryDisk::Write(Node& node, std::uint64_t position, std::string_view bytes) {
    if (position > node.content.size()) {
        node.content = node.Text();  // writing far behind the content is for small files
        node.zeros = 0;
    }
    const std::uint64_t before = node.Size();
    const std::uint64_t end = std::max(before, position + bytes.size());
    std::uint64_t room = 0;
    const SystemError code = CheckRoom(node, end - before, room);
    if (code != error::success) {
        bytes = bytes.substr(0, bytes.size() - std::min<std::size_t>(bytes.size(), end - before - room));
    }
    const auto at = static_cast<std::size_t>(position);
    const std::size_t written = std::max(node.content.size(), bytes.empty() ? 0 : at + bytes.size());
    const std::uint64_t fromZeros = std::min<std::uint64_t>(node.zeros, written - node.content.size());
    node.content.resize(written);
    node.zeros -= fromZeros;
    std::copy(bytes.begin(), bytes.end(), node.content.begin() + static_cast<std::ptrdiff_t>(at));
    node.volume->used += node.parent != nullptr ? node.Size() - before : 0;
    node.attributes |= attribute::archive;
    SetWriteTime(node, clock_.NowAsFileTime());
    return code;
}

SystemError InMemoryDisk::SetSize(Node& node, std::uint64_t size) {
    const std::uint64_t before = node.Size();
    std::uint64_t room = 0;
    if (size > before) {
        if (const SystemError code = CheckRoom(node, size - before, room); code != error::success) {
            return code;
        }
    }
    node.content.resize(static_cast<std::size_t>(std::min<std::uint64_t>(node.content.size(), size)));
    node.zeros = size - node.content.size();
    node.volume->used += node.parent != nullptr ? size - before : 0;  // wraps around where it shrinks
    SetWriteTime(node, clock_.NowAsFileTime());
    return error::success;
}

void InMemoryDisk::Empty(Node& node) {
    static_cast<void>(SetSize(node, 0));  // there is always room for less
}

void InMemoryDisk::SetWriteTime(Node& node, FileTime time) const {
    node.written = node.volume->StoredWriteTime(time).value_or(node.written);
}

void InMemoryDisk::SetCreationTime(Node& node, FileTime time) const {
    node.created = node.volume->StoredCreationTime(time).value_or(node.created);
}

void InMemoryDisk::SetAlias(Node& node, const std::string& alias) const {
    const UpcaseTable upcase = node.volume->options.upcase;
    if (node.parent != nullptr && !node.alternateName.empty()) {
        node.parent->aliases.erase(NameKey(node.alternateName, upcase));
    }
    node.alternateName = alias;
    if (node.parent != nullptr && !alias.empty()) {
        node.parent->aliases[NameKey(alias, upcase)] = &node;
    }
}

bool InMemoryDisk::HoldsOpen(Node& folder) const {
    const std::vector<NodePtr> below = Below(folder);
    return std::any_of(below.begin(), below.end(), [this](const NodePtr& node) { return IsInTheWay(*node); });
}

std::vector<NodePtr> InMemoryDisk::Below(Node& folder) {
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
