#pragma once

#include "platform/Desktop.h"
#include "platform/win32/NativeLoop.h"

namespace marlok::win32 {

/// The screen and the input of the thread that owns the program's windows.
class Win32Desktop : public Desktop {
 public:
    explicit Win32Desktop(NativeLoop& loop) : loop_(loop) {}

    int ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) override;
    void ShowHourglass(bool on) override;
    void PaintPending() override;
    void WaitForInput(std::uint32_t milliseconds) override;
    int ScreenWidth() override;
    int ScreenHeight() override;

 private:
    bool RunActions();

    NativeLoop& loop_;
};

}  // namespace marlok::win32
