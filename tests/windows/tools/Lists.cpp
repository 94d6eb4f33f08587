#include "tests/windows/tools/Lists.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "tests/windows/tools/Deadline.h"
#include "tests/windows/tools/Shown.h"
#include "tests/windows/tools/UserInput.h"

namespace marlok::test {

namespace {

/// What a list box and a combo box call the same thing.
struct Dialect {
    UINT count;
    UINT length;
    UINT text;
};

bool IsComboBox(HWND list) {
    return IsOfClass(list, L"ComboBox");
}

Dialect DialectOf(HWND list) {
    return IsComboBox(list) ? Dialect{CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT}
                            : Dialect{LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT};
}

std::wstring TextOfLine(HWND list, const Dialect& dialect, WPARAM line) {
    const LRESULT length = Ask(list, dialect.length, line);
    if (length < 0) {
        throw NotYet("the list has changed");
    }
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    // The list may get a longer line before it answers: room for that, not only for what it said.
    text.resize(text.size() + 4096);
    const LRESULT got = Ask(list, dialect.text, line, reinterpret_cast<LPARAM>(text.data()));
    if (got < 0) {
        throw NotYet("the list has changed");
    }
    text.resize(static_cast<std::size_t>(got));
    return text;
}

bool IsSelected(HWND list, WPARAM line) {
    if (IsComboBox(list)) {
        return Ask(list, CB_GETCURSEL) == static_cast<LRESULT>(line);
    }
    return Ask(list, LB_GETSEL, line) > 0;
}

/// Scrolls the line into view and says where it is.
RECT PlaceOfLine(HWND list, int line) {
    const LRESULT count = Ask(list, LB_GETCOUNT);
    if (line < 0 || line >= count) {
        throw NotYet("no line " + std::to_string(line) + " in a list of " + std::to_string(count));
    }
    RECT place{};
    RECT client{};
    GetClientRect(list, &client);
    const auto index = static_cast<WPARAM>(line);
    Ask(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&place));
    if (place.top < client.top || place.bottom > client.bottom) {
        Ask(list, LB_SETTOPINDEX, index);
        Ask(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&place));
    }
    place.left = std::max(place.left, client.left);
    place.right = std::min(place.right, client.right);
    return place;
}

void ClickLine(HWND list, int line, Clicks clicks = Clicks::once) {
    Click(FreshSpotIn(list, PlaceOfLine(list, line)), clicks);
}

/// @throws std::runtime_error when it cannot be done: starting again would be more than was asked for.
void AddLines(HWND list, const std::vector<int>& lines) {
    try {
        for (const int line : lines) {
            // A moving mouse brings along what the real keyboard says, and would let the key go: it is there already.
            const Spot spot = FreshSpotIn(list, PlaceOfLine(list, line));
            PointAt(spot);
            Settle(list);
            const HeldKey control(VK_CONTROL);
            Click(spot);
            Settle(list);
        }
    } catch (const NotYet& failure) {
        throw std::runtime_error(failure.what());
    }
}

void ToggleLines(HWND list, const std::vector<int>& lines) {
    const int count = static_cast<int>(Ask(list, LB_GETCOUNT));
    for (int line = 0; line < count; ++line) {
        const bool wanted = std::find(lines.begin(), lines.end(), line) != lines.end();
        if (wanted != IsSelected(list, static_cast<WPARAM>(line))) {
            ClickLine(list, line);
            Settle(list);
        }
    }
}

/// The list that hangs down from the combo box: a window of its own, of which a program has one at a time.
HWND OpenedList(HWND combo) {
    for (HWND window : VisibleTopWindows()) {
        const bool sameThread = GetWindowThreadProcessId(window, nullptr) == GetWindowThreadProcessId(combo, nullptr);
        if (sameThread && IsOfClass(window, L"ComboLBox")) {
            return window;
        }
    }
    throw NotYet("the combo box does not show its list");
}

std::optional<int> LineStarting(const std::vector<Line>& lines, const std::wstring& prefix) {
    const auto length = static_cast<int>(prefix.size());
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::wstring start = lines[index].text.substr(0, prefix.size());
        if (CompareStringOrdinal(start.c_str(), -1, prefix.c_str(), length, TRUE) == CSTR_EQUAL) {
            return static_cast<int>(index);
        }
    }
    return {};
}

}  // namespace

int CountLines(HWND list) {
    return static_cast<int>(Ask(list, DialectOf(list).count));
}

std::vector<Line> LinesOf(HWND list) {
    const Dialect dialect = DialectOf(list);
    const LRESULT count = Ask(list, dialect.count);
    std::vector<Line> lines;
    for (LRESULT line = 0; line < count; ++line) {
        const auto index = static_cast<WPARAM>(line);
        lines.push_back({TextOfLine(list, dialect, index), IsSelected(list, index)});
    }
    return lines;
}

void SelectLines(HWND list, const std::vector<int>& lines) {
    for (const int line : lines) {
        PlaceOfLine(list, line);  // all or none
    }
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(list, GWL_STYLE));
    if ((style & LBS_MULTIPLESEL) != 0) {
        ToggleLines(list, lines);
        return;
    }
    if (lines.size() > 1 && (style & LBS_EXTENDEDSEL) == 0) {
        throw NotYet("the list lets only one line be selected");
    }
    ClickLine(list, lines.front());
    Settle(list);
    if (lines.size() > 1) {
        AddLines(list, {lines.begin() + 1, lines.end()});
    }
}

void OpenLine(HWND list, int line) {
    ClickLine(list, line, Clicks::twice);
    Settle(list);
}

void ChooseLine(HWND combo, const std::wstring& prefix) {
    if (Ask(combo, CB_GETDROPPEDSTATE) == 0) {
        Click(MiddleOf(combo));
        Settle(combo);
        throw NotYet("the combo box does not open");
    }
    // What it holds now: opening it may have brought it up to date.
    const std::optional<int> line = LineStarting(LinesOf(combo), prefix);
    if (!line) {
        throw NotYet("no line in the combo box starts with that");
    }
    HWND opened = OpenedList(combo);
    // Bringing another window to the front would close the list.
    ClickWhereItIs(FreshSpotIn(opened, PlaceOfLine(opened, *line)));
    Settle(combo);
}

}  // namespace marlok::test
