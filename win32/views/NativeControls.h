#pragma once

#include "forms/Controls.h"
#include "win32/views/NativeControl.h"

/// The native sides of the simple controls.
namespace marlok::win32 {

class NativeLabel : public NativeControl {
 public:
    NativeLabel(forms::Label& label, Post post) : NativeControl(label, std::move(post)), label_(label) {}
    bool IsTransparent() const override { return true; }

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    bool HasText() const override { return true; }

 private:
    forms::Label& label_;
};

class NativeButton : public NativeControl {
 public:
    NativeButton(forms::CommandButton& button, Post post) : NativeControl(button, std::move(post)), button_(button) {}
    void Notified(WORD notification) override;
    bool IsTransparent() const override { return true; }  // at its round corners
    const std::string* PressCaption() const override { return &button_.Caption.Get(); }
    void Press() override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    bool HasText() const override { return true; }

 private:
    forms::CommandButton& button_;
};

class NativeCheckBox : public NativeControl {
 public:
    NativeCheckBox(forms::CheckBox& box, Post post) : NativeControl(box, std::move(post)), box_(box) {}
    void Notified(WORD notification) override;
    bool IsTransparent() const override { return true; }
    const std::string* PressCaption() const override { return &box_.Caption.Get(); }
    void Press() override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    bool HasText() const override { return true; }

 private:
    forms::CheckBox& box_;
};

/// A group box. It paints what lies behind it itself, so that its inside is never left as it was.
class NativeFrame : public NativeControl {
 public:
    NativeFrame(forms::Frame& frame, Post post) : NativeControl(frame, std::move(post)), frame_(frame) {}
    Layer Place() const override { return Layer::frame; }
    bool IsTransparent() const override { return true; }

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    bool HasText() const override { return true; }
    LRESULT Handle(UINT message, WPARAM first, LPARAM second) override;

 private:
    forms::Frame& frame_;
};

class NativeTextBox : public NativeControl {
 public:
    NativeTextBox(forms::TextBox& box, Post post) : NativeControl(box, std::move(post)), box_(box) {}
    void Flush() override;
    void Notified(WORD notification) override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;
    bool HasText() const override { return true; }

 private:
    forms::TextBox& box_;
    bool mirroring_ = false;  ///< the text is being set in code: the control's notification is an echo
};

class NativeProgressBar : public NativeControl {
 public:
    NativeProgressBar(forms::ProgressBar& bar, Post post) : NativeControl(bar, std::move(post)), bar_(bar) {}
    void Flush() override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    forms::ProgressBar& bar_;
    int shown_ = 0;
    bool changed_ = false;  ///< since it was shown
};

/// Where `value` stands between `minimum` and `maximum`, from 0 to `range`. 0 for an empty range or a value that is no
/// number; values outside are cut.
[[nodiscard]] int ScaledPosition(float minimum, float maximum, float value, int range);

}  // namespace marlok::win32
