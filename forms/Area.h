#pragma once

#include "forms/Control.h"

namespace marlok::forms {

/// A rectangle in twips that is cut up between controls: each Take cuts a strip off one side, with a gap behind it, and
/// leaves the rest. What is too small for a strip gives what there is, never less than nothing.
struct Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] Area TakeTop(int size, int gap = 0);
    [[nodiscard]] Area TakeBottom(int size, int gap = 0);
    [[nodiscard]] Area TakeLeft(int size, int gap = 0);
    [[nodiscard]] Area TakeRight(int size, int gap = 0);

    /// Leaves a strip empty.
    void SkipTop(int size) { static_cast<void>(TakeTop(size)); }
    void SkipBottom(int size) { static_cast<void>(TakeBottom(size)); }

    /// The area without a margin on all four sides.
    [[nodiscard]] Area Inside(int margin) const;
};

/// Places the control on the area.
void Put(Control& control, const Area& area);

}  // namespace marlok::forms
