#pragma once

#include <string>

#include "platform/Machine.h"

namespace marlok::ui {

/// The sections of the help page that windows are about, by the ids that the page has for them.
namespace helpsection {
inline constexpr const char* options = "options";
inline constexpr const char* backupFolder = "backup-folder";
inline constexpr const char* filesToBackup = "files-to-backup";
inline constexpr const char* reviewSaved = "review-saved";
}  // namespace helpsection

/// Opens the help file beside the program when there is one, else the help page at the section of that id ("" for its
/// beginning). When neither can be opened a message says why.
void OpenHelp(Machine& machine, const std::string& section);

}  // namespace marlok::ui
