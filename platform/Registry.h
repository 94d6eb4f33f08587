#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/SystemError.h"

namespace marlok {

/// Value types, as the registry numbers them.
namespace registrytype {
inline constexpr std::uint32_t string = 1;  ///< REG_SZ
inline constexpr std::uint32_t expandString = 2;
inline constexpr std::uint32_t binary = 3;
inline constexpr std::uint32_t dword = 4;
inline constexpr std::uint32_t multiString = 7;
}  // namespace registrytype

/// Access rights asked for when a key is opened.
namespace registryaccess {
inline constexpr std::uint32_t read = 0x20019;
inline constexpr std::uint32_t all = 0xF003F;
}  // namespace registryaccess

struct RegistryValue {
    std::uint32_t type = registrytype::string;
    /// For the three string types the stored characters in UTF-8, with the terminating zero exactly when it is stored;
    /// for every other type the stored bytes.
    std::string data;
};

/// An open key; closed by its destructor.
class RegistryKey {
 public:
    virtual ~RegistryKey() = default;

    /// Reads the value called `name` ("" is the key's unnamed value); `error::fileNotFound` when there is none.
    [[nodiscard]] virtual SystemError QueryValue(const std::string& name, RegistryValue& value) = 0;

    /// Writes `value.data` as it stands: the caller includes the terminating zero of a string.
    [[nodiscard]] virtual SystemError SetValue(const std::string& name, const RegistryValue& value) = 0;

    [[nodiscard]] virtual SystemError DeleteValue(const std::string& name) = 0;

    /// Deletes the key `path` below this one; `error::accessDenied` while it still has keys below it.
    [[nodiscard]] virtual SystemError DeleteKey(const std::string& path) = 0;

    /// The value at `index` (from 0); `error::noMoreItems` behind the last one. The order is the system's.
    [[nodiscard]] virtual SystemError EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) = 0;
};

/// The registry below HKEY_CURRENT_USER. Key paths are separated by "\" and compared without regard to case.
class Registry {
 public:
    virtual ~Registry() = default;

    /// Opens an existing key; `error::fileNotFound` or `error::accessDenied` otherwise.
    [[nodiscard]] virtual SystemError OpenKey(const std::string& path, std::uint32_t access,
                                              std::unique_ptr<RegistryKey>& key) = 0;

    /// Opens a key with all access, creating it and the keys above it where missing.
    [[nodiscard]] virtual SystemError CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) = 0;
};

}  // namespace marlok
