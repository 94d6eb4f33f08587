#pragma once

#include <windows.h>
// The order matters: these need the types above.
#include <exdisp.h>

#include <string>

#include "win32/machine/Com.h"
#include "win32/machine/Handles.h"
#include "win32/views/Bitmap.h"

namespace marlok::win32 {

/// The system's own web view in a window that takes no input. Hidden until Show. Where the system has none, or lacks
/// the engine to show anything in it, the object is there and does nothing.
class SystemWebView {
 public:
    /// A view for `location`, which it begins to load, in the window `parent`. The calling thread is in an apartment.
    SystemWebView(HWND parent, const std::string& location);
    SystemWebView(const SystemWebView&) = delete;
    SystemWebView& operator=(const SystemWebView&) = delete;
    ~SystemWebView();

    /// False when nothing will ever be seen in the view.
    [[nodiscard]] bool Exists() const { return static_cast<bool>(browser_); }

    /// True when the page is there as a whole; a page of the view's own that tells of an error is none.
    [[nodiscard]] bool HasLoaded();

    void Show(PixelSize area);
    void Resize(PixelSize area) const;

    /// Stops loading and whatever moves in the view.
    void Stop();

    /// Lets the view work while the program does: delivers the messages of its windows alone, and no input.
    void DispatchOwnMessages() const;

 private:
    bool Host(HWND parent);
    bool Load(const std::string& location);

    WindowHandle host_;
    ComPtr<IWebBrowser2> browser_;  ///< behind the window: released before it goes
};

}  // namespace marlok::win32
