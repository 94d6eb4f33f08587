#pragma once

#include "platform/Desktop.h"
#include "win32/views/NativeLoop.h"

namespace marlok::win32 {

/// The screen and the input of the thread that owns the program's windows.
class Win32Desktop : public Desktop {
 public:
    explicit Win32Desktop(NativeLoop& loop) : loop_(loop) {}

    int ShowMessage(const std::string& text, std::uint32_t style, const std::string& title) override;
    int ShowMessageFor(const std::string& text, std::uint32_t style, const std::string& title,
                       std::uint32_t milliseconds) override;
    int ShowMessageWithCaptions(const std::string& text, std::uint32_t style, const std::string& title,
                                const std::vector<ButtonCaption>& captions) override;
    std::string AskText(const std::string& prompt, const std::string& title, int left, int top) override;
    void ShowHourglass(bool on) override;
    void PaintPending() override;
    void WaitForInput(std::uint32_t milliseconds) override;
    std::vector<TopLevelWindow> TopLevelWindows() override;
    void CloseWindow(std::uint64_t handle) override;
    void DiscardInput() override;
    void BlockShutdown(const std::string& reason) override;
    void AllowShutdown() override;
    bool SessionEnding() override;
    int ScrollBarWidth() override;
    int ScrollBarHeight() override;
    int ScreenWidth() override;
    int ScreenHeight() override;

 private:
    bool RunActions();

    NativeLoop& loop_;
};

}  // namespace marlok::win32
