#pragma once

#include "forms/Windows.h"
#include "win32/views/NativeLoop.h"

namespace marlok::win32 {

/// Shows forms in windows of the desktop.
class NativeViews : public forms::ViewFactory {
 public:
    explicit NativeViews(NativeLoop& loop);
    std::unique_ptr<forms::View> Attach(forms::Form& form) override;

 private:
    NativeLoop& loop_;
};

}  // namespace marlok::win32
