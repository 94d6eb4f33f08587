#include "ui/run/ResultLayout.h"

#include "forms/Area.h"
#include "forms/Measures.h"

namespace marlok {

void LayOutResult(const forms::Form& form, const ResultControls& controls) {
    namespace measure = forms::measure;
    constexpr int listBorder = 105;
    forms::Area inner = forms::Area{0, 0, form.Width(), form.Height()}.Inside(measure::margin);
    Put(controls.outcome, inner.TakeTop(measure::lineHeight));
    Put(controls.count, inner.TakeTop(measure::lineHeight, measure::gap));
    forms::Area bottom = inner.TakeBottom(measure::buttonHeight, measure::gap);
    Put(controls.close, bottom.TakeRight(measure::buttonWidth, measure::gap));
    if (controls.failures != nullptr) {
        Put(*controls.failures, bottom);
    }
    Put(controls.list, {listBorder / 2, inner.top, form.Width() - listBorder, inner.height});
}

}  // namespace marlok
