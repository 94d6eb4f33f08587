#include "tests/unit/ProgramFixture.h"

#include "app/Main.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

constexpr const char* programKey = R"(Software\Marlok Software\Fenwold)";

/// Clears the values of a key; the key itself stays.
void ClearKey(InMemoryMachine& machine, const std::string& key) {
    if (!machine.registry.KeyExists(key)) {
        return;
    }
    std::unique_ptr<RegistryKey> open;
    ASSERT_EQ(machine.registry.CreateKey(key, open), error::success);
    for (const auto& [name, data] : machine.registry.Values(key)) {
        ASSERT_EQ(open->DeleteValue(name), error::success);
    }
}

void ClearKeys(InMemoryMachine& machine, const std::string& key) {
    ClearKey(machine, key);
    for (const std::string& name : machine.registry.Keys(key)) {
        ClearKeys(machine, key + "\\" + name);
    }
}

void StoreList(InMemoryMachine& machine, const std::string& section, const std::string& word, const Lines& list) {
    ClearKey(machine, SettingsKey(section));
    int number = firstEntryNumber;
    for (const std::string& entry : list) {
        machine.registry.SetString(SettingsKey(section), word + std::to_string(number), entry);
        ++number;
    }
}

int Run(Machine machine, InMemoryProcess& process, const std::string& arguments) {
    process.arguments = arguments;
    return app::RunProgram(machine, nullptr);
}

int RunWatched(InMemoryMachine& machine, FileSystem& files, const std::string& arguments) {
    const std::size_t boxes = machine.desktop.Messages().size();
    const int code = Run(WithFiles(machine, files), machine.process, arguments);
    EXPECT_EQ(machine.desktop.Messages().size(), boxes) << "an unattended run has shown a message box";
    EXPECT_EQ(machine.Leaks(), "");
    EXPECT_EQ(machine.system.AwakeBalance(), 0);
    return code;
}

}  // namespace

std::vector<Location> LocationsAt(const Lines& paths) {
    std::vector<Location> locations;
    for (const std::string& path : paths) {
        locations.emplace_back(path);
    }
    return locations;
}

std::string Beside(const std::string& name) {
    return std::string(programFolder) + "\\" + name;
}

std::string SettingsKey(const std::string& section) {
    return section.empty() ? programKey : std::string(programKey) + "\\" + section;
}

void Install(InMemoryMachine& machine) {
    machine.AddDrive('E');
    machine.Seed({{Beside("Marlok Backup.exe"), "program"},
                  {Beside("Restart.sec"), "restarter"},
                  {Beside("pc21.gif"), "animation"},
                  {Beside("Backup.hlp"), "help"},
                  {R"(C:\Windows\explorer.exe)", "explorer"}});
}

void Configure(InMemoryMachine& machine, const std::vector<LocationSetup>& locations) {
    ClearKeys(machine, programKey);
    Lines paths;
    for (const LocationSetup& location : locations) {
        paths.push_back(location.path);
        StoreList(machine, PathAfterRoot(location.path), "SourcePath", location.sources);
    }
    StoreList(machine, "Target", "TargetPath", paths);
}

Machine WithFiles(InMemoryMachine& machine, FileSystem& files) {
    return {machine.registry, files,           machine.drives, machine.shell,  machine.desktop,
            machine.clock,    machine.process, machine.system, machine.browser};
}

int RunProgram(InMemoryMachine& machine, const std::string& arguments) {
    return Run(machine.machine(), machine.process, arguments);
}

int RunUnattended(InMemoryMachine& machine, const std::string& arguments) {
    return RunWatched(machine, machine.files, arguments);
}

int RunUnattended(InMemoryMachine& machine, FileSystem& files, const std::string& arguments) {
    return RunWatched(machine, files, arguments);
}

std::uint64_t WaitFor(InMemoryMachine& machine, Program& program, const std::function<bool()>& condition) {
    constexpr std::uint64_t anHour = 3'600'000;
    const std::uint64_t begin = machine.clock.TickCount();
    while (!condition()) {
        if (machine.clock.TickCount() - begin > anHour) {
            ADD_FAILURE() << "waited in vain";
            break;
        }
        program.windows.Turn();
    }
    return machine.clock.TickCount() - begin;
}

Lines LinesOf(const std::string& text) {
    Lines lines;
    for (const std::string_view line : text::Split(text, "\r\n")) {
        lines.emplace_back(line);
    }
    if (lines.back().empty()) {
        lines.pop_back();
    }
    return lines;
}

Lines LinesBeside(InMemoryMachine& machine, const std::string& name) {
    return machine.Exists(Beside(name)) ? LinesOf(machine.Read(Beside(name))) : Lines();
}

Lines RunLog(InMemoryMachine& machine) {
    return LinesBeside(machine, "Backup Log File.txt");
}

Lines ErrorLog(InMemoryMachine& machine) {
    return LinesBeside(machine, "Backup Error Log.txt");
}

Lines OriginalList(InMemoryMachine& machine, const std::string& name) {
    return LinesBeside(machine, name + ".txt");
}

Lines WorkingFilesLeft(InMemoryMachine& machine) {
    Lines left;
    for (const char* drive : {"C:\\", "E:\\"}) {
        for (const auto& [path, content] : machine.Tree(drive)) {
            if (path.back() != '\\' && workingfile::IsWorkingFile(PathFindFileName(path))) {
                left.push_back(drive + path);
            }
        }
    }
    return left;
}

testing::Matcher<std::string> Reported(const std::string& path) {
    return testing::StartsWith(path + ": ");
}

testing::Matcher<std::string> Failed(const std::string& path, SystemError code) {
    return testing::AllOf(Reported(path), testing::EndsWith(" (error " + std::to_string(code) + ")"));
}

void ProgramTest::TearDown() {
    EXPECT_EQ(machine.Leaks(), "");
    EXPECT_EQ(machine.system.AwakeBalance(), 0);
    EXPECT_FALSE(machine.desktop.Hourglass());
}

}  // namespace marlok::test
