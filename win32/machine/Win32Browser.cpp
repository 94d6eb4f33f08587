#include "win32/machine/Win32Browser.h"

#include <utility>
#include <vector>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

bool Win32Browser::Start() {
    return SUCCEEDED(browser_.Create(L"InternetExplorer.Application"));
}

bool Win32Browser::Navigate(const std::string& address) {
    std::vector<Variant> arguments;
    arguments.emplace_back(ToWide(address));
    Variant result;
    return SUCCEEDED(browser_.Call(L"Navigate", std::move(arguments), result));
}

bool Win32Browser::ReadyState(int& state) {
    Variant value;
    if (FAILED(browser_.Get(L"ReadyState", value)) || value.Get().vt != VT_I4) {
        return false;
    }
    state = value.Get().lVal;
    return true;
}

bool Win32Browser::Show() {
    return SUCCEEDED(browser_.Put(L"Visible", Variant(true)));
}

}  // namespace marlok::win32
