#include "win32/views/NativeList.h"

#include <windows.h>
// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <new>

#include "win32/machine/Wide.h"
#include "win32/views/DrawingOff.h"
#include "win32/views/TextSurface.h"

namespace marlok::win32 {

using forms::Aspect;

namespace {

/// From this many changed lines on, drawing is switched off meanwhile.
constexpr std::size_t manyLines = 8;

/// Pixels between the end of the longest line and the edge, so that its last letter is not cut.
constexpr int extentMargin = 6;

/// How wide lines are in a window's font.
class TextMeasure {
 public:
    explicit TextMeasure(HWND window) : surface_(window), widestLetter_(surface_.Metrics().tmMaxCharWidth) {}

    /// Pixels of `text`; 0 when it cannot be wider than `atLeast`.
    [[nodiscard]] int Width(const std::string& text, int atLeast) const {
        if (static_cast<int>(text.size()) * widestLetter_ <= atLeast) {
            return 0;
        }
        const std::wstring wide = ToWide(text);
        SIZE size{};
        GetTextExtentPoint32W(surface_.Get(), wide.data(), static_cast<int>(wide.size()), &size);
        return size.cx;
    }

 private:
    TextSurface surface_;
    int widestLetter_;
};

}  // namespace

NativeControl::WindowKind NativeList::Kind() const {
    const DWORD selection = list_.MultiSelect ? LBS_EXTENDEDSEL : 0;
    return {WC_LISTBOXW, LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP | selection,
            WS_EX_CLIENTEDGE, true};
}

int NativeList::LineWithFocus() const {
    return static_cast<int>(Send(list_.MultiSelect ? LB_GETCARETINDEX : LB_GETCURSEL));
}

/// The next line that can be chosen; `from` when there is none. Empty lines cannot, nor a heading, which is what stands
/// above an empty second line.
int NativeList::NextChoice(int from, int step) const {
    constexpr std::size_t headingLines = 2;
    const bool hasHeading = shown_.size() > headingLines && shown_[headingLines - 1].empty();
    for (int line = from + step; line >= 0 && line < static_cast<int>(shown_.size()); line += step) {
        const auto at = static_cast<std::size_t>(line);
        if (!shown_[at].empty() && !(hasHeading && at < headingLines)) {
            return line;
        }
    }
    return from;
}

/// Where a key leads that would come to a line which cannot be chosen, the line with the focus when nowhere; -1 for a
/// key that does not come to any.
int NativeList::Destination(WPARAM key) const {
    const int focused = LineWithFocus();
    const int first = NextChoice(-1, 1);
    switch (key) {
        case VK_UP:
        case VK_DOWN: {
            const int step = key == VK_UP ? -1 : 1;
            const int next = NextChoice(focused, step);
            return next == focused + step ? -1 : next;
        }
        case VK_PRIOR: {
            RECT inner{};
            GetClientRect(Window(), &inner);
            const int height = std::max(1, static_cast<int>(Send(LB_GETITEMHEIGHT)));
            return first > 0 && focused - inner.bottom / height < first ? first : -1;
        }
        case VK_HOME:
            return first > 0 ? first : -1;
        default:
            return -1;
    }
}

/// Lets the list take the last step by itself, so that it selects and reports as for any key.
LRESULT NativeList::Handle(UINT message, WPARAM first, LPARAM second) {
    const int line = message == WM_KEYDOWN ? Destination(first) : -1;
    if (line < 0) {
        return Default(message, first, second);
    }
    if (line == LineWithFocus()) {
        return 0;
    }
    const bool down = first == VK_DOWN || line > 0;
    const int before = down ? line - 1 : line + 1;
    Send(list_.MultiSelect ? LB_SETCARETINDEX : LB_SETCURSEL, static_cast<WPARAM>(before));
    return Default(message, down ? VK_DOWN : VK_UP, second);
}

void NativeList::MirrorContent(Aspect aspect) {
    itemsChanged_ = itemsChanged_ || aspect == Aspect::items;
    selectionChanged_ = selectionChanged_ || aspect == Aspect::selection;
    if (aspect == Aspect::font) {
        extent_ = 0;
        Widen(shown_, 0, shown_.size());
    }
}

void NativeList::Flush() {
    if (itemsChanged_) {
        MirrorItems();
    }
    if (itemsChanged_ || selectionChanged_) {
        MirrorSelection();
    }
    itemsChanged_ = false;
    selectionChanged_ = false;
}

void NativeList::MirrorItems() {
    const std::vector<std::string>& wanted = list_.Items();
    const auto [oldEnd, newEnd] = std::mismatch(shown_.begin(), shown_.end(), wanted.begin(), wanted.end());
    const auto start = static_cast<std::size_t>(oldEnd - shown_.begin());
    const auto [oldTail, newTail] = std::mismatch(shown_.rbegin(), std::make_reverse_iterator(oldEnd), wanted.rbegin(),
                                                  std::make_reverse_iterator(newEnd));
    const auto tail = static_cast<std::size_t>(oldTail - shown_.rbegin());
    if (oldEnd == shown_.end() && newEnd == wanted.end()) {
        return;
    }
    ++revision_;
    ReplaceLines(start, shown_.size() - start - tail, wanted.size() - start - tail);
    // Only the lines that differ: copying all lines each time would cost more than showing the new ones.
    shown_.erase(oldEnd, shown_.end() - static_cast<std::ptrdiff_t>(tail));
    shown_.insert(shown_.begin() + static_cast<std::ptrdiff_t>(start), newEnd,
                  wanted.end() - static_cast<std::ptrdiff_t>(tail));
    if (shown_.empty()) {
        extent_ = 0;
        Send(LB_SETHORIZONTALEXTENT, 0);
    }
}

void NativeList::ReplaceLines(std::size_t start, std::size_t removed, std::size_t added) {
    const DrawingOff drawing(Window(), removed + added >= manyLines);
    if (removed == shown_.size() && removed != 0) {
        Send(LB_RESETCONTENT);
    } else {
        for (std::size_t line = start + removed; line > start; --line) {
            Send(LB_DELETESTRING, line - 1);
        }
    }
    std::size_t bytes = 0;
    for (std::size_t line = start; line < start + added; ++line) {
        bytes += (list_.Items()[line].size() + 1) * sizeof(wchar_t);
    }
    if (added >= manyLines) {
        Send(LB_INITSTORAGE, added, static_cast<LPARAM>(bytes));
    }
    for (std::size_t line = start; line < start + added; ++line) {
        const std::wstring text = ToWide(list_.Items()[line]);
        if (Send(LB_INSERTSTRING, line, reinterpret_cast<LPARAM>(text.c_str())) < 0) {
            throw std::bad_alloc();
        }
    }
    Widen(list_.Items(), start, added);
}

void NativeList::Widen(const std::vector<std::string>& lines, std::size_t start, std::size_t count) {
    const TextMeasure measure(Window());
    const int before = extent_;
    for (std::size_t line = start; line < start + count; ++line) {
        extent_ = std::max(extent_, measure.Width(lines[line], extent_));
    }
    if (extent_ != before) {
        const int width = extent_ + MarginOfLines();
        Send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width));
    }
}

