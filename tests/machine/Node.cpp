#include "tests/machine/Node.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "tests/machine/PathParts.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

/// Tags of what reads like any file: deduplicated, compressed by the system, moved to slow storage.
constexpr std::array<std::uint32_t, 3> handledTags = {0x80000013, 0x80000017, 0xC0000004};

bool IsCloudTag(std::uint32_t tag) {
    constexpr std::uint32_t provider = 0xF000;
    return (tag & ~provider) == reparse::cloudFile;
}

}  // namespace

bool Node::HasUnknownTag() const {
    if (!Has(attribute::reparsePoint) || IsLink() || IsCloudTag(reparseTag)) {
        return false;
    }
    return std::find(handledTags.begin(), handledTags.end(), reparseTag) == handledTags.end();
}

std::u16string Node::KeyOf(std::string_view wanted) const {
    return caseSensitive ? text::ToUtf16(wanted) : NameKey(wanted, volume->options.upcase);
}

NodePtr Node::Find(std::string_view wanted) const {
    if (const auto found = children.find(KeyOf(wanted)); found != children.end()) {
        return found->second;
    }
    if (const auto found = aliases.find(NameKey(wanted, volume->options.upcase)); found != aliases.end()) {
        return children.at(KeyOf(found->second->name));
    }
    return nullptr;
}

DirectoryEntry Node::Entry() const {
    DirectoryEntry entry;
    entry.name = name;
    entry.alternateName = alternateName;
    entry.attributes = attributes == 0 ? attribute::normal : attributes;
    entry.reparseTag = reparseTag;
    entry.creationTime = CreationTime();
    entry.lastWriteTime = WriteTime();
    entry.size = Size();
    return entry;
}

DirectoryEntry Node::ListedEntry() const {
    DirectoryEntry entry = Entry();
    if (listed) {
        entry.size = listed->size;
        entry.lastWriteTime = volume->Shown(listed->written);
        entry.attributes = listed->attributes == 0 ? attribute::normal : listed->attributes;
    }
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

std::string Node::Text() const {
    constexpr std::uint64_t most = std::uint64_t{64} << 20;
    if (zeros > most) {
        throw std::length_error(Path() + " is too large for a test to look at");
    }
    return content + std::string(static_cast<std::size_t>(zeros), '\0');
}

}  // namespace marlok::test
