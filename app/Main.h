#pragma once

#include "forms/Windows.h"
#include "platform/Machine.h"
#include "ui/run/Session.h"

namespace marlok::app {

/// The entry procedure: refuses a second instance, carries out the deletions queued in "DeleteFolder.txt", sets the run
/// flags and loads exactly one of the start-up window, the main window and the unattended run. Returns when that window
/// is loaded; loads nothing when another instance is running.
/// @throws RuntimeError when a file beside the program cannot be read or written.
void Main(Session& session, forms::Windows& windows);

/// Runs the program from start to end and returns its exit code (see `exitcode`). A run-time error ends it: reported in
/// a message box when a person sits before it, on standard error and in "Backup Error Log.txt" when the program was
/// started with arguments. `views` may be null.
[[nodiscard]] int RunProgram(Machine& machine, forms::ViewFactory* views);

}  // namespace marlok::app
