#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/RunLog.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "platform/SystemError.h"
#include "tests/machine/InMemoryMachine.h"
#include "tests/machine/Program.h"

/// The whole program on the in-memory machine: tests seed a disk and a configuration, run, and compare trees and logs.
namespace marlok::test {

using Lines = std::vector<std::string>;

/// The program's folder, as the in-memory machine has it.
inline constexpr const char* programFolder = R"(C:\Program Files\Marlok)";

/// The backup locations at these paths.
[[nodiscard]] std::vector<Location> LocationsAt(const Lines& paths);

/// Full path of a file beside the program.
[[nodiscard]] std::string Beside(const std::string& name);

/// The program's key below the current user, or a section of it.
[[nodiscard]] std::string SettingsKey(const std::string& section = "");

struct LocationSetup {
    std::string path;
    Lines sources;
};

/// Puts on the disk what a fresh installation holds, and a drive E: for saved files.
void Install(InMemoryMachine& machine);

/// Stores these locations and their sources, and nothing else that was stored before. Two locations that differ only in
/// their drive share their sources: the later ones count.
void Configure(InMemoryMachine& machine, const std::vector<LocationSetup>& locations);

/// The same machine with other file services.
[[nodiscard]] Machine WithFiles(InMemoryMachine& machine, FileSystem& files);

/// Starts the program with these arguments, lets it run to its end and returns its exit code.
int RunProgram(InMemoryMachine& machine, const std::string& arguments);

/// The same for a run that nobody watches: a message box fails the test, and so does anything left open.
int RunUnattended(InMemoryMachine& machine, const std::string& arguments);
int RunUnattended(InMemoryMachine& machine, FileSystem& files, const std::string& arguments);

/// Delivers the program's events until `condition` holds, and returns how many milliseconds that took on its clock.
/// After an hour without it the test fails.
std::uint64_t WaitFor(InMemoryMachine& machine, Program& program, const std::function<bool()>& condition);

/// The lines of a text, each of which ends in a carriage return and a line feed; what follows the last of them is a
/// line of its own when it is not empty.
[[nodiscard]] Lines LinesOf(const std::string& text);

/// The lines of a file of the program; none when it does not exist.
[[nodiscard]] Lines LinesBeside(InMemoryMachine& machine, const std::string& name);

[[nodiscard]] Lines RunLog(InMemoryMachine& machine);
[[nodiscard]] Lines ErrorLog(InMemoryMachine& machine);

/// The list of original paths of the location called `name` ("Backups\Daily").
[[nodiscard]] Lines OriginalList(InMemoryMachine& machine, const std::string& name);

/// Paths of all working files ("~Marlok Backup.new" and the like) on the drives C: and E:.
[[nodiscard]] Lines WorkingFilesLeft(InMemoryMachine& machine);

/// A line of the error log: that path, for whatever reason; or with that system error.
[[nodiscard]] testing::Matcher<std::string> Reported(const std::string& path);
[[nodiscard]] testing::Matcher<std::string> Failed(const std::string& path, SystemError code);

/// An installed program on a machine with the drives C: and E:.
class ProgramTest : public testing::Test {
 protected:
    ProgramTest() { Install(machine); }

    /// Nothing stays open, and the machine may sleep again.
    void TearDown() override;

    InMemoryMachine machine;
};

}  // namespace marlok::test
