#pragma once

#include "forms/TabControl.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// A strip of tabs with the page below it. The page lies behind the controls on it, which are siblings of the strip;
/// pages change in the model, which shows and hides the controls. A disabled tab is grey and is not to be reached.
class NativeTab : public NativeControl {
 public:
    NativeTab(forms::TabControl& tabs, Post post) : NativeControl(tabs, std::move(post)), tabs_(tabs) {}
    LRESULT Told(const NMHDR& notice) override;
    Layer Place() const override { return Layer::tabs; }
    bool IsTransparent() const override { return true; }  // beside the strip

    /// Has the user's wish for a tab carried out later.
    void PostChoice(int tab);

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    LRESULT Handle(UINT message, WPARAM first, LPARAM second) override;

 private:
    void MirrorCaptions();
    void Paint();
    void Draw(HDC surface);
    void GreyDisabled(HDC surface);
    [[nodiscard]] bool TakesInput(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] bool IsOnDisabled(LPARAM point) const;
    [[nodiscard]] bool MoveByKey(WPARAM key);

    forms::TabControl& tabs_;
    bool mirroring_ = false;  ///< the tab is being set in code: what the window says is an echo
};

}  // namespace marlok::win32
