#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "forms/Controls.h"
#include "win32/views/NativeArea.h"
#include "win32/views/Picture.h"
#include "win32/views/SystemWebView.h"

namespace marlok::win32 {

/// The system's web view. Until that has loaded its page, and where it never does, the picture is drawn here: the area
/// is never blank.
class NativeWebView : public NativeArea {
 public:
    NativeWebView(forms::WebView& view, Post post) : NativeArea(view, std::move(post)), view_(view) {}

    void Animate() override;
    std::uint32_t NextFrameIn() override;

 protected:
    void MirrorContent(forms::Aspect aspect) override;
    LRESULT Handle(UINT message, WPARAM first, LPARAM second) override;
    const Bitmap* PictureFor(PixelSize area) override;

 private:
    void Load();
    void Play(bool on);
    void Step();
    void TakeSystemView();
    [[nodiscard]] bool Draws() const { return playing_ && !systemShown_ && picture_.IsAnimated(); }
    [[nodiscard]] PixelSize Area() const;

    forms::WebView& view_;
    std::string location_;  ///< what is loaded
    bool playing_ = false;
    Picture picture_;
    std::size_t frame_ = 0;
    std::uint64_t frameDue_ = 0;  ///< tick count at which the next frame follows
    std::uint64_t animated_ = 0;  ///< tick count of the last look
    std::unique_ptr<SystemWebView> system_;
    std::uint64_t loadingUntil_ = 0;  ///< tick count at which the system's view has had its time
    bool systemShown_ = false;
};

}  // namespace marlok::win32
