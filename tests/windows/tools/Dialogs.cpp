#include "tests/windows/tools/Dialogs.h"

#include <algorithm>
#include <vector>

#include "tests/windows/tools/Console.h"
#include "tests/windows/tools/Deadline.h"
#include "tests/windows/tools/Shown.h"
#include "tests/windows/tools/UserInput.h"

namespace marlok::test {

namespace {

bool Shows(HWND window, const std::wstring& text) {
    const std::vector<HWND> children = VisibleChildren(window);
    return text.empty() || std::any_of(children.begin(), children.end(), [&](HWND child) {
               return Spoken(TextOf(child)).find(Spoken(text)) != std::wstring::npos;
           });
}

bool IsUsableEdit(HWND window) {
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    return IsOfClass(window, L"Edit") && (style & (WS_DISABLED | ES_READONLY)) == 0;
}

HWND EditFor(HWND window) {
    HWND focus = FocusOf(window);
    if (IsChild(window, focus) != FALSE && IsUsableEdit(focus)) {
        return focus;
    }
    std::vector<HWND> edits = VisibleChildren(window);
    std::erase_if(edits, [](HWND child) { return !IsUsableEdit(child); });
    if (edits.size() != 1) {
        throw NotYet(std::to_string(edits.size()) + " edit fields, none with the keyboard");
    }
    return edits.front();
}

}  // namespace

HWND DialogShowing(const std::wstring& name, const std::wstring& text, const std::wstring& button) {
    std::wstring shown;
    for (HWND window : WindowsNamed(name)) {
        if (Shows(window, text)) {
            static_cast<void>(ControlNamed(window, button, {L"Button"}));
            return window;
        }
        for (HWND child : VisibleChildren(window)) {
            shown += L" [" + OnOneLine(TextOf(child)) + L"]";
        }
    }
    throw NotYet(L"no window " + name + L" with that text; there is" + shown);
}

void TellDialog(HWND dialog) {
    const std::vector<HWND> children = VisibleChildren(dialog);
    for (HWND child : children) {
        const std::wstring text = TextOf(child);
        if (!IsOfClass(child, L"Button") && !text.empty()) {
            Say(L"text " + OnOneLine(text));
        }
    }
    for (HWND child : children) {
        if (IsOfClass(child, L"Button")) {
            Say(L"button " + Spoken(TextOf(child)));
        }
    }
}

void PressButton(HWND window, const std::wstring& caption) {
    HWND button = ControlNamed(window, caption, {L"Button"});
    RECT area{};
    GetClientRect(button, &area);
    Click(FreshSpotIn(button, area));
    Settle(window);
}

void TypeInto(HWND window, const std::wstring& text) {
    HWND edit = EditFor(window);
    BringToFront(window);
    if (FocusOf(window) != edit) {
        Click(MiddleOf(edit));
        Settle(edit);
    }
    Ask(edit, EM_SETSEL, 0, -1);
    if (text.empty()) {
        PressKeys(L"Delete");
    }
    TypeText(text);
    Settle(edit);
}

}  // namespace marlok::test
