#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Registry.h"
#include "tests/machine/FaultPlan.h"

namespace marlok::test {

/// One key of the in-memory registry.
struct RegistryNode {
    std::string name;
    std::vector<std::pair<std::string, RegistryValue>> values;  ///< in the order in which they were first written
    std::map<std::u16string, std::shared_ptr<RegistryNode>> keys;
    bool denied = false;    ///< cannot be opened
    bool readOnly = false;  ///< can be opened for reading alone
    bool deleted = false;   ///< somebody deleted it while it was open

    /// The value called `wanted`; null when there is none.
    [[nodiscard]] RegistryValue* Find(const std::string& wanted);
    void Set(const std::string& valueName, const RegistryValue& value);
    bool Remove(const std::string& valueName);
};

/// The registry below HKEY_CURRENT_USER, in memory.
class InMemoryRegistry : public Registry {
 public:
    explicit InMemoryRegistry(FaultPlan& faults) : faults_(faults), root_(std::make_shared<RegistryNode>()) {}

    [[nodiscard]] SystemError OpenKey(const std::string& path, std::uint32_t access,
                                      std::unique_ptr<RegistryKey>& key) override;
    [[nodiscard]] SystemError CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) override;

    // What follows is for tests: no steps, no faults. Keys are created where missing.

    /// Stores a string with its terminating zero.
    void SetString(const std::string& key, const std::string& name, const std::string& text);

    /// Stores `data` as it stands.
    void SetRaw(const std::string& key, const std::string& name, std::uint32_t type, const std::string& data);

    void Deny(const std::string& key) { Make(key)->denied = true; }
    void MakeReadOnly(const std::string& key) { Make(key)->readOnly = true; }
    void Allow(const std::string& key);

    [[nodiscard]] bool KeyExists(const std::string& key) const { return Find(key) != nullptr; }

    /// The values of a key by name, without terminating zeros; empty when there is no such key.
    [[nodiscard]] std::map<std::string, std::string> Values(const std::string& key) const;

    /// One value as it is stored; null when there is none. Valid until the next change of its key.
    [[nodiscard]] const RegistryValue* Value(const std::string& key, const std::string& name) const;

    /// Names of the keys directly below `key`.
    [[nodiscard]] std::vector<std::string> Keys(const std::string& key) const;

    [[nodiscard]] int OpenKeys() const { return openKeys_; }

 private:
    [[nodiscard]] std::shared_ptr<RegistryNode> Find(const std::string& path) const;
    std::shared_ptr<RegistryNode> Make(const std::string& path);

    FaultPlan& faults_;
    std::shared_ptr<RegistryNode> root_;
    int openKeys_ = 0;
};

}  // namespace marlok::test
