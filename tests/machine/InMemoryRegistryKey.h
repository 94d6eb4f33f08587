#pragma once

#include <memory>
#include <string>

#include "tests/machine/InMemoryRegistry.h"

namespace marlok::test {

/// An open key of the in-memory registry.
class InMemoryRegistryKey : public RegistryKey {
 public:
    /// Counts itself in `openKeys` as long as it lives. `path` is what the journal calls it.
    InMemoryRegistryKey(FaultPlan& faults, int& openKeys, std::string path, std::shared_ptr<RegistryNode> node,
                        bool writable);
    InMemoryRegistryKey(const InMemoryRegistryKey&) = delete;
    InMemoryRegistryKey& operator=(const InMemoryRegistryKey&) = delete;
    ~InMemoryRegistryKey() override;

    [[nodiscard]] SystemError QueryValue(const std::string& name, RegistryValue& value) override;
    [[nodiscard]] SystemError SetValue(const std::string& name, const RegistryValue& value) override;
    [[nodiscard]] SystemError DeleteValue(const std::string& name) override;
    [[nodiscard]] SystemError DeleteKey(const std::string& path) override;
    [[nodiscard]] SystemError EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) override;

 private:
    [[nodiscard]] SystemError Enter(const std::string& operation, const std::string& name, bool mutates);
    [[nodiscard]] SystemError DeleteBelow(const std::vector<std::string>& names);

    FaultPlan& faults_;
    int& openKeys_;
    std::string path_;
    std::shared_ptr<RegistryNode> node_;
    bool writable_;
};

/// The names that a key path is made of. Empty ones are dropped.
[[nodiscard]] std::vector<std::string> KeyNames(const std::string& path);

}  // namespace marlok::test
