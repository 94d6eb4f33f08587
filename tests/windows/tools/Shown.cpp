#include "tests/windows/tools/Shown.h"

#include <algorithm>
#include <array>

#include "tests/windows/tools/Console.h"

namespace marlok::test {

namespace {

constexpr std::size_t longestText = 32768;
constexpr UINT textTime = 2000;    // milliseconds
constexpr UINT answerTime = 5000;  // milliseconds

BOOL CALLBACK AppendWindow(HWND window, LPARAM list) {
    if (IsWindowVisible(window) != FALSE) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    }
    return TRUE;
}

/// A name and the number that may follow it behind "#", 0 when there is none.
struct Numbered {
    std::wstring name;
    std::size_t number;
};

Numbered SplitNumber(const std::wstring& text) {
    const std::size_t mark = text.rfind(L'#');
    if (mark == std::wstring::npos || mark + 1 == text.size() ||
        text.find_first_not_of(L"0123456789", mark + 1) != std::wstring::npos) {
        return {text, 0};
    }
    return {text.substr(0, mark), std::stoul(text.substr(mark + 1))};
}

/// The one that the number, counted from 1, stands for; the first without a number.
/// @throws NotYet when there is none.
HWND Pick(const std::vector<HWND>& found, std::size_t number, const std::wstring& what) {
    const std::size_t index = number == 0 ? 0 : number - 1;
    if (index >= found.size()) {
        throw NotYet(L"no " + what);
    }
    return found[index];
}

template <typename Condition>
std::vector<HWND> Only(std::vector<HWND> windows, const Condition& condition) {
    std::erase_if(windows, [&](HWND window) { return !condition(window); });
    return windows;
}

bool HasText(HWND window, const std::wstring& text) {
    const std::vector<HWND> children = VisibleChildren(window);
    return std::any_of(children.begin(), children.end(),
                       [&](HWND child) { return Spoken(TextOf(child)).find(text) != std::wstring::npos; });
}

}  // namespace

std::wstring TextOf(HWND window) {
    std::wstring text(longestText, L'\0');
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                            textTime, &length) == 0) {
        return L"";
    }
    text.resize(std::min<std::size_t>(length, longestText));
    return text;
}

std::wstring TitleOf(HWND window) {
    std::array<wchar_t, 512> title{};
    const int length = InternalGetWindowText(window, title.data(), static_cast<int>(title.size()));
    return {title.data(), static_cast<std::size_t>(length)};
}

LRESULT Ask(HWND window, UINT message, WPARAM first, LPARAM second) {
    DWORD_PTR answer = 0;
    if (SendMessageTimeoutW(window, message, first, second, SMTO_ABORTIFHUNG, answerTime, &answer) == 0) {
        throw NotYet("the window does not answer");
    }
    return static_cast<LRESULT>(answer);
}

std::wstring ClassOf(HWND window) {
    std::array<wchar_t, 256> name{};
    const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return {name.data(), static_cast<std::size_t>(length)};
}

bool IsOfClass(HWND window, const std::wstring& name) {
    return CompareStringOrdinal(ClassOf(window).c_str(), -1, name.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring Spoken(const std::wstring& text) {
    std::wstring spoken;
    for (const wchar_t character : text) {
        const bool blank = character == L' ' || character == L'\r' || character == L'\n' || character == L'\t';
        if (!blank && character != L'&') {
            spoken += character;
        } else if (blank && !spoken.empty() && spoken.back() != L' ') {
            spoken += L' ';
        }
    }
    if (!spoken.empty() && spoken.back() == L' ') {
        spoken.pop_back();
    }
    return spoken;
}

std::vector<HWND> VisibleTopWindows() {
    std::vector<HWND> windows;
    EnumWindows(AppendWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

std::vector<HWND> VisibleChildren(HWND window) {
    std::vector<HWND> children;
    EnumChildWindows(window, AppendWindow, reinterpret_cast<LPARAM>(&children));
    return children;
}

std::vector<HWND> WindowsNamed(const std::wstring& name) {
    const std::size_t bar = name.find(L'|');
    const Numbered title = SplitNumber(name.substr(0, bar));
    std::vector<HWND> found =
        Only(VisibleTopWindows(), [&](HWND window) { return Spoken(TitleOf(window)) == Spoken(title.name); });
    if (bar != std::wstring::npos) {
        const std::wstring text = Spoken(name.substr(bar + 1));
        found = Only(std::move(found), [&](HWND window) { return HasText(window, text); });
    }
    if (title.number != 0 || found.empty()) {
        return {Pick(found, title.number, L"window " + name)};
    }
    return found;
}

HWND ControlNamed(HWND window, const std::wstring& name, const std::vector<std::wstring>& classes) {
    const Numbered wanted = SplitNumber(name);
    const std::vector<HWND> children = VisibleChildren(window);
    const auto ofClass = Only(children, [&](HWND child) { return IsOfClass(child, wanted.name); });
    if (!ofClass.empty()) {
        return Pick(ofClass, wanted.number, L"control " + name);
    }
    const auto ofText = Only(children, [&](HWND child) {
        return std::any_of(classes.begin(), classes.end(), [&](const auto& kind) { return IsOfClass(child, kind); }) &&
               Spoken(TextOf(child)) == Spoken(wanted.name);
    });
    return Pick(ofText, wanted.number, L"control " + name);
}

HWND ControlNamed(const std::wstring& window, const std::wstring& name, const std::vector<std::wstring>& classes) {
    const std::vector<HWND> windows = WindowsNamed(window);
    for (std::size_t index = 0;; ++index) {
        try {
            return ControlNamed(windows[index], name, classes);
        } catch (const NotYet& missing) {
            if (index + 1 == windows.size()) {
                throw NotYet(missing.what() + (" in the window " + ToUtf8(window)));
            }
        }
    }
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

}  // namespace marlok::test
