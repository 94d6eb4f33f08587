#include "tests/windows/tools/Commands.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <stdexcept>

#include "tests/windows/tools/Console.h"
#include "tests/windows/tools/Deadline.h"
#include "tests/windows/tools/Dialogs.h"
#include "tests/windows/tools/Lists.h"
#include "tests/windows/tools/PaintProbe.h"
#include "tests/windows/tools/Shown.h"
#include "tests/windows/tools/Tabs.h"
#include "tests/windows/tools/UserInput.h"
#include "tests/windows/tools/Volumes.h"

namespace marlok::test {

namespace {

using Words = std::vector<std::wstring>;

const std::vector<std::wstring> lists{L"ListBox", L"ComboBox"};
const std::vector<std::wstring> buttons{L"Button"};

[[noreturn]] void FailWithSystemError(const std::string& what) {
    throw std::runtime_error(what + ": error " + std::to_string(GetLastError()));
}

/// Calls `act` with the first of the windows named so, until it does not say NotYet.
template <typename Act>
void WithWindow(const std::wstring& name, const std::wstring& seconds, const Act& act) {
    Within(Deadline(seconds), [&] { return act(WindowsNamed(name).front()); });
}

template <typename Act>
void WithControl(const Words& words, const Words& classes, const Act& act) {
    Within(Deadline(words.back()), [&] { return act(ControlNamed(words[0], words[1], classes)); });
}

template <typename Act>
void WithTabs(const Words& words, const Act& act) {
    Within(Deadline(words.back()), [&] { return act(ControlNamed(words[0], L"SysTabControl32", {})); });
}

void Windows(const Words&) {
    for (HWND window : VisibleTopWindows()) {
        Say(TitleOf(window));
    }
}

/// Left, top, width and height, with tabs between.
std::wstring Described(const RECT& place) {
    return std::to_wstring(place.left) + L"\t" + std::to_wstring(place.top) + L"\t" +
           std::to_wstring(place.right - place.left) + L"\t" + std::to_wstring(place.bottom - place.top);
}

void Places(const Words&) {
    for (HWND window : VisibleTopWindows()) {
        Say(Described(PlaceOf(window)) + L"\t" + OnOneLine(TitleOf(window)));
    }
}

void Controls(const Words& words) {
    WithWindow(words[0], words[1], [](HWND window) {
        for (HWND child : VisibleChildren(window)) {
            RECT place = PlaceOf(child);
            MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
            Say(ClassOf(child) + L"\t" + std::to_wstring(GetDlgCtrlID(child)) + L"\t" + Described(place) + L"\t" +
                (IsWindowEnabled(child) != FALSE ? L"enabled" : L"disabled") + L"\t" + OnOneLine(TextOf(child)));
        }
    });
}

void Lines(const Words& words) {
    WithControl(words, lists, [](HWND list) {
        for (const Line& line : LinesOf(list)) {
            Say((line.selected ? L"*" : L" ") + OnOneLine(line.text));
        }
    });
}

void Count(const Words& words) {
    WithControl(words, lists, [](HWND list) { Say(std::to_wstring(CountLines(list))); });
}

void Select(const Words& words) {
    std::vector<int> wanted;
    for (std::size_t start = 0; start < words[2].size();) {
        const std::size_t end = std::min(words[2].find(L',', start), words[2].size());
        wanted.push_back(std::stoi(words[2].substr(start, end - start)));
        start = end + 1;
    }
    if (wanted.empty()) {
        throw std::runtime_error("no lines to select");
    }
    WithControl(words, lists, [&](HWND list) { SelectLines(list, wanted); });
}

void Open(const Words& words) {
    WithControl(words, lists, [&](HWND list) { OpenLine(list, std::stoi(words[2])); });
}

void Choose(const Words& words) {
    WithControl(words, lists, [&](HWND combo) { ChooseLine(combo, words[2]); });
}

void Tab(const Words& words) {
    WithTabs(words, [&](HWND tabs) {
        if (Spoken(FrontTab(tabs)) != Spoken(words[1])) {
            ClickTab(tabs, words[1]);
        }
        if (Spoken(FrontTab(tabs)) != Spoken(words[1])) {
            throw NotYet(L"the tab " + words[1] + L" does not come to the front");
        }
    });
}

void TabsOf(const Words& words) {
    WithTabs(words, [](HWND tabs) {
        const std::wstring front = FrontTab(tabs);
        for (const std::wstring& caption : CaptionsOf(tabs)) {
            Say((caption == front ? L"*" : L" ") + caption);
        }
    });
}

void ClickButton(HWND button) {
    RECT area{};
    GetClientRect(button, &area);
    Click(FreshSpotIn(button, area));
    Settle(button);
}

void ClickNamed(const Words& words) {
    WithControl(words, buttons, ClickButton);
}

void TellState(HWND button) {
    const LRESULT state = Ask(button, BM_GETCHECK);
    const std::wstring checked = state == BST_CHECKED ? L"checked" : state == BST_UNCHECKED ? L"unchecked" : L"greyed";
    Say(checked + (IsWindowEnabled(button) != FALSE ? L" enabled" : L" disabled"));
}

void State(const Words& words) {
    WithControl(words, buttons, TellState);
}

void Check(const Words& words) {
    WithControl(words, buttons, [](HWND box) {
        ClickButton(box);
        TellState(box);
    });
}

void Answer(const Words& words) {
    const Deadline deadline(words[3]);
    HWND dialog = Within(deadline, [&] { return DialogShowing(words[0], words[1], words[2]); });
    TellDialog(dialog);
    Within(deadline, [&] { PressButton(dialog, words[2]); });
    Within(deadline, [&] {
        if (IsWindowVisible(dialog) != FALSE) {
            throw NotYet("the dialog stays open");
        }
    });
}

void Type(const Words& words) {
    WithWindow(words[0], words[2], [&](HWND window) { TypeInto(window, words[1]); });
}

void Key(const Words& words) {
    WithWindow(words[0], words[2], [&](HWND window) {
        BringToFront(window);
        PressKeys(words[1]);
        Settle(window);
    });
}

void Paint(const Words& words) {
    WithWindow(words[0], words[2], [&](HWND window) {
        const PaintTimes times = ProbePainting(window, static_cast<ULONGLONG>(std::stod(words[1]) * 1000));
        Say(std::to_wstring(times.painted) + L" " + std::to_wstring(times.longest) + L" " +
            std::to_wstring(times.longestReply));
    });
}

void Close(const Words& words) {
    WithWindow(words[0], words[1], [](HWND window) {
        if (PostMessageW(window, WM_CLOSE, 0, 0) == FALSE) {
            FailWithSystemError("cannot close the window");
        }
    });
}

void Hold(const Words& words) {
    HANDLE file = CreateFileW(words[0].c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        FailWithSystemError("cannot open the file");
    }
    Say(L"held");
    while (std::getchar() != EOF) {
    }
    if (CloseHandle(file) == FALSE) {
        FailWithSystemError("cannot close the file");
    }
}

void Attributes(const Words& words) {
    if (words.size() == 2 && SetFileAttributesW(words[0].c_str(), std::stoul(words[1])) == FALSE) {
        FailWithSystemError("cannot set the attributes");
    }
    const DWORD attributes = GetFileAttributesW(words[0].c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        FailWithSystemError("no attributes");
    }
    Say(std::to_wstring(attributes));
}

wchar_t LetterIn(const std::wstring& word) {
    if (word.size() != 1) {
        throw std::runtime_error("no drive letter");
    }
    return word[0];
}

void Plug(const Words& words) {
    const DriveKind kind = words[1] == L"removable" ? DriveKind::removable : DriveKind::fixed;
    PlugDrive(LetterIn(words[0]), kind, ToUtf8(words[2]), words.size() == 4 ? ToUtf8(words[3]) : "");
}

void Unplug(const Words& words) {
    UnplugDrive(LetterIn(words[0]));
}

void TellVolume(const Words& words) {
    const Volume volume = VolumeAt(words[0]);
    Say(volume.fileSystem + L"\t" + std::to_wstring(volume.serial) + L"\t" + std::to_wstring(volume.kind) + L"\t" +
        OnOneLine(volume.label));
}

struct Outcome {
    int code;
    std::string reason;
};

Outcome Perform(const Words& words);

void Serve(const Words&) {
    for (std::string line; std::getline(std::cin, line);) {
        Words words;
        for (std::size_t start = 0; start <= line.size();) {
            const std::size_t end = std::min(line.find('\t', start), line.size());
            words.push_back(ToWide(line.substr(start, end - start)));
            start = end + 1;
        }
        const Outcome outcome = Perform(words);
        Say(L"\a" + std::to_wstring(outcome.code) + L" " + OnOneLine(ToWide(outcome.reason)));
    }
}

struct Command {
    std::size_t least;  ///< words behind the verb
    std::size_t most;
    void (*run)(const Words&);
};

const std::map<std::wstring, Command> commands{
    {L"windows", {0, 0, Windows}},       {L"places", {0, 0, Places}}, {L"controls", {2, 2, Controls}},
    {L"lines", {3, 3, Lines}},           {L"select", {4, 4, Select}}, {L"open", {4, 4, Open}},
    {L"choose", {4, 4, Choose}},         {L"tab", {3, 3, Tab}},       {L"tabs", {2, 2, TabsOf}},
    {L"click", {3, 3, ClickNamed}},      {L"check", {3, 3, Check}},   {L"state", {3, 3, State}},
    {L"answer", {4, 4, Answer}},         {L"type", {3, 3, Type}},     {L"key", {3, 3, Key}},
    {L"paint", {3, 3, Paint}},           {L"close", {2, 2, Close}},   {L"hold", {1, 1, Hold}},
    {L"attributes", {1, 2, Attributes}}, {L"plug", {3, 4, Plug}},     {L"unplug", {1, 1, Unplug}},
    {L"volume", {1, 1, TellVolume}},     {L"count", {3, 3, Count}},   {L"serve", {0, 0, Serve}}};

Outcome Perform(const Words& words) {
    const auto command = commands.find(words.empty() ? L"" : words[0]);
    const std::size_t count = words.empty() ? 0 : words.size() - 1;
    if (command == commands.end() || count < command->second.least || count > command->second.most) {
        return {2, "wrong call"};
    }
    try {
        command->second.run({words.begin() + 1, words.end()});
        return {0, ""};
    } catch (const std::exception& failure) {
        return {1, failure.what()};
    }
}

}  // namespace

int Run(const std::vector<std::wstring>& words) {
    const Outcome outcome = Perform(words);
    if (outcome.code != 0) {
        Complain(outcome.reason);
    }
    return outcome.code;
}

}  // namespace marlok::test
