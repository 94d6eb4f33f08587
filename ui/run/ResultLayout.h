#pragma once

#include "engine/RunReport.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace marlok {

/// The controls of a window that shows what a run has done.
struct ResultControls {
    forms::Label& outcome;        ///< the line at the top
    forms::Label& count;          ///< the line below it
    forms::ListBox& list;         ///< all that the window has room for
    forms::Label* failures;       ///< left of the button; null when the window tells none
    forms::CommandButton& close;  ///< in the lower right corner
};

/// Lays them out for the window's size. The list is 105 twips narrower than the window.
void LayOutResult(const forms::Form& form, const ResultControls& controls);

/// The words for what failed.
struct FailureWords {
    const char* one;      ///< behind the number 1
    const char* several;  ///< behind any other number
    const char* where;    ///< behind the name of the error log
};
inline constexpr FailureWords backupFailures{" Failure, See ", " Failures, See ", " In The Program's Folder"};
inline constexpr FailureWords replacementFailures{" File Not Replaced, See ", " Files Not Replaced, See ", ""};

/// Shows on `label`, in the colour of failures, how many lines the report has and where they are listed; hides it when
/// there are none.
void ShowFailures(forms::Label& label, const RunReport& report, const FailureWords& words);

}  // namespace marlok
