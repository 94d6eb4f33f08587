#pragma once

#include "forms/Windows.h"
#include "platform/Machine.h"
#include "ui/run/Session.h"

namespace marlok::app {

/// The entry procedure: refuses a second instance and a folder that it cannot write in, carries out the deletions
/// queued in "DeleteFolder.txt", sets the run flags and loads exactly one of the start-up window, the main window and
/// the unattended run. Returns when that window is loaded; loads nothing when it refuses.
/// @throws RuntimeError when a file beside the program cannot be read or written.
void Main(Session& session, forms::Windows& windows);

/// Runs the program from start to end and returns its exit code (see `exitcode`). Any exception ends it, once its
/// windows have written what they had still to write: see EndByException. `views` may be null.
[[nodiscard]] int RunProgram(Machine& machine, forms::ViewFactory* views);

}  // namespace marlok::app
