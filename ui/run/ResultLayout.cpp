#include "ui/run/ResultLayout.h"

#include "forms/Area.h"
#include "forms/Measures.h"
#include "paths/ProgramFiles.h"

namespace marlok {

namespace {

constexpr forms::Colour alarm = forms::Rgb(192, 0, 0);

}  // namespace

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

void ShowFailures(forms::Label& label, const RunReport& report, const FailureWords& words) {
    const std::size_t count = report.Lines().size();
    label.ForeColor = alarm;
    label.Visible = count > 0;
    if (count > 0) {
        label.Caption = std::to_string(count) + (count == 1 ? words.one : words.several) + "\"" +
                        programfile::errorLog + "\"" + words.where;
    }
}

}  // namespace marlok
