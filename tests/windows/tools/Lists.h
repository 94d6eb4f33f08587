#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// List boxes and combo boxes of any process.
namespace marlok::test {

struct Line {
    std::wstring text;
    bool selected;
};

/// How many lines it has.
/// @throws NotYet when it does not answer.
[[nodiscard]] int CountLines(HWND list);

/// @throws NotYet when it does not answer.
[[nodiscard]] std::vector<Line> LinesOf(HWND list);

/// Clicks the lines of a list box, counted from 0, so that they are the only ones selected: the first one plainly, the
/// others with Ctrl.
/// @throws NotYet when there is no such line or it cannot be clicked; nothing was clicked then.
void SelectLines(HWND list, const std::vector<int>& lines);

/// Clicks a line of a list box twice.
/// @throws NotYet as above.
void OpenLine(HWND list, int line);

/// Opens a combo box and clicks the first line that starts with `prefix`; case does not count.
/// @throws NotYet when there is no such line or it cannot be clicked.
void ChooseLine(HWND combo, const std::wstring& prefix);

}  // namespace marlok::test
