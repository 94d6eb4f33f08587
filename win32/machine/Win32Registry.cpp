#include "win32/machine/Win32Registry.h"

#include <windows.h>

#include <cstring>
#include <limits>
#include <vector>

#include "win32/machine/Handles.h"
#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

/// The longest value name the registry holds, and its terminating zero.
constexpr std::size_t nameLimit = 16383 + 1;

bool IsText(std::uint32_t type) {
    return type == registrytype::string || type == registrytype::expandString || type == registrytype::multiString;
}

SystemError ToCode(LSTATUS status) {
    return static_cast<SystemError>(status);
}

/// The stored bytes as the interface hands them out. Whatever wrote the value may have left half a character at its
/// end: it counts as one more with a high byte of 0, so that nothing stored is lost.
std::string FromStored(std::uint32_t type, const std::vector<BYTE>& stored, std::size_t size) {
    if (!IsText(type)) {
        return {stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(size)};
    }
    std::wstring units((size + 1) / sizeof(wchar_t), L'\0');
    std::memcpy(units.data(), stored.data(), size);
    return FromWide(units);
}

/// A name that holds a zero would be cut there and mean another value or key.
SystemError ToWideName(const std::string& name, std::wstring& wide) {
    if (HoldsZero(name)) {
        return error::invalidName;
    }
    wide = ToWide(name);
    return error::success;
}

class Win32RegistryKey : public RegistryKey {
 public:
    explicit Win32RegistryKey(RegKey key) : key_(std::move(key)) {}

    SystemError QueryValue(const std::string& name, RegistryValue& value) override;
    SystemError SetValue(const std::string& name, const RegistryValue& value) override;
    SystemError DeleteValue(const std::string& name) override;
    SystemError DeleteKey(const std::string& path) override;
    SystemError EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) override;

 private:
    [[nodiscard]] SystemError Write(const std::wstring& name, std::uint32_t type, const BYTE* data, std::size_t size);

    RegKey key_;
};

SystemError Win32RegistryKey::QueryValue(const std::string& name, RegistryValue& value) {
    std::wstring wide;
    if (const SystemError code = ToWideName(name, wide)) {
        return code;
    }
    std::vector<BYTE> buffer(512);
    for (;;) {
        DWORD type = 0;
        auto size = static_cast<DWORD>(buffer.size());
        const LSTATUS status = RegQueryValueExW(key_.Get(), wide.c_str(), nullptr, &type, buffer.data(), &size);
        if (status == ERROR_MORE_DATA) {
            buffer.resize(std::max<std::size_t>(size, buffer.size() * 2));  // it may have grown since the call
            continue;
        }
        if (status != ERROR_SUCCESS) {
            return ToCode(status);
        }
        value.type = type;
        value.data = FromStored(type, buffer, size);
        return error::success;
    }
}

SystemError Win32RegistryKey::Write(const std::wstring& name, std::uint32_t type, const BYTE* data, std::size_t size) {
    if (size > std::numeric_limits<DWORD>::max()) {
        return error::invalidParameter;
    }
    return ToCode(RegSetValueExW(key_.Get(), name.c_str(), 0, type, data, static_cast<DWORD>(size)));
}

SystemError Win32RegistryKey::SetValue(const std::string& name, const RegistryValue& value) {
    std::wstring wide;
    if (const SystemError code = ToWideName(name, wide)) {
        return code;
    }
    if (!IsText(value.type)) {
        return Write(wide, value.type, reinterpret_cast<const BYTE*>(value.data.data()), value.data.size());
    }
    std::wstring units = ToWide(value.data);
    const std::size_t size = units.size() * sizeof(wchar_t);
    // Windows looks one character past the end of a string and stores a zero that it finds there. What is stored is to
    // be what the caller gave, so something else stands there.
    units += L'#';
    return Write(wide, value.type, reinterpret_cast<const BYTE*>(units.data()), size);
}

SystemError Win32RegistryKey::DeleteValue(const std::string& name) {
    std::wstring wide;
    if (const SystemError code = ToWideName(name, wide)) {
        return code;
    }
    return ToCode(RegDeleteValueW(key_.Get(), wide.c_str()));
}

SystemError Win32RegistryKey::DeleteKey(const std::string& path) {
    std::wstring wide;
    if (const SystemError code = ToWideName(path, wide)) {
        return code;
    }
    if (wide.empty()) {
        return error::invalidParameter;  // Windows would delete this key itself
    }
    RegKey below;
    LSTATUS status = RegOpenKeyExW(key_.Get(), wide.c_str(), 0, KEY_QUERY_VALUE, below.Receive());
    if (status != ERROR_SUCCESS) {
        return ToCode(status);
    }
    DWORD keys = 0;
    status = RegQueryInfoKeyW(below.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr);
    if (status != ERROR_SUCCESS) {
        return ToCode(status);
    }
    if (keys != 0) {
        return error::accessDenied;
    }
    below.Reset();
    return ToCode(RegDeleteKeyW(key_.Get(), wide.c_str()));
}

SystemError Win32RegistryKey::EnumValue(std::uint32_t index, std::string& name, RegistryValue& value) {
    std::vector<wchar_t> nameBuffer(nameLimit);
    std::vector<BYTE> data(512);
    for (;;) {
        auto nameLength = static_cast<DWORD>(nameBuffer.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = 0;
        const LSTATUS status =
            RegEnumValueW(key_.Get(), index, nameBuffer.data(), &nameLength, nullptr, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            data.resize(std::max<std::size_t>(size, data.size() * 2));
            continue;
        }
        if (status != ERROR_SUCCESS) {
            return ToCode(status);
        }
        name = FromWide({nameBuffer.data(), nameLength});
        value.type = type;
        value.data = FromStored(type, data, size);
        return error::success;
    }
}

}  // namespace

SystemError Win32Registry::OpenKey(const std::string& path, std::uint32_t access, std::unique_ptr<RegistryKey>& key) {
    key.reset();
    std::wstring wide;
    if (const SystemError code = ToWideName(path, wide)) {
        return code;
    }
    RegKey opened;
    const LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, wide.c_str(), 0, access, opened.Receive());
    if (status != ERROR_SUCCESS) {
        return ToCode(status);
    }
    key = std::make_unique<Win32RegistryKey>(std::move(opened));
    return error::success;
}

SystemError Win32Registry::CreateKey(const std::string& path, std::unique_ptr<RegistryKey>& key) {
    key.reset();
    std::wstring wide;
    if (const SystemError code = ToWideName(path, wide)) {
        return code;
    }
    RegKey opened;
    const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, wide.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_ALL_ACCESS, nullptr, opened.Receive(), nullptr);
    if (status != ERROR_SUCCESS) {
        return ToCode(status);
    }
    key = std::make_unique<Win32RegistryKey>(std::move(opened));
    return error::success;
}

}  // namespace marlok::win32
