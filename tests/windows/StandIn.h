#pragma once

/// This test program plays other programs: a copy of it under the name of the main program does what the tests of the
/// restart program need of a main program.
namespace marlok::test {

/// True in a copy that is called "Marlok Backup.exe".
[[nodiscard]] bool IsStandIn();

/// Adds its current folder as a line to "starts.txt" beside itself, then runs until "stop.txt" lies there (at most a
/// minute).
int RunStandIn();

}  // namespace marlok::test
