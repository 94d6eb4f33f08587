#include "tests/windows/tools/UserInput.h"

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "tests/windows/tools/Console.h"
#include "tests/windows/tools/Deadline.h"

namespace marlok::test {

namespace {

void Send(INPUT input) {
    if (SendInput(1, &input, sizeof(input)) != 1) {
        throw std::runtime_error("the system takes no input");
    }
}

void SendButton(DWORD flags) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    Send(input);
}

bool IsExtended(WORD key) {
    // The block between letters and digits; without the mark its keys are those of the number pad.
    return (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_INSERT || key == VK_DELETE;
}

void SendKey(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags | (IsExtended(key) ? static_cast<DWORD>(KEYEVENTF_EXTENDEDKEY) : 0U);
    Send(input);
}

void SendCharacter(wchar_t character, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = character;
    input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
    Send(input);
}

std::optional<WORD> KeyNamed(const std::wstring& name) {
    static const std::map<std::wstring, WORD> names{
        {L"Ctrl", VK_CONTROL},  {L"Shift", VK_SHIFT},   {L"Alt", VK_MENU},      {L"Tab", VK_TAB},
        {L"Enter", VK_RETURN},  {L"Escape", VK_ESCAPE}, {L"Space", VK_SPACE},   {L"Up", VK_UP},
        {L"Down", VK_DOWN},     {L"Left", VK_LEFT},     {L"Right", VK_RIGHT},   {L"Home", VK_HOME},
        {L"End", VK_END},       {L"PageUp", VK_PRIOR},  {L"PageDown", VK_NEXT}, {L"Delete", VK_DELETE},
        {L"Insert", VK_INSERT}, {L"Backspace", VK_BACK}};
    if (const auto known = names.find(name); known != names.end()) {
        return known->second;
    }
    if (name.size() == 1 && VkKeyScanW(name[0]) != -1) {
        return static_cast<WORD>(VkKeyScanW(name[0]) & 0xFF);
    }
    if (name.size() >= 2 && name[0] == L'F' && name.find_first_not_of(L"0123456789", 1) == std::wstring::npos) {
        return static_cast<WORD>(VK_F1 + std::stoi(name.substr(1)) - 1);
    }
    return {};
}

std::vector<WORD> KeysIn(const std::wstring& keys) {
    std::vector<WORD> found;
    for (std::size_t start = 0; start <= keys.size();) {
        const std::size_t end = std::min(keys.find(L'+', start + 1), keys.size());
        const std::wstring name = keys.substr(start, end - start);
        const std::optional<WORD> key = KeyNamed(name);
        if (!key) {
            throw std::runtime_error("no key " + ToUtf8(name));
        }
        found.push_back(*key);
        start = end + 1;
    }
    return found;
}

POINT OnScreen(const Spot& spot) {
    POINT point = spot.point;
    ClientToScreen(spot.control, &point);
    return point;
}

/// False when another window lies there, such as a dialog.
bool IsOnTop(HWND control, POINT onScreen) {
    HWND there = WindowFromPoint(onScreen);
    return there == control || IsChild(control, there) != FALSE;
}

}  // namespace

void BringToFront(HWND window) {
    HWND root = GetAncestor(window, GA_ROOT);
    if (IsWindowEnabled(root) == FALSE) {
        throw NotYet("the window is disabled: another one has to be answered first");
    }
    if (GetForegroundWindow() != root) {
        SetForegroundWindow(root);
        throw NotYet("the window does not come to the front");
    }
}

Spot MiddleOf(HWND control) {
    RECT area{};
    GetClientRect(control, &area);
    return {control, {area.right / 2, area.bottom / 2}};
}

Spot FreshSpotIn(HWND control, const RECT& area) {
    Spot spot{control, {area.left + std::min<LONG>(12, (area.right - area.left) / 3), (area.top + area.bottom) / 2}};
    POINT last{};
    GetCursorPos(&last);
    ScreenToClient(control, &last);
    const int reach = GetSystemMetrics(SM_CXDOUBLECLK) + 1;
    if (std::abs(last.x - spot.point.x) <= reach) {
        spot.point.x = std::min<LONG>(spot.point.x + 2 * reach, area.right - 1);
    }
    return spot;
}

void PointAt(const Spot& spot) {
    const POINT onScreen = OnScreen(spot);
    if (SetCursorPos(onScreen.x, onScreen.y) == FALSE) {
        throw std::runtime_error("the mouse does not move");
    }
}

void Click(const Spot& spot, Clicks clicks) {
    BringToFront(spot.control);
    ClickWhereItIs(spot, clicks);
}

void ClickWhereItIs(const Spot& spot, Clicks clicks) {
    if (IsWindowEnabled(spot.control) == FALSE) {
        throw NotYet("the control is disabled");
    }
    if (!IsOnTop(spot.control, OnScreen(spot))) {
        throw NotYet("something else lies on top of the control");
    }
    PointAt(spot);
    for (int count = 0; count < static_cast<int>(clicks); ++count) {
        SendButton(MOUSEEVENTF_LEFTDOWN);
        SendButton(MOUSEEVENTF_LEFTUP);
    }
}

HeldKey::HeldKey(WORD key) : key_(key) {
    SendKey(key_, 0);
}

HeldKey::~HeldKey() {
    SendKey(key_, KEYEVENTF_KEYUP);
}

void PressKeys(const std::wstring& keys) {
    // Let go in the opposite order.
    std::vector<std::unique_ptr<HeldKey>> held;
    for (const WORD key : KeysIn(keys)) {
        held.push_back(std::make_unique<HeldKey>(key));
    }
    while (!held.empty()) {
        held.pop_back();
    }
}

void TypeText(const std::wstring& text) {
    for (const wchar_t character : text) {
        SendCharacter(character, 0);
        SendCharacter(character, KEYEVENTF_KEYUP);
    }
}

void Settle(HWND window) {
    constexpr UINT patience = 2000;  // milliseconds
    // A sent message is answered while the program looks for its next one, which it takes then: after so many answers
    // it has taken as many messages. A second batch follows what those have led to.
    constexpr std::array<int, 3> batches{16, 8, 4};
    for (const int answers : batches) {
        for (int count = 0; count < answers; ++count) {
            if (SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, patience, nullptr) == 0) {
                return;
            }
        }
        Sleep(10);
    }
}

HWND FocusOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    const DWORD thread = GetWindowThreadProcessId(window, nullptr);
    return GetGUIThreadInfo(thread, &info) != FALSE ? info.hwndFocus : nullptr;
}

}  // namespace marlok::test
