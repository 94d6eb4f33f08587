#include "forms/Area.h"

#include <algorithm>

namespace marlok::forms {

Area Area::TakeTop(int size, int gap) {
    const int taken = std::clamp(size, 0, height);
    const Area strip{left, top, width, taken};
    const int used = std::min(taken + gap, height);
    top += used;
    height -= used;
    return strip;
}

Area Area::TakeBottom(int size, int gap) {
    const int taken = std::clamp(size, 0, height);
    const Area strip{left, top + height - taken, width, taken};
    height -= std::min(taken + gap, height);
    return strip;
}

Area Area::TakeLeft(int size, int gap) {
    const int taken = std::clamp(size, 0, width);
    const Area strip{left, top, taken, height};
    const int used = std::min(taken + gap, width);
    left += used;
    width -= used;
    return strip;
}

Area Area::TakeRight(int size, int gap) {
    const int taken = std::clamp(size, 0, width);
    const Area strip{left + width - taken, top, taken, height};
    width -= std::min(taken + gap, width);
    return strip;
}

Area Area::Inside(int margin) const {
    return {left + margin, top + margin, std::max(0, width - 2 * margin), std::max(0, height - 2 * margin)};
}

void Put(Control& control, const Area& area) {
    control.MoveTo(area.left, area.top, area.width, area.height);
}

}  // namespace marlok::forms
