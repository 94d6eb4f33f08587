#pragma once

#include "platform/Machine.h"

/// How the program ends when it cannot go on.
namespace marlok::app {

/// True when the program was started with arguments: nobody sits before it then, and no window may wait for an answer.
[[nodiscard]] bool IsUnattended(Machine& machine);

/// Reports the exception that is being handled, whatever it is, and returns the exit code to end with. To a person in a
/// message box; to nobody on standard error and in "Backup Error Log.txt". Call it in a handler, when all windows are
/// gone and what was to be written is written.
[[nodiscard]] int EndByException(Machine& machine);

/// Reports that the program is running already, and returns the exit code to end with. Without a person the message
/// goes by itself, and the error log gets a note: a backup that was planned has not been made.
[[nodiscard]] int EndAsSecondInstance(Machine& machine);

/// True when the program can write beside itself. False, reported, when it cannot: nothing that it does would be kept.
[[nodiscard]] bool CanWriteBeside(Machine& machine);

}  // namespace marlok::app