int NativeList::MarginOfLines() const {
    return extentMargin;
}

void NativeList::MirrorSelection() {
    const int index = list_.ListIndex();
    if (!list_.MultiSelect) {
        const int line = SelectedOrFocused();
        if (Send(LB_GETCURSEL) != line) {
            Send(LB_SETCURSEL, static_cast<WPARAM>(line));
        }
        return;
    }
    MirrorSelectedLines();
    if (index >= 0 && Send(LB_GETCARETINDEX) != index) {
        Send(LB_SETCARETINDEX, static_cast<WPARAM>(index));
    }
}

/// A list of single selection shows one mark for both: the line selected in code, else the one with the focus.
int NativeList::SelectedOrFocused() const {
    for (int line = 0; line < list_.ListCount(); ++line) {
        if (list_.Selected(line)) {
            return line;
        }
    }
    return list_.ListIndex();
}

/// Touches the lines that differ: setting a line that is set already would scroll to it.
void NativeList::MirrorSelectedLines() {
    std::vector<bool> shown(static_cast<std::size_t>(list_.ListCount()), false);
    for (const int line : ShownSelection()) {
        shown[static_cast<std::size_t>(line)] = true;
    }
    std::vector<int> different;
    for (int line = 0; line < list_.ListCount(); ++line) {
        if (shown[static_cast<std::size_t>(line)] != list_.Selected(line)) {
            different.push_back(line);
        }
    }
    const DrawingOff drawing(Window(), different.size() >= manyLines);
    for (const int line : different) {
        Send(LB_SETSEL, list_.Selected(line) ? TRUE : FALSE, line);
    }
}

std::vector<int> NativeList::ShownSelection() const {
    const LRESULT count = Send(LB_GETSELCOUNT);
    std::vector<int> selected(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (!selected.empty()) {
        Send(LB_GETSELITEMS, selected.size(), reinterpret_cast<LPARAM>(selected.data()));
    }
    return selected;
}

void NativeList::Notified(WORD notification) {
    if (notification == LBN_SELCHANGE) {
        PostAction([this, choice = Shown()] { Take(choice); });
    } else if (notification == LBN_DBLCLK) {
        PostOpen();
    }
}

void NativeList::PostOpen() {
    PostAction([this, choice = Shown()] { Open(choice); });
}

NativeList::Choice NativeList::Shown() const {
    if (list_.MultiSelect) {
        return {revision_, static_cast<int>(Send(LB_GETCARETINDEX)), ShownSelection()};
    }
    const auto index = static_cast<int>(Send(LB_GETCURSEL));
    return {revision_, index, index >= 0 ? std::vector<int>{index} : std::vector<int>{}};
}

/// False when the program has put other lines into the list since: what the user saw is gone. A list that was merely
/// filled again with the same lines, as on a look for new folders, keeps its choice.
bool NativeList::StillMeans(const Choice& choice) const {
    return choice.revision == revision_ && (!itemsChanged_ || shown_ == list_.Items());
}

void NativeList::Take(const Choice& choice) {
    if (!StillMeans(choice)) {
        return;
    }
    selectionChanged_ = true;  // whatever the program has selected since, the window ends as the model does
    list_.UserSelected(choice.index, choice.selected);
}

/// The line is the one that was clicked, even where the first click of the two has got lost on the way.
void NativeList::Open(const Choice& choice) {
    if (!StillMeans(choice)) {
        return;
    }
    if (choice.index != list_.ListIndex()) {
        Take(choice);
    }
    if (StillMeans(choice)) {
        list_.UserOpened();
    }
}

}  // namespace marlok::win32
