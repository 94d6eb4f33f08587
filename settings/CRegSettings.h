#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/Registry.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// The program's settings: strings under HKEY_CURRENT_USER\Software\<Company>\<AppName>\<section>. Sections may nest:
/// "Backups\Daily" is the key Daily below the key Backups. Holds no open key between calls. Registry failures are never
/// raised.
///
/// A key of "*" means the unnamed value in every operation that takes one.
class CRegSettings {
 public:
    /// Both must outlive this object.
    CRegSettings(Registry& registry, SystemInfo& system);

    /// Trims blanks at both ends. "" restores the default "Marlok Software"; blanks alone give an empty name.
    void SetCompany(const std::string& name);
    [[nodiscard]] const std::string& Company() const { return company_; }

    /// Trims blanks at both ends. "" gives the product name of the program's version record.
    void SetAppName(const std::string& name);
    [[nodiscard]] const std::string& AppName() const { return appName_; }

    /// Deletes one value; or, with an empty `key`, the section's key, which fails while keys lie below it. True on
    /// success.
    bool DeleteSetting(const std::string& section, const std::string& key);

    /// Name and data of every string value of the section, in the system's order; the unnamed value's name is "".
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string& section);

    /// The value's data without its last character, which is the terminating zero; so a value that was stored without
    /// one loses a character: deliberate. The type is not looked at. `fallback` when there is no such value, when it is
    /// empty to the byte, or when the key cannot be opened with all access.
    [[nodiscard]] std::string GetSetting(const std::string& section, const std::string& key,
                                         const std::string& fallback);

    /// Stores a string with its terminating zero, making keys as needed. True on success.
    bool SaveSetting(const std::string& section, const std::string& key, const std::string& setting);

 private:
    [[nodiscard]] std::string KeyPath(const std::string& section) const;

    Registry& registry_;
    SystemInfo& system_;
    std::string company_;
    std::string appName_;
};

}  // namespace marlok
