#pragma once

#include <string>
#include <vector>

#include "paths/Location.h"
#include "settings/CRegSettings.h"

namespace marlok {

/// The text that ends a numbered list in the settings, and that every reader takes for a missing value.
inline constexpr const char* endMark = "0";

/// True for what ends a list of paths, stored or shown: "" and "0".
[[nodiscard]] bool IsEndMark(const std::string& text);

/// Backup locations and their sources in the settings. Section "Target" holds the locations as "TargetPath2",
/// "TargetPath3", ...; the section called like the location without its drive root holds its sources as "SourcePath2",
/// ...: two locations that differ only in their drive share one list. Lists are dense, start at 2, end at the first
/// value that is missing, empty or "0", and are always rewritten whole. A location that is itself called "Target" has
/// its sources beside the locations; rewriting the one list leaves the other alone.
class BackupSettings {
 public:
    explicit BackupSettings(CRegSettings& settings) : settings_(settings) {}

    /// @throws RuntimeError 6 for more than 32,765 entries; so do all readers of lists.
    [[nodiscard]] std::vector<Location> Locations();
    [[nodiscard]] std::vector<std::string> Sources(const Location& location);

    /// One entry of a list, by the number in its name; the end mark when there is none.
    [[nodiscard]] std::string LocationAt(int number);
    [[nodiscard]] std::string SourceAt(const Location& location, int number);

    [[nodiscard]] bool AnyLocation();
    [[nodiscard]] bool AnySource(const Location& location);

    /// Rewrites the locations, given by their paths, up to the first that is "" or "0". False when the settings do not
    /// hold them now; so does the other.
    [[nodiscard]] bool SaveLocations(const std::vector<std::string>& locations);

    /// Rewrites the sources of a location.
    [[nodiscard]] bool SaveSources(const Location& location, const std::vector<std::string>& sources);

 private:
    [[nodiscard]] std::vector<std::string> ReadList(const std::string& section, const std::string& word);
    [[nodiscard]] bool SaveList(const std::string& section, const std::string& word,
                                const std::vector<std::string>& list);
    [[nodiscard]] bool HoldsNothing(const std::string& section);

    CRegSettings& settings_;
};

/// The number of a list's first entry.
inline constexpr int firstEntryNumber = 2;

/// `number` as a 16-bit counter.
/// @throws RuntimeError 6 when it has passed 32,767.
int CheckedCounter(int number);

}  // namespace marlok
