#pragma once

#include "forms/Form.h"
#include "platform/Machine.h"

namespace marlok {

/// Has the program started again once it has ended: unloads the progress window, copies "Restart.sec" over
/// "Restart.exe" beside the program, starts that hidden, and unloads `caller`. The restart program waits for the end of
/// this process and of no other, and the new windows come to the front.
/// @throws RuntimeError when the copy fails or the copy does not start; `caller` is not unloaded then.
void RequestRestart(Machine& machine, forms::Form& caller);

}  // namespace marlok
