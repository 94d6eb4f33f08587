#include "settings/CRegSettings.h"

#include <cstdint>
#include <memory>

#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* defaultCompany = "Marlok Software";
constexpr const char* defaultAppName = "Fenwold";

std::string ValueName(const std::string& key) {
    return key == "*" ? std::string() : key;
}

bool IsStringType(std::uint32_t type) {
    return type == registrytype::string || type == registrytype::expandString || type == registrytype::multiString;
}

/// The data of a value as text, without its last character.
std::string WithoutTerminator(SystemInfo& system, const RegistryValue& value) {
    if (IsStringType(value.type)) {
        const std::string_view last = text::Right(value.data, 1);
        return value.data.substr(0, value.data.size() - last.size());
    }
    return system.FromCodePage(std::string_view(value.data).substr(0, value.data.size() - 1));
}

}  // namespace

CRegSettings::CRegSettings(Registry& registry, SystemInfo& system)
    : registry_(registry), system_(system), company_(defaultCompany), appName_(defaultAppName) {}

void CRegSettings::SetCompany(const std::string& name) {
    company_ = name.empty() ? std::string(defaultCompany) : std::string(text::Trim(name, " "));
}

void CRegSettings::SetAppName(const std::string& name) {
    appName_ = name.empty() ? system_.ProductName() : std::string(text::Trim(name, " "));
}

std::string CRegSettings::KeyPath(const std::string& section) const {
    const std::string application = "Software\\" + company_ + "\\" + appName_;
    return section.empty() ? application : application + "\\" + section;
}

bool CRegSettings::DeleteSetting(const std::string& section, const std::string& key) {
    std::unique_ptr<RegistryKey> open;
    SystemError code = registry_.OpenKey(KeyPath(key.empty() ? "" : section), registryaccess::all, open);
    if (code == error::success) {
        code = key.empty() ? open->DeleteKey(section) : open->DeleteValue(ValueName(key));
    }
    return code == error::success;
}

std::vector<std::pair<std::string, std::string>> CRegSettings::GetAllSettings(const std::string& section) {
    std::vector<std::pair<std::string, std::string>> settings;
    std::unique_ptr<RegistryKey> open;
    if (registry_.OpenKey(KeyPath(section), registryaccess::read, open) != error::success) {
        return settings;
    }
    std::string name;
    RegistryValue value;
    for (std::uint32_t index = 0; open->EnumValue(index, name, value) == error::success; ++index) {
        if (value.type == registrytype::string) {
            settings.emplace_back(name, value.data.empty() ? "" : WithoutTerminator(system_, value));
        }
    }
    return settings;
}

std::string CRegSettings::GetSetting(const std::string& section, const std::string& key, const std::string& fallback) {
    std::unique_ptr<RegistryKey> open;
    RegistryValue value;
    if (registry_.OpenKey(KeyPath(section), registryaccess::all, open) != error::success ||
        open->QueryValue(ValueName(key), value) != error::success || value.data.empty()) {
        return fallback;
    }
    return WithoutTerminator(system_, value);
}

bool CRegSettings::SaveSetting(const std::string& section, const std::string& key, const std::string& setting) {
    std::unique_ptr<RegistryKey> open;
    if (registry_.CreateKey(KeyPath(section), open) != error::success) {
        return false;
    }
    // The size of the data, terminating zero included, is one more than the length of the string.
    const std::string data(setting.c_str(), setting.size() + 1);
    return open->SetValue(ValueName(key), {registrytype::string, data}) == error::success;
}

}  // namespace marlok
