#pragma once

#include <memory>
#include <string>

#include "forms/Windows.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"
#include "settings/CRegSettings.h"

namespace marlok {

/// What an ended program tells whoever started it.
namespace exitcode {
inline constexpr int allDone = 0;
inline constexpr int somethingFailed = 1;  ///< something could not be copied; "Backup Error Log.txt" names it
inline constexpr int nothingRan = 2;       ///< configuration incomplete, another instance running, run-time error
}  // namespace exitcode

/// What every window of the program reaches: the machine, the settings, the flags of the run, the windows.
struct Program {
    /// `views` may be null: the program then runs without a screen. Both must outlive this object.
    Program(Machine& on, forms::ViewFactory* views);

    Machine& machine;
    forms::Windows windows;
    std::unique_ptr<CRegSettings> gSettings;

    bool gAllFiles = false;               ///< copy all files; else only those written later than their saved copy
    bool gShowMessage = false;            ///< show the result at the end of a run
    bool gShowMessageBackground = false;  ///< the same, for a run that the main window put into the background
    bool gFirstRun = false;               ///< set once at start
    bool gShowingOriginals = false;       ///< the review shows the list of original paths, not the saved files
    bool gSearchOn = false;               ///< a scan goes on while it is true; false after a look-up that found nothing
    bool gNodesSorted = false;            ///< given to the nodes of a folder scan
    bool gNodesExpanded = false;
    std::string gAppFolder;    ///< program folder with trailing "\"
    std::string gCommandFile;  ///< full path of "Command.txt"

    int exitCode = exitcode::allDone;

    /// Full path of a file beside the program.
    [[nodiscard]] std::string BesideProgram(const std::string& name) const;

    [[nodiscard]] BackupSettings Configuration() const { return BackupSettings(*gSettings); }
};

/// Names of the files beside the program.
namespace programfile {
inline constexpr const char* program = "Marlok Backup.exe";
inline constexpr const char* command = "Command.txt";
inline constexpr const char* deleteFolder = "DeleteFolder.txt";
inline constexpr const char* runLog = "Backup Log File.txt";
inline constexpr const char* errorLog = "Backup Error Log.txt";
inline constexpr const char* replacedLog = "Replaced File Log.txt";
inline constexpr const char* restartSource = "Restart.sec";
inline constexpr const char* restartProgram = "Restart.exe";
inline constexpr const char* animation = "pc21.gif";
inline constexpr const char* help = "Backup.hlp";
}  // namespace programfile

}  // namespace marlok
