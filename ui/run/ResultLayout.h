#pragma once

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

}  // namespace marlok
