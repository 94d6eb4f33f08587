#include "win32/views/SystemWebView.h"

#include <urlmon.h>

#include <string_view>

#include "win32/machine/Wide.h"

namespace marlok::win32 {

namespace {

constexpr const wchar_t* hostClass = L"AtlAxWin";
constexpr const wchar_t* viewName = L"Shell.Explorer.2";

/// The class of the view's window that lies in no other one: its clock ticks there.
constexpr const wchar_t* clockClass = L"Internet Explorer_Hidden";

/// Of what waits for the view, as much is delivered at a time: the program has its own work to do.
constexpr int messagesAtATime = 50;

/// How a page sits in its window: without a frame of its own, without scroll bars.
constexpr int noFrame = 0x0004;
constexpr int noScrollBars = 0x0008;

/// The library of the system that hosts controls. It stays loaded: the window class is in it.
struct HostLibrary {
    using Init = BOOL(WINAPI*)();
    using GetPart = HRESULT(WINAPI*)(HWND, IUnknown**);

    template <class Function>
    [[nodiscard]] static Function Find(HMODULE library, const char* name) {
        // Through void*: the compiler cannot know what the function really is.
        return library == nullptr ? nullptr
                                  : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    }

    HostLibrary() {
        HMODULE library = LoadLibraryExW(L"atl.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        const auto init = Find<Init>(library, "AtlAxWinInit");
        getControl = Find<GetPart>(library, "AtlAxGetControl");
        getHost = Find<GetPart>(library, "AtlAxGetHost");
        usable = init != nullptr && getControl != nullptr && init() != FALSE;
    }

    GetPart getControl = nullptr;
    GetPart getHost = nullptr;
    bool usable = false;
};

const HostLibrary& Library() {
    static const HostLibrary library;
    return library;
}

/// A view without its engine would come up and stay white. Making the engine's document shows whether it is there; the
/// view needs the same library in a moment anyway.
bool HasEngine() {
    CLSID id{};
    ComPtr<IUnknown> document;
    return SUCCEEDED(CLSIDFromProgID(L"htmlfile", &id)) &&
           SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, document.ReceiveVoid()));
}

/// The click that the view makes when it goes to a page has no place in a backup. A system without the switch clicks.
void SwitchSoundOff() {
    using Switch = HRESULT(WINAPI*)(INTERNETFEATURELIST, DWORD, BOOL);
    const auto set = HostLibrary::Find<Switch>(GetModuleHandleW(L"urlmon.dll"), "CoInternetSetFeatureEnabled");
    if (set != nullptr) {
        static_cast<void>(set(FEATURE_DISABLE_NAVIGATION_SOUNDS, SET_FEATURE_ON_PROCESS, TRUE));
    }
}

/// Tells the host how the page is to look. One that does not know the property shows the page as it is.
void SetLook(HWND host) {
    ComPtr<IUnknown> part;
    ComPtr<IDispatch> settings;
    if (Library().getHost == nullptr || FAILED(Library().getHost(host, part.Receive())) || !part ||
        FAILED(part->QueryInterface(IID_IDispatch, settings.ReceiveVoid()))) {
        return;
    }
    std::wstring name = L"DocHostFlags";
    wchar_t* names = name.data();
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(settings->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) {
        return;
    }
    Variant look(noFrame | noScrollBars);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&look.Get(), &put, 1, 1};
    static_cast<void>(settings->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                                       nullptr, nullptr));
}

bool StartsWith(std::wstring_view text, std::wstring_view start) {
    return text.substr(0, start.size()) == start;
}

/// Delivers what waits for a window and those in it. Input is left where it is.
void DispatchFor(HWND window) {
    MSG message{};
    constexpr UINT noInput = PM_QS_POSTMESSAGE | PM_QS_PAINT | PM_QS_SENDMESSAGE;
    for (int count = 0; count < messagesAtATime && PeekMessageW(&message, window, 0, 0, PM_REMOVE | noInput) != 0;
         ++count) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));  // not for the view
            return;
        }
        DispatchMessageW(&message);
    }
}

/// Delivers what waits for the clocks of this thread's views among the windows in `parent`: null for the desktop.
void DispatchForClocks(HWND parent) {
    for (HWND window = nullptr; (window = FindWindowExW(parent, window, clockClass, nullptr)) != nullptr;) {
        if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) {
            DispatchFor(window);
        }
    }
}

}  // namespace

SystemWebView::SystemWebView(HWND parent, const std::string& location) {
    if (!HasEngine() || !Library().usable || !Host(parent) || !Load(location)) {
        browser_.Reset();
        host_.Reset();
    }
}

SystemWebView::~SystemWebView() {
    Stop();
}

bool SystemWebView::Host(HWND parent) {
    // Disabled: a click on the view would take the keyboard away from the program's own controls.
    host_.Reset(CreateWindowExW(0, hostClass, viewName, WS_CHILD | WS_CLIPCHILDREN | WS_DISABLED, 0, 0, 1, 1, parent,
                                nullptr, GetModuleHandleW(nullptr), nullptr));
    ComPtr<IUnknown> control;
    return host_.IsValid() && SUCCEEDED(Library().getControl(host_.Get(), control.Receive())) && control &&
           SUCCEEDED(control->QueryInterface(IID_IWebBrowser2, browser_.ReceiveVoid()));
}

bool SystemWebView::Load(const std::string& location) {
    SwitchSoundOff();
    SetLook(host_.Get());
    Variant target(ToWide(location));
    Variant none;
    return SUCCEEDED(browser_->put_Silent(VARIANT_TRUE)) &&
           SUCCEEDED(browser_->Navigate2(&target.Get(), &none.Get(), &none.Get(), &none.Get(), &none.Get()));
}

bool SystemWebView::HasLoaded() {
    READYSTATE state = READYSTATE_UNINITIALIZED;
    ComPtr<IDispatch> document;
    BSTR address = nullptr;
    if (!browser_ || FAILED(browser_->get_ReadyState(&state)) || state != READYSTATE_COMPLETE ||
        FAILED(browser_->get_Document(document.Receive())) || !document ||
        FAILED(browser_->get_LocationURL(&address)) || address == nullptr) {
        return false;
    }
    const std::wstring_view shown(address, SysStringLen(address));
    const bool ownPage = shown.empty() || StartsWith(shown, L"res:") || StartsWith(shown, L"about:");
    SysFreeString(address);
    return !ownPage;
}

void SystemWebView::Show(PixelSize area) {
    Resize(area);
    ShowWindow(host_.Get(), SW_SHOWNA);
}

void SystemWebView::Resize(PixelSize area) const {
    SetWindowPos(host_.Get(), nullptr, 0, 0, area.width, area.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void SystemWebView::Stop() {
    if (browser_) {
        static_cast<void>(browser_->Stop());  // a view that cannot stop goes on: there is nothing else to be done
    }
}

void SystemWebView::DispatchOwnMessages() const {
    if (!host_.IsValid()) {
        return;
    }
    DispatchFor(host_.Get());
    DispatchForClocks(nullptr);
    DispatchForClocks(HWND_MESSAGE);
}

}  // namespace marlok::win32
