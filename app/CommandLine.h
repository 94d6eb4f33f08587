#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/run/Session.h"

namespace marlok::app {

/// How many arguments are taken when nobody says otherwise; further ones are dropped.
inline constexpr int defaultMaxArgs = 100;

/// The arguments in `commandLine`, in order. Blanks, commas, slashes, tabs and double quotes separate; quotes do not
/// group. At most `maxArgs`.
[[nodiscard]] std::vector<std::string> SplitCommandLine(std::string_view commandLine, int maxArgs = defaultMaxArgs);

/// Writes the program's arguments to `gCommandFile`, one a line, and returns true; false, writing nothing, when there
/// are none.
/// @throws RuntimeError when the file cannot be written.
bool GetCommandLine(Session& session, int maxArgs = defaultMaxArgs);

/// Sets the flags of the run from the letters in the command file: see LettersOf. Without "A" only changed files are
/// copied.
/// @throws RuntimeError when the file cannot be read.
void TakeRunFlags(Session& session);

}  // namespace marlok::app
