#pragma once

#include <memory>

#include "forms/Control.h"
#include "win32/views/NativeControl.h"

namespace marlok::win32 {

/// The native side of `control`, which outlives it; null for controls that have none (timers). Actions of the user go
/// to `post`.
[[nodiscard]] std::unique_ptr<NativeControl> MakeNativeControl(forms::Control& control,
                                                               const NativeControl::Post& post);

}  // namespace marlok::win32
