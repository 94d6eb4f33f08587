#pragma once

#include <vector>

#include "engine/RunReport.h"
#include "paths/Location.h"

namespace marlok {

/// How a run copies a file.
enum class CopyMethod {
    copyWithProgress,   ///< by the kernel's restartable copy, which tells how far it is
    copyCountingFiles,  ///< plainly; the progress shown is that of the files
    copyPlain,          ///< plainly; nobody watches
};

/// What a run is to do.
struct RunPlan {
    std::vector<Location> locations;  ///< one after the other
    bool allFiles = false;            ///< copy all files; else only those written later than their saved copy
    CopyMethod method = CopyMethod::copyPlain;
    RunReport atStart = {};  ///< its lines become notes of the report: the run replaces the error log of the start
};

}  // namespace marlok
