#pragma once

#include "platform/Registry.h"

namespace marlok::test {

/// Hands every call to another registry; a test overrides the one it wants to be different.
class ForwardingRegistry : public Registry {
 public:
    explicit ForwardingRegistry(Registry& inner) : inner_(inner) {}

    [[nodiscard]] SystemError OpenKey(const std::string& path, std::uint32_t access,
                                      std::unique_ptr<RegistryKey>& key) override {
        return inner_.OpenKey(path, access, key);
    }
    [[nodiscard]] SystemError CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) override {
        return inner_.CreateKey(path, key);
    }

 private:
    Registry& inner_;
};

}  // namespace marlok::test
