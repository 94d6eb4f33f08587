#include "settings/BackupSettings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "platform/RuntimeError.h"
#include "text/Text.h"

namespace marlok {

namespace {

constexpr const char* locationSection = "Target";
constexpr const char* locationWord = "TargetPath";
constexpr const char* sourceWord = "SourcePath";

std::string ValueName(const std::string& word, int number) {
    return word + std::to_string(number);
}

}  // namespace

bool IsEndMark(const std::string& text) {
    return text.empty() || text == endMark;
}

int CheckedCounter(int number) {
    if (number > std::numeric_limits<std::int16_t>::max()) {
        throw RuntimeError(runtimeerror::overflow, "Overflow");
    }
    return number;
}

std::vector<std::string> BackupSettings::ReadList(const std::string& section, const std::string& word) {
    std::vector<std::string> list;
    for (int number = firstEntryNumber;; number = CheckedCounter(number + 1)) {
        std::string entry = settings_.GetSetting(section, ValueName(word, number), endMark);
        if (IsEndMark(entry)) {
            return list;
        }
        list.push_back(std::move(entry));
    }
}

bool BackupSettings::SaveList(const std::string& section, const std::string& word,
                              const std::vector<std::string>& list) {
    // The key of the locations may hold the sources of a location that is called like it. That key goes with its last
    // value only; in any other, what could keep it are keys below it, and what is left behind the new end goes below.
    const bool shared = text::EqualIgnoringCase(section, locationSection);
    if (!shared) {
        static_cast<void>(settings_.DeleteSetting(section, ""));
    }
    bool stored = true;
    int number = firstEntryNumber;
    for (const std::string& entry : list) {
        stored = settings_.SaveSetting(section, ValueName(word, number), entry) && stored;
        number = CheckedCounter(number + 1);
    }
    for (; stored && !IsEndMark(settings_.GetSetting(section, ValueName(word, number), endMark)); ++number) {
        stored = settings_.DeleteSetting(section, ValueName(word, number));
    }
    if (stored && shared && list.empty() && HoldsNothing(section)) {
        static_cast<void>(settings_.DeleteSetting(section, ""));  // fails where keys lie below it
    }
    return stored;
}

/// True when the section holds no value. Not every failure to read it can be told from that: the first of each list is
/// asked for by name.
bool BackupSettings::HoldsNothing(const std::string& section) {
    return settings_.GetAllSettings(section).empty() &&
           std::ranges::all_of(std::array{locationWord, sourceWord}, [&](const char* word) {
               return IsEndMark(settings_.GetSetting(section, ValueName(word, firstEntryNumber), endMark));
           });
}

std::vector<Location> BackupSettings::Locations() {
    std::vector<Location> locations;
    for (const std::string& path : ReadList(locationSection, locationWord)) {
        locations.emplace_back(path);
    }
    return locations;
}

std::vector<std::string> BackupSettings::Sources(const Location& location) {
    return ReadList(location.Section(), sourceWord);
}

std::string BackupSettings::LocationAt(int number) {
    return settings_.GetSetting(locationSection, ValueName(locationWord, number), endMark);
}

std::string BackupSettings::SourceAt(const Location& location, int number) {
    return settings_.GetSetting(location.Section(), ValueName(sourceWord, number), endMark);
}

bool BackupSettings::AnyLocation() {
    return !IsEndMark(LocationAt(firstEntryNumber));
}

bool BackupSettings::AnySource(const Location& location) {
    return !IsEndMark(SourceAt(location, firstEntryNumber));
}

bool BackupSettings::SaveLocations(const std::vector<std::string>& locations) {
    std::vector<std::string> kept;
    for (const std::string& location : locations) {
        if (IsEndMark(location)) {
            break;
        }
        kept.push_back(location);
    }
    return SaveList(locationSection, locationWord, kept);
}

bool BackupSettings::SaveSources(const Location& location, const std::vector<std::string>& sources) {
    return SaveList(location.Section(), sourceWord, sources);
}

}  // namespace marlok
