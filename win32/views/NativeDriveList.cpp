#include "win32/views/NativeDriveList.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <new>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

using forms::Aspect;

NativeControl::WindowKind NativeDriveList::Kind() const {
    return {WC_COMBOBOXW, CBS_DROPDOWNLIST | CBS_HASSTRINGS | WS_VSCROLL | WS_TABSTOP, 0};
}

void NativeDriveList::MirrorContent(Aspect aspect) {
    itemsChanged_ = itemsChanged_ || aspect == Aspect::items;
    selectionChanged_ = selectionChanged_ || aspect == Aspect::selection;
}

void NativeDriveList::Flush() {
    if (itemsChanged_) {
        MirrorItems();
    }
    if (itemsChanged_ || selectionChanged_) {
        const int line = drives_.ListIndex();
        if (Send(CB_GETCURSEL) != line) {
            Send(CB_SETCURSEL, static_cast<WPARAM>(line));
        }
    }
    itemsChanged_ = false;
    selectionChanged_ = false;
}

/// An open list keeps the height that it was opened with, so one that gets other lines is closed and opened again.
void NativeDriveList::MirrorItems() {
    if (shown_ == drives_.Items()) {
        return;
    }
    mirroring_ = true;
    const bool dropped = IsDropped();
    if (dropped) {
        Send(CB_SHOWDROPDOWN, FALSE);
    }
    Refill();
    if (dropped) {
        Send(CB_SHOWDROPDOWN, TRUE);
    }
    mirroring_ = false;
}

void NativeDriveList::Refill() {
    Send(CB_RESETCONTENT);
    shown_.clear();
    for (const std::string& line : drives_.Items()) {
        if (Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToWide(line).c_str())) < 0) {
            throw std::bad_alloc();
        }
        shown_.push_back(line);
    }
    Send(CB_SETCURSEL, static_cast<WPARAM>(drives_.ListIndex()));
}

void NativeDriveList::Notified(WORD notification) {
    if (mirroring_) {
        return;
    }
    switch (notification) {
        case CBN_DROPDOWN:
            PostAction([this] { drives_.Refresh(); });
            break;
        case CBN_SELENDOK:
            PostAction([this, choice = ShownChoice()] { Take(choice); });
            break;
        case CBN_SELCHANGE:
            // Asked when the window has done its part: only then is the list closed that the choice has closed.
            PostAction([this, choice = ShownChoice()] {
                if (!IsDropped()) {
                    Take(choice);
                }
            });
            break;
        case CBN_SELENDCANCEL:
            PostAction([this] { selectionChanged_ = true; });  // back from where the user had moved to
            break;
        default:
            break;
    }
}

void NativeDriveList::DevicesChanged() {
    drives_.Refresh();
}

/// The line that the user sees chosen; "" when there is none.
std::string NativeDriveList::ShownChoice() const {
    const auto line = static_cast<std::size_t>(Send(CB_GETCURSEL));
    return line < shown_.size() ? shown_[line] : std::string();
}

/// The choice is known by its text: the drives may be others by now than those that were shown.
void NativeDriveList::Take(const std::string& choice) {
    selectionChanged_ = true;  // where the choice is not taken, the window goes back to the drive that is chosen
    const auto& items = drives_.Items();
    const auto found = std::find(items.begin(), items.end(), choice);
    if (found != items.end()) {
        drives_.UserChose(static_cast<int>(found - items.begin()));
    }
}

}  // namespace marlok::win32
