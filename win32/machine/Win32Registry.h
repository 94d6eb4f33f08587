#pragma once

#include "platform/Registry.h"

namespace marlok::win32 {

/// The registry below HKEY_CURRENT_USER through the wide functions.
class Win32Registry : public Registry {
 public:
    SystemError OpenKey(const std::string& path, std::uint32_t access, std::unique_ptr<RegistryKey>& key) override;
    SystemError CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) override;
};

}  // namespace marlok::win32
