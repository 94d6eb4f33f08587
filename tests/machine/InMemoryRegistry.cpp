#include "tests/machine/InMemoryRegistry.h"

#include <iterator>

#include "tests/machine/InMemoryRegistryKey.h"
#include "tests/machine/PathParts.h"

namespace marlok::test {

const RegistryValue* RegistryValues::Find(const std::string& name) const {
    const auto place = places_.find(NameKey(name));
    return place == places_.end() ? nullptr : &inOrder_.at(place->second).value;
}

const RegistryValues::Named* RegistryValues::At(std::size_t index) const {
    if (index >= inOrder_.size()) {
        return nullptr;
    }
    const bool fromCursor = cursorPlace_ != 0 && cursorIndex_ <= index;
    auto at = fromCursor ? inOrder_.find(cursorPlace_) : inOrder_.begin();
    std::advance(at, static_cast<std::ptrdiff_t>(index - (fromCursor ? cursorIndex_ : 0)));
    cursorIndex_ = index;
    cursorPlace_ = at->first;
    return &at->second;
}

void RegistryValues::Set(const std::string& name, const RegistryValue& value) {
    std::uint64_t& place = places_[NameKey(name)];
    if (place == 0) {
        place = ++last_;
        inOrder_[place].name = name;
    }
    inOrder_[place].value = value;
}

bool RegistryValues::Remove(const std::string& name) {
    const auto place = places_.find(NameKey(name));
    if (place == places_.end()) {
        return false;
    }
    inOrder_.erase(place->second);
    places_.erase(place);
    cursorPlace_ = 0;
    return true;
}

SystemError InMemoryRegistry::OpenKey(const std::string& path, std::uint32_t access,
                                      std::unique_ptr<RegistryKey>& key) {
    key.reset();
    if (const SystemError code = faults_.Enter("OpenKey", path, false); code != error::success) {
        return code;
    }
    if (path.find('\0') != std::string::npos) {
        return error::invalidName;
    }
    const std::shared_ptr<RegistryNode> node = Find(path);
    if (node == nullptr) {
        return error::fileNotFound;
    }
    const bool writes = (access & ~registryaccess::read) != 0;
    if (node->denied || (node->readOnly && writes)) {
        return error::accessDenied;
    }
    key = std::make_unique<InMemoryRegistryKey>(faults_, openKeys_, path, node, writes);
    return error::success;
}

SystemError InMemoryRegistry::CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) {
    key.reset();
    if (const SystemError code = faults_.Enter("CreateKey", path, true); code != error::success) {
        return code;
    }
    if (path.find('\0') != std::string::npos) {
        return error::invalidName;
    }
    std::shared_ptr<RegistryNode> node = root_;
    for (const std::string& name : KeyNames(path)) {
        const auto child = node->keys.find(NameKey(name));
        if (child == node->keys.end() && (node->denied || node->readOnly)) {
            return error::accessDenied;
        }
        if (child != node->keys.end()) {
            node = child->second;
        } else {
            auto created = std::make_shared<RegistryNode>();
            created->name = name;
            node->keys[NameKey(name)] = created;
            node = created;
        }
    }
    if (node->denied || node->readOnly) {
        return error::accessDenied;
    }
    key = std::make_unique<InMemoryRegistryKey>(faults_, openKeys_, path, node, true);
    return error::success;
}

std::shared_ptr<RegistryNode> InMemoryRegistry::Find(const std::string& path) const {
    std::shared_ptr<RegistryNode> node = root_;
    for (const std::string& name : KeyNames(path)) {
        const auto child = node->keys.find(NameKey(name));
        if (child == node->keys.end()) {
            return nullptr;
        }
        node = child->second;
    }
    return node;
}

std::shared_ptr<RegistryNode> InMemoryRegistry::Make(const std::string& path) {
    std::shared_ptr<RegistryNode> node = root_;
    for (const std::string& name : KeyNames(path)) {
        std::shared_ptr<RegistryNode>& child = node->keys[NameKey(name)];
        if (child == nullptr) {
            child = std::make_shared<RegistryNode>();
            child->name = name;
        }
        node = child;
    }
    return node;
}

void InMemoryRegistry::SetString(const std::string& key, const std::string& name, const std::string& text) {
    SetRaw(key, name, registrytype::string, text + '\0');
}

void InMemoryRegistry::SetRaw(const std::string& key, const std::string& name, std::uint32_t type,
                              const std::string& data) {
    Make(key)->values.Set(name, {type, data});
}

void InMemoryRegistry::Allow(const std::string& key) {
    const std::shared_ptr<RegistryNode> node = Make(key);
    node->denied = false;
    node->readOnly = false;
}

std::map<std::string, std::string> InMemoryRegistry::Values(const std::string& key) const {
    std::map<std::string, std::string> values;
    if (const std::shared_ptr<RegistryNode> node = Find(key)) {
        for (const auto& [place, named] : node->values.InOrder()) {
            const auto& [name, value] = named;
            const bool terminated =
                value.type == registrytype::string && !value.data.empty() && value.data.back() == '\0';
            values[name] = terminated ? value.data.substr(0, value.data.size() - 1) : value.data;
        }
    }
    return values;
}

const RegistryValue* InMemoryRegistry::Value(const std::string& key, const std::string& name) const {
    const std::shared_ptr<RegistryNode> node = Find(key);
    return node == nullptr ? nullptr : node->values.Find(name);
}

std::vector<std::string> InMemoryRegistry::Keys(const std::string& key) const {
    std::vector<std::string> names;
    if (const std::shared_ptr<RegistryNode> node = Find(key)) {
        for (const auto& [folded, child] : node->keys) {
            names.push_back(child->name);
        }
    }
    return names;
}

}  // namespace marlok::test
