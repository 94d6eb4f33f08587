#include "tests/machine/InMemoryRegistryKey.h"

#include <utility>

#include "tests/machine/PathParts.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

constexpr SystemError keyDeleted = 1018;

}  // namespace

std::vector<std::string> KeyNames(const std::string& path) {
    std::vector<std::string> names;
    for (const std::string_view name : text::Split(path, "\\")) {
        if (!name.empty()) {
            names.emplace_back(name);
        }
    }
    return names;
}

InMemoryRegistryKey::InMemoryRegistryKey(FaultPlan& faults, int& openKeys, std::string path,
                                         std::shared_ptr<RegistryNode> node, bool writable)
    : faults_(faults), openKeys_(openKeys), path_(std::move(path)), node_(std::move(node)), writable_(writable) {
    ++openKeys_;
}

InMemoryRegistryKey::~InMemoryRegistryKey() {
    --openKeys_;
}

SystemError InMemoryRegistryKey::Enter(const std::string& operation, const std::string& name, bool mutates) {
    if (const SystemError code = faults_.Enter(operation, path_ + "\\" + name, mutates); code != error::success) {
        return code;
    }
    if (name.find('\0') != std::string::npos) {
        return error::invalidName;
    }
    if (node_->deleted) {
        return keyDeleted;
    }
    // Deleting a key asks for rights on the key that goes, not for those that this one was opened with.
    return mutates && !writable_ && operation != "DeleteKey" ? error::accessDenied : error::success;
}

SystemError InMemoryRegistryKey::QueryValue(const std::string& name, RegistryValue& value) {
    if (const SystemError code = Enter("QueryValue", name, false); code != error::success) {
        return code;
    }
    const RegistryValue* found = node_->values.Find(name);
    if (found == nullptr) {
        return error::fileNotFound;
    }
    value = *found;
    return error::success;
}

SystemError InMemoryRegistryKey::SetValue(const std::string& name, const RegistryValue& value) {
    const SystemError code = Enter("SetValue", name, true);
    if (code == error::success) {
        node_->values.Set(name, value);
    }
    return code;
}

SystemError InMemoryRegistryKey::DeleteValue(const std::string& name) {
    if (const SystemError code = Enter("DeleteValue", name, true); code != error::success) {
        return code;
    }
    return node_->values.Remove(name) ? error::success : error::fileNotFound;
}

SystemError InMemoryRegistryKey::DeleteKey(const std::string& path) {
    if (const SystemError code = Enter("DeleteKey", path, true); code != error::success) {
        return code;
    }
    const std::vector<std::string> names = KeyNames(path);
    return names.empty() ? error::invalidParameter : DeleteBelow(names);
}

SystemError InMemoryRegistryKey::DeleteBelow(const std::vector<std::string>& names) {
    RegistryNode* parent = node_.get();
    for (std::size_t i = 0;; ++i) {
        const auto found = parent->keys.find(NameKey(names[i]));
        if (found == parent->keys.end()) {
            return error::fileNotFound;
        }
        RegistryNode& node = *found->second;
        if (i + 1 < names.size()) {
            parent = &node;
            continue;
        }
        if (!node.keys.empty() || node.denied || node.readOnly) {
            return error::accessDenied;
        }
        node.deleted = true;
        parent->keys.erase(found);
        return error::success;
    }
}

SystemError InMemoryRegistryKey::EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) {
    if (const SystemError code = Enter("EnumValue", std::to_string(index), false); code != error::success) {
        return code;
    }
    const RegistryValues::Named* found = node_->values.At(index);
    if (found == nullptr) {
        return error::noMoreItems;
    }
    name = found->name;
    value = found->value;
    return error::success;
}

}  // namespace marlok::test
