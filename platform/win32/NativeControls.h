#pragma once

#include "forms/Controls.h"
#include "platform/win32/NativeControl.h"

/// The native sides of the simple controls.
namespace marlok::win32 {

class NativeLabel : public NativeControl {
 public:
    NativeLabel(forms::Label& label, Post post) : NativeControl(label, std::move(post)), label_(label) {}

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    forms::Label& label_;
};

class NativeButton : public NativeControl {
 public:
    NativeButton(forms::CommandButton& button, Post post) : NativeControl(button, std::move(post)), button_(button) {}
    void Notified(WORD notification) override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    forms::CommandButton& button_;
};

class NativeTextBox : public NativeControl {
 public:
    NativeTextBox(forms::TextBox& box, Post post) : NativeControl(box, std::move(post)), box_(box) {}
    void Notified(WORD notification) override;

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    forms::TextBox& box_;
    bool mirroring_ = false;  ///< the text is being set in code: the control's notification is an echo
};

class NativeProgressBar : public NativeControl {
 public:
    NativeProgressBar(forms::ProgressBar& bar, Post post) : NativeControl(bar, std::move(post)), bar_(bar) {}

 protected:
    WindowKind Kind() const override;
    void MirrorContent(forms::Aspect aspect) override;

 private:
    forms::ProgressBar& bar_;
    int shown_ = 0;
};

/// Where `value` stands between `minimum` and `maximum`, from 0 to `range`. 0 for an empty range or a value that is no
/// number; values outside are cut.
[[nodiscard]] int ScaledPosition(float minimum, float maximum, float value, int range);

}  // namespace marlok::win32
