#pragma once

#include "engine/Program.h"
#include "forms/Form.h"

namespace marlok {

/// Has the program started again once it has ended: unloads the progress window, copies "Restart.sec" over
/// "Restart.exe" beside the program, starts that hidden, and unloads `caller`.
/// @throws RuntimeError when the copy fails; nothing is started or unloaded then. A program that does not start throws
/// too.
void RequestRestart(Program& program, forms::Form& caller);

}  // namespace marlok
