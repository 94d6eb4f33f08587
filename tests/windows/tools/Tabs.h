#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// Tab controls of any process.
namespace marlok::test {

/// The captions, in their order.
[[nodiscard]] std::vector<std::wstring> CaptionsOf(HWND tabs);

/// Clicks the tab with that caption.
/// @throws NotYet when there is none (the text names those that there are) or it cannot be clicked.
void ClickTab(HWND tabs, const std::wstring& caption);

/// Caption of the tab that is in front; "" for none.
[[nodiscard]] std::wstring FrontTab(HWND tabs);

}  // namespace marlok::test
