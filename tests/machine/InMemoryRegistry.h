#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Registry.h"
#include "tests/machine/FaultPlan.h"

namespace marlok::test {

/// The values of one key, in the order in which they were first written.
class RegistryValues {
 public:
    struct Named {
        std::string name;
        RegistryValue value;
    };

    /// The value called `name`; null when there is none.
    [[nodiscard]] const RegistryValue* Find(const std::string& name) const;

    /// The value at `index`; null behind the last one. Counting up or always asking for 0 is cheap.
    [[nodiscard]] const Named* At(std::size_t index) const;

    void Set(const std::string& name, const RegistryValue& value);

    /// False when there is none.
    bool Remove(const std::string& name);

    [[nodiscard]] const std::map<std::uint64_t, Named>& InOrder() const { return inOrder_; }

 private:
    std::map<std::uint64_t, Named> inOrder_;
    std::map<std::u16string, std::uint64_t> places_;  ///< the key in `inOrder_` by NameKey
    std::uint64_t last_ = 0;
    mutable std::size_t cursorIndex_ = 0;  ///< where At was asked last, so that enumerations need not begin anew
    mutable std::uint64_t cursorPlace_ = 0;
};

/// One key of the in-memory registry.
struct RegistryNode {
    std::string name;
    RegistryValues values;
    std::map<std::u16string, std::shared_ptr<RegistryNode>> keys;
    bool denied = false;    ///< cannot be opened
    bool readOnly = false;  ///< can be opened for reading alone
    bool deleted = false;   ///< somebody deleted it while it was open
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
