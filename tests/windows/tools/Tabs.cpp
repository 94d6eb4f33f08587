#include "tests/windows/tools/Tabs.h"

// Behind windows.h, whose types it uses.
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "tests/windows/tools/Deadline.h"
#include "tests/windows/tools/RemoteMemory.h"
#include "tests/windows/tools/Shown.h"
#include "tests/windows/tools/UserInput.h"

namespace marlok::test {

namespace {

/// What a tab's caption is fetched through, in the memory of the other process.
struct Exchange {
    TCITEMW item;
    std::array<wchar_t, 256> text;
};

/// Sends a message that points into `memory`. Asked first whether it answers at all: one that gave up waiting would
/// have to leave the memory behind.
LRESULT AskThrough(const RemoteMemory& memory, HWND tabs, UINT message, WPARAM index) {
    Ask(tabs, WM_NULL);
    return SendMessageW(tabs, message, index, memory.At(0));
}

std::wstring CaptionOf(HWND tabs, WPARAM index) {
    const RemoteMemory memory(tabs, sizeof(Exchange));
    Exchange exchange{};
    exchange.item.mask = TCIF_TEXT;
    exchange.item.pszText = reinterpret_cast<wchar_t*>(memory.At(offsetof(Exchange, text)));
    exchange.item.cchTextMax = static_cast<int>(exchange.text.size());
    memory.Write(0, &exchange, sizeof(exchange));
    if (AskThrough(memory, tabs, TCM_GETITEMW, index) == FALSE) {
        throw NotYet("a tab does not tell its caption");
    }
    memory.Read(0, &exchange, sizeof(exchange));
    return exchange.text.data();
}

RECT PlaceOfTab(HWND tabs, WPARAM index) {
    const RemoteMemory memory(tabs, sizeof(RECT));
    RECT place{};
    if (AskThrough(memory, tabs, TCM_GETITEMRECT, index) == FALSE) {
        throw NotYet("a tab does not tell its place");
    }
    memory.Read(0, &place, sizeof(place));
    return place;
}

}  // namespace

std::vector<std::wstring> CaptionsOf(HWND tabs) {
    std::vector<std::wstring> captions;
    const auto count = static_cast<WPARAM>(Ask(tabs, TCM_GETITEMCOUNT));
    for (WPARAM index = 0; index < count; ++index) {
        captions.push_back(CaptionOf(tabs, index));
    }
    return captions;
}

void ClickTab(HWND tabs, const std::wstring& caption) {
    const std::vector<std::wstring> captions = CaptionsOf(tabs);
    const auto found = std::find_if(captions.begin(), captions.end(),
                                    [&](const auto& text) { return Spoken(text) == Spoken(caption); });
    if (found == captions.end()) {
        std::wstring known;
        for (const std::wstring& text : captions) {
            known += L" [" + text + L"]";
        }
        throw NotYet(L"no tab " + caption + L"; there are" + known);
    }
    Click(FreshSpotIn(tabs, PlaceOfTab(tabs, static_cast<WPARAM>(found - captions.begin()))));
    Settle(tabs);
}

std::wstring FrontTab(HWND tabs) {
    const LRESULT current = Ask(tabs, TCM_GETCURSEL);
    return current < 0 ? L"" : CaptionOf(tabs, static_cast<WPARAM>(current));
}

}  // namespace marlok::test
