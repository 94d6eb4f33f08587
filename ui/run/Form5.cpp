#include "ui/run/Form5.h"

#include <algorithm>

#include "fileops/VersionInfo.h"
#include "forms/Area.h"
#include "forms/Measures.h"
#include "paths/ProgramFiles.h"

namespace marlok {

namespace {

constexpr const char* fontName = "Comic Sans MS";

// Points.
constexpr int titleSize = 20;
constexpr int modeSize = 14;
constexpr int statusSize = 12;

// Twips.
constexpr int titleHeight = 600;
constexpr int modeHeight = 435;
constexpr int statusHeight = 390;
constexpr int barHeight = 300;
constexpr int leastHeight = 4200;
constexpr int twipsPerRow = 15;

/// Width of the animation for its height: that of its file.
constexpr int animationWidth = 8;
constexpr int animationHeight = 3;

constexpr forms::Colour white = forms::Rgb(255, 255, 255);
constexpr forms::Colour upperEnd = forms::Rgb(58, 110, 190);
constexpr forms::Colour lowerEnd = forms::Rgb(8, 16, 80);
constexpr forms::Colour darkBlue = 0x800000;

int Part(forms::Colour colour, unsigned shift) {
    return static_cast<int>((colour >> shift) & 0xFFU);
}

/// One part of the colour of a row.
forms::Colour PartOfRow(forms::Colour top, forms::Colour bottom, unsigned shift, int row, int rows) {
    const int start = Part(top, shift);
    const int value = start + (Part(bottom, shift) - start) * row / rows;
    return static_cast<forms::Colour>(value) << shift;
}

}  // namespace

std::vector<forms::Colour> GradientRows(forms::Colour top, forms::Colour bottom, int rows) {
    constexpr unsigned greenShift = 8;
    constexpr unsigned blueShift = 16;
    std::vector<forms::Colour> colours;
    colours.reserve(static_cast<std::size_t>(std::max(0, rows)));
    for (int row = 0; row < rows; ++row) {
        colours.push_back(PartOfRow(top, bottom, 0, row, rows) | PartOfRow(top, bottom, greenShift, row, rows) |
                          PartOfRow(top, bottom, blueShift, row, rows));
    }
    return colours;
}

Form5::Form5(forms::Windows& windows, Machine& machine, bool allFiles)
    : Form(windows, "Form5", "Marlok Backup Utility"), machine_(machine), allFiles_(allFiles) {
    Picture1.BackColor = upperEnd;
    Picture2.BackColor = lowerEnd;
    for (forms::Control* hidden : std::initializer_list<forms::Control*>{&Picture1, &Picture2, &Label3, &WebBrowser1}) {
        hidden->Visible = false;
    }
    ProgressBar1.AccessibleName = "Progress";
    SetFonts();
}

void Form5::SetFonts() {
    Label1.TextFont = forms::Font{fontName, titleSize, true};
    Label2.TextFont = forms::Font{fontName, modeSize, false};
    Label3.TextFont = forms::Font{fontName, statusSize, false};
    for (forms::Label* label : {&Label1, &Label2, &Label3}) {
        label->ForeColor = white;
        label->Alignment = forms::Label::Align::centre;
    }
}

void Form5::Form_Load() {
    Desktop& desktop = machine_.desktop;
    Place(0, 0, desktop.ScreenWidth(), std::max(leastHeight, desktop.ScreenHeight() * 2 / 5));
    picBox = std::make_unique<forms::PictureBox>(*this, "picBox");
    picBox->AccessibleName = "Animation";
    WebBrowser1.SetContainer(picBox.get());
    Form_Resize();
    WebBrowser1.Navigate2(ProgramFolder(machine_.process.ProgramFolder()).PathOf(programfile::animation));
    picBox->BackColor = darkBlue;
    WebBrowser1.BackColor = darkBlue;
    WebBrowser1.Visible = true;
    picBox->Visible = true;
    ShowModeText();
    ShowVersionNote();
    Show();
    Refresh();
}

void Form5::ShowModeText() {
    Label2.Caption = allFiles_ ? "Copying All Files!" : "Copying Changed Files Only!";
}

void Form5::ShowVersionNote() {
    SystemInfo& system = machine_.system;
    const char* note = nullptr;
    if (IsWindowsME(system)) {
        note = "With Windows ME Animation Is Slow";
    } else if (IsWindows98(system)) {
        note = "With Windows 98 Animation Is Slow";
    } else if (IsWindows95(system)) {
        note = "With Windows 95 Animation Is Slow";
    } else if (IsWindows2000(system) || IsWindowsXP(system)) {
        note = "This May Take A While!";
    }
    if (note != nullptr) {
        Label3.Caption = note;
        Label3.Visible = true;
    }
}

void Form5::ShowStatus(const std::string& text) {
    Label3.Caption = text;
    Label3.Visible = true;
    Refresh();
}

void Form5::Form_Resize() {
    namespace measure = forms::measure;
    SetBackdrop(GradientRows(Picture1.BackColor, Picture2.BackColor, Height() / twipsPerRow));
    forms::Area inner{0, 0, Width(), Height()};
    inner.SkipTop(measure::gap);
    Put(Label1, inner.TakeTop(titleHeight));
    Put(Label2, inner.TakeTop(modeHeight, measure::gap));
    inner.SkipBottom(measure::margin);
    forms::Area bar = inner.TakeBottom(barHeight, measure::gap);
    Put(ProgressBar1, {bar.left + bar.width / 8, bar.top, bar.width * 3 / 4, bar.height});
    Put(Label3, inner.TakeBottom(statusHeight, measure::gap));
    if (picBox) {
        const int widest = Width() - 2 * measure::margin;
        const int height = std::min(inner.height, widest * animationHeight / animationWidth);
        const int width = height * animationWidth / animationHeight;
        Put(*picBox, {(Width() - width) / 2, inner.top + (inner.height - height) / 2, width, height});
        PlaceAnimation(*picBox);
    }
}

/// The web view's own frame and scroll bars lie outside the visible frame.
void Form5::PlaceAnimation(const forms::Control& frame) {
    const int barWidth = machine_.desktop.ScrollBarWidth();
    const int barHeightHere = machine_.desktop.ScrollBarHeight();
    WebBrowser1.MoveTo(-barWidth, -barHeightHere, frame.Width + 2 * barWidth, frame.Height + 2 * barHeightHere);
}

void Form5::Form_Unload() {
    WebBrowser1.Stop();
    WebBrowser1.Visible = false;
    WebBrowser1.SetContainer(nullptr);
    picBox.reset();
    stopProc.CloseProcessWindows(machine_.desktop);
}

}  // namespace marlok
