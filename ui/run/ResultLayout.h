#pragma once

#include "engine/RunReport.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "platform/Machine.h"

namespace marlok {

/// The controls of a window that shows what a run has done.
struct ResultControls {
    forms::Label& outcome;        ///< the line at the top
    forms::Label& count;          ///< the line below it
    forms::ListBox& list;         ///< all that the window has room for
    forms::Label& failures;       ///< left of the button; above it when it has several lines
    forms::CommandButton& close;  ///< in the lower right corner
};

/// Lays them out for the window's size. The list is 105 twips narrower than the window.
void LayOutResult(const forms::Form& form, const ResultControls& controls);

/// The words for what failed.
struct FailureWords {
    const char* one;      ///< behind the number 1
    const char* several;  ///< behind any other number
    const char* where;    ///< behind the name of the error log
    bool countsFiles;     ///< the number is that of the files that failed; else of all that the report names
};
inline constexpr FailureWords backupFailures{" Failure", " Failures", " In The Program's Folder", false};
inline constexpr FailureWords replacementFailures{" File Not Replaced", " Files Not Replaced", "", true};

/// Shows on `label`, in the colour of failures, how much of the report failed and where it is listed; when it could not
/// be written there, why, and the first failures. Hides the label when the report names none. The window is to be laid
/// out again afterwards.
void ShowFailures(forms::Label& label, Machine& machine, const RunReport& report, const FailureWords& words);

}  // namespace marlok
