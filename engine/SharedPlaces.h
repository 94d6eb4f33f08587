#pragma once

#include <string>
#include <vector>

#include "paths/Location.h"
#include "settings/BackupSettings.h"

namespace marlok {

/// Two sources of which different files are saved under one path.
struct SharedPlace {
    std::string source;
    std::string other;
    std::string place;  ///< where both are saved: the deeper one of their saved paths
};

/// What `sources`, which are stored as sources of `location`, share their places with, in any location. Sources are
/// saved under their paths without the drive root, so C:\Data and D:\Data meet in one location; and a location inside
/// another meets what that saves there. A source inside another one of its drive is the same files: no meeting. Each
/// two are named once. Compared as text, letter case ignored.
[[nodiscard]] std::vector<SharedPlace> FindSharedPlaces(BackupSettings settings, const Location& location,
                                                        const std::vector<std::string>& sources);

}  // namespace marlok
