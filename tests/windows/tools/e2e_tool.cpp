// What the end-to-end tests need of Windows and cannot have from outside it:
//
//   e2e_tool hold PATH                   keeps a file open for itself alone until standard input ends; says "held"
//   e2e_tool attributes PATH [WORD]      sets the attribute word when there is one, then tells it
//   e2e_tool press TITLE BUTTON SECONDS  waits for a window of that title with that button, tells the texts in it (one
//                                        a line) and presses the button
//   e2e_tool close TITLE SECONDS         waits for a window of that title and asks it to close
//   e2e_tool windows                     the titles of all visible top-level windows, one a line
//
// The exit code is 0 when it was done, 1 when not (the reason is on standard error), 2 for a wrong call.

#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string ToUtf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

void Say(const std::wstring& line) {
    std::printf("%s\n", ToUtf8(line).c_str());
    std::fflush(stdout);
}

int Fail(const char* what) {
    std::fprintf(stderr, "e2e_tool: %s: error %lu\n", what, GetLastError());
    return 1;
}

/// The text of a window of any process; "" when it does not answer within two seconds.
std::wstring TextOf(HWND window) {
    std::wstring text(1024, L'\0');
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                            2000, &length) == 0) {
        return L"";
    }
    text.resize(length);
    return text;
}

BOOL CALLBACK AppendWindow(HWND window, LPARAM list) {
    if (IsWindowVisible(window) != FALSE) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    }
    return TRUE;
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

/// The visible child with that caption (an access mark "&" in it does not count); null when there is none.
HWND FindButton(HWND window, const std::wstring& caption) {
    for (HWND child : VisibleChildren(window)) {
        std::wstring text = TextOf(child);
        std::erase(text, L'&');
        if (text == caption) {
            return child;
        }
    }
    return nullptr;
}

/// Polls until `act` did what it is there for or the time is over.
template <typename Action>
bool Within(const std::wstring& seconds, const Action& act) {
    const ULONGLONG end = GetTickCount64() + std::stoull(seconds) * 1000;
    do {
        for (HWND window : VisibleTopWindows()) {
            if (act(window)) {
                return true;
            }
        }
        Sleep(50);
    } while (GetTickCount64() < end);
    return false;
}

int Hold(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return Fail("cannot open the file");
    }
    Say(L"held");
    while (std::getchar() != EOF) {
    }
    return CloseHandle(file) != FALSE ? 0 : Fail("cannot close the file");
}

int Attributes(const std::wstring& path, const std::wstring* word) {
    if (word != nullptr && SetFileAttributesW(path.c_str(), std::stoul(*word)) == FALSE) {
        return Fail("cannot set the attributes");
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return Fail("no attributes");
    }
    Say(std::to_wstring(attributes));
    return 0;
}

int Press(const std::wstring& title, const std::wstring& button, const std::wstring& seconds) {
    const bool done = Within(seconds, [&](HWND window) {
        if (TextOf(window) != title) {
            return false;
        }
        HWND found = FindButton(window, button);
        if (found == nullptr) {
            return false;
        }
        for (HWND child : VisibleChildren(window)) {
            Say(TextOf(child));
        }
        return PostMessageW(found, BM_CLICK, 0, 0) != FALSE;
    });
    return done ? 0 : Fail("no such button");
}

int CloseWindowOf(const std::wstring& title, const std::wstring& seconds) {
    const bool done = Within(
        seconds, [&](HWND window) { return TextOf(window) == title && PostMessageW(window, WM_CLOSE, 0, 0) != FALSE; });
    return done ? 0 : Fail("no such window");
}

int ListWindows() {
    for (HWND window : VisibleTopWindows()) {
        Say(TextOf(window));
    }
    return 0;
}

int Run(const std::vector<std::wstring>& words) {
    const std::wstring verb = words.empty() ? L"" : words[0];
    if (verb == L"hold" && words.size() == 2) {
        return Hold(words[1]);
    }
    if (verb == L"attributes" && (words.size() == 2 || words.size() == 3)) {
        return Attributes(words[1], words.size() == 3 ? &words[2] : nullptr);
    }
    if (verb == L"press" && words.size() == 4) {
        return Press(words[1], words[2], words[3]);
    }
    if (verb == L"close" && words.size() == 3) {
        return CloseWindowOf(words[1], words[2]);
    }
    if (verb == L"windows" && words.size() == 1) {
        return ListWindows();
    }
    std::fprintf(stderr, "e2e_tool: wrong call\n");
    return 2;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) {
        return Fail("no command line");
    }
    const std::vector<std::wstring> list(words + 1, words + count);
    LocalFree(words);
    return Run(list);
}
