#pragma once

/// Texts that stand in several lists of the main window. Their leading blanks put them into the middle of a list.
namespace marlok::ui::texts {

inline constexpr const char* locationsHeading = "                        List Of Backup Paths";
inline constexpr const char* noLocation = "         You Have Not Selected A Backup Location";
inline constexpr const char* sourcesHeading = "                 List Of Files To Be Backed Up";
inline constexpr const char* noSources = "        You Have Not Selected Any Files To Backup";
inline constexpr const char* noFolder = "              No Folder Selected";
inline constexpr const char* noFiles = "               No Files Selected";

inline constexpr const char* infoTitle = "Marlok Info.....";

/// Captions of Command8.
inline constexpr const char* selectBackup = "Select Backup";
inline constexpr const char* runBackup = "Run Backup";

}  // namespace marlok::ui::texts
