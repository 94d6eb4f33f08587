#include "ui/frmSSTab.h"

#include <algorithm>

namespace marlok::ui {

namespace {

constexpr const char* locationsHeading = "                        List Of Backup Paths";
constexpr const char* noLocation = "         You Have Not Selected A Backup Location";
constexpr const char* sourcesHeading = "                 List Of Files To Be Backed Up";
constexpr const char* noSources = "        You Have Not Selected Any Files To Backup";

/// The heading and the empty line above the locations.
constexpr int firstLocationLine = 2;

// Twips.
constexpr int margin = 165;
constexpr int lineHeight = 300;
constexpr int buttonWidth = 1320;
constexpr int buttonHeight = 390;
constexpr int windowWidth = 11400;
constexpr int windowHeight = 7200;

/// Three empty lines and a sentence in the middle of an otherwise empty list.
void ShowNothing(forms::ListBox& list, const char* sentence) {
    for (int i = 0; i < 3; ++i) {
        list.AddItem("");
    }
    list.AddItem(sentence);
}

}  // namespace

frmSSTab::frmSSTab(forms::Windows& windows, Program& program)
    : Form(windows, "frmSSTab", "Marlok Backup Utility"), program_(program) {
    List1.MultiSelect = true;
    List1.Click = [this] { List1_Click(); };
    Command11.Click = [this] { Unload(); };
}

void frmSSTab::Form_Load() {
    Desktop& desktop = program_.machine.desktop;
    Place(std::max(0, (desktop.ScreenWidth() - windowWidth) / 2),
          std::max(0, (desktop.ScreenHeight() - windowHeight) / 2), windowWidth, windowHeight);
    SetTabList();
}

void frmSSTab::Form_Resize() {
    const int inner = Width() - 2 * margin;
    const int buttonTop = Height() - margin - buttonHeight;
    const int listTop = margin + lineHeight;
    const int listWidth = (inner - margin) / 2;
    const int listHeight = buttonTop - margin - listTop;
    Label1.MoveTo(margin, margin, inner, lineHeight);
    List1.MoveTo(margin, listTop, listWidth, listHeight);
    List2.MoveTo(2 * margin + listWidth, listTop, listWidth, listHeight);
    Command11.MoveTo(Width() - margin - buttonWidth, buttonTop, buttonWidth, buttonHeight);
}

void frmSSTab::SetTabList() {
    List1.Clear();
    List2.Clear();
    BackupSettings settings = program_.Configuration();
    if (!settings.AnyLocation()) {
        ShowNothing(List1, noLocation);
        ShowNothing(List2, noSources);
        return;
    }
    List1.AddItem(locationsHeading);
    List1.AddItem("");
    for (const std::string& location : settings.Locations()) {
        List1.AddItem(location);
    }
    if (settings.AnySource(List1.List(firstLocationLine))) {
        List1.SetListIndex(firstLocationLine);
    } else {
        ShowNothing(List2, noSources);
    }
}

void frmSSTab::List1_Click() {
    List2.Clear();
    const std::string& location = List1.List(List1.ListIndex());
    if (IsEndMark(location)) {
        program_.machine.desktop.ShowMessage("You Must Select a Backup Location First",
                                             messagestyle::ok | messagestyle::information, "Marlok Info.....");
        return;
    }
    BackupSettings settings = program_.Configuration();
    if (!settings.AnySource(location)) {
        ShowNothing(List2, noSources);
        return;
    }
    List2.AddItem(sourcesHeading);
    List2.AddItem("");
    for (const std::string& source : settings.Sources(location)) {
        List2.AddItem(source);
    }
}

void frmSSTab::Form_Unload() {
    Collection().UnloadAll();
}

}  // namespace marlok::ui
