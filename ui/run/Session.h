#pragma once

#include <memory>
#include <string>

#include "engine/RunLog.h"
#include "engine/RunReport.h"
#include "paths/ProgramFiles.h"
#include "platform/Machine.h"
#include "settings/BackupSettings.h"
#include "settings/CRegSettings.h"

namespace marlok {

/// What the windows of one start of the program hand to each other: settings, the flags of a run, and how it ended. The
/// rules below the windows do not know it; they are given what they use.
struct Session {
    explicit Session(Machine& on) : machine(on), gAppFolder(on.process.ProgramFolder()) {}

    Machine& machine;
    std::unique_ptr<CRegSettings> gSettings;

    bool gAllFiles = false;               ///< copy all files; else only those written later than their saved copy
    bool gShowMessage = false;            ///< show the result at the end of a run
    bool gShowMessageBackground = false;  ///< the same, for a run that the main window put into the background
    bool gFirstRun = false;               ///< set once at start
    bool gShowingOriginals = false;       ///< the review shows the list of original paths, not the saved files
    bool gSearchOn = false;               ///< a search goes on while it is true
    bool gNodesSorted = false;            ///< given to the nodes of a run's folder tree
    bool gNodesExpanded = false;
    ProgramFolder gAppFolder;
    std::string gCommandFile;  ///< full path of "Command.txt"

    int exitCode = exitcode::allDone;
    RunReport atStart;  ///< what a start with arguments could not do, for the report of its run

    [[nodiscard]] BackupSettings Configuration() const { return BackupSettings(*gSettings); }
};

}  // namespace marlok
