#include "ui/run/ResultLayout.h"

#include <algorithm>
#include <vector>

#include "engine/ErrorLog.h"
#include "engine/RunLog.h"
#include "forms/Area.h"
#include "forms/Measures.h"
#include "paths/ProgramFiles.h"

namespace marlok {

namespace {

constexpr forms::Colour alarm = forms::Rgb(192, 0, 0);

/// Failures that a window shows itself when no log names them.
constexpr std::size_t mostLinesShown = 5;

/// Of what is no file.
constexpr FailureWords otherFailures{" Failure", " Failures", "", false};

int LineCount(const std::string& text) {
    return 1 + static_cast<int>(std::ranges::count(text, '\n'));
}

std::string Counted(std::size_t count, const FailureWords& words) {
    return std::to_string(count) + (count == 1 ? words.one : words.several);
}

/// What the error log would have said, as far as there is room.
std::string FirstFailures(Machine& machine, const RunReport& report) {
    std::vector<std::string> lines = ErrorLogLines(machine, report, "try again");
    lines.pop_back();  // that of the error log itself
    std::string text;
    for (std::size_t i = 0; i < std::min(mostLinesShown, lines.size()); ++i) {
        text += "\r\n" + lines[i];
    }
    if (lines.size() > mostLinesShown) {
        text += "\r\nand " + std::to_string(lines.size() - mostLinesShown) + " more";
    }
    return text;
}

}  // namespace

void LayOutResult(const forms::Form& form, const ResultControls& controls) {
    namespace measure = forms::measure;
    constexpr int listBorder = 105;
    forms::Area inner = forms::Area{0, 0, form.Width(), form.Height()}.Inside(measure::margin);
    Put(controls.outcome, inner.TakeTop(measure::lineHeight));
    Put(controls.count, inner.TakeTop(measure::lineHeight, measure::gap));
    forms::Area bottom = inner.TakeBottom(measure::buttonHeight, measure::gap);
    Put(controls.close, bottom.TakeRight(measure::buttonWidth, measure::gap));
    const int lines = LineCount(controls.failures.Caption);
    Put(controls.failures, lines == 1 ? bottom : inner.TakeBottom(lines * measure::lineHeight, measure::gap));
    Put(controls.list, {listBorder / 2, inner.top, form.Width() - listBorder, inner.height});
}

void ShowFailures(forms::Label& label, Machine& machine, const RunReport& report, const FailureWords& words) {
    label.ForeColor = alarm;
    label.Visible = !report.Lines().empty();
    label.Caption = "";
    if (!label.Visible) {
        return;
    }
    std::string log = "\"";
    log.append(programfile::errorLog).append("\"");
    const std::string unwritten = WhyNoErrorLog(machine.system, report);
    const std::size_t things = report.Lines().size() - (unwritten.empty() ? 0 : 1);
    // Where no file failed, something else did: the log itself, or the shortcut to it.
    const std::string failures = words.countsFiles && report.failed > 0 ? Counted(report.failed, words)
                                 : words.countsFiles                    ? Counted(things, otherFailures)
                                                                        : Counted(things, words);
    label.Caption = unwritten.empty() ? failures + ", See " + log + words.where
                                      : failures + ". " + log + " Could Not Be Written: " + unwritten +
                                            FirstFailures(machine, report);
}

}  // namespace marlok
