// One thing goes wrong, or the process dies, at every step of a run; whatever the step, nothing is lost.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "engine/BackupRun.h"
#include "engine/RunJournal.h"
#include "paths/WorkingFiles.h"
#include "tests/unit/ProgramFixture.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

constexpr const char* location = R"(E:\Backups\Daily)";
constexpr const char* name = R"(Backups\Daily)";

/// What the sources hold when the run begins, and what was saved of them before.
struct Scene {
    const char* what;
    const char* mode;                 ///< "C" or "A"
    bool savedBefore;                 ///< an older run has saved everything
    const char* fileSystem = "NTFS";  ///< of the drive that is saved to
};

/// The drive that is saved to, of the scene's file system.
void AddTarget(InMemoryMachine& machine, const Scene& scene) {
    DriveOptions options;
    options.fileSystem = scene.fileSystem;
    machine.RemoveDrive('E');
    machine.AddDrive('E', options);
}

void SeedSources(InMemoryMachine& machine, const char* content, int hour) {
    machine.Seed({{R"(C:\Data\a.doc)", std::string("a ") + content, At(hour, 0)},
                  {R"(C:\Data\big.bin)", std::string(150'000, content[0]), At(hour, 1)},
                  {R"(C:\Data\Sub\b.txt)", std::string("b ") + content, At(hour, 2)},
                  {R"(C:\Data\Sub\read.txt)", std::string("r ") + content, At(hour, 3), attribute::readOnly},
                  {R"(C:\Data\Sub\empty.txt)", "", At(hour, 4)},
                  {R"(C:\Data\Empty\)"}});
}

void Prepare(InMemoryMachine& machine, const Scene& scene) {
    Install(machine);
    AddTarget(machine, scene);
    Configure(machine, {{location, {R"(C:\Data)"}}});
    SeedSources(machine, "old", 8);
    if (scene.savedBefore) {
        ASSERT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
        SeedSources(machine, "new", 10);
    }
    machine.Seed({{R"(C:\Data\added.txt)", "added", At(10, 30)}});
    machine.faults.Reset();
    machine.faults.TearWrites(true);
}

/// Returns the exit code. A run that a window watches copies by the restartable copy.
int RunScene(InMemoryMachine& machine, const Scene& scene) {
    if (*scene.mode != '\0') {
        return RunProgram(machine, scene.mode);
    }
    Program program(machine.machine());
    RunSink sink;
    const RunPlan plan{LocationsAt({location}), false, CopyMethod::copyWithProgress};
    RunReport report = BackupRun(program.session.machine, program.session.Configuration(), plan, sink).Run();
    return FinishRun(program.session.machine, interactiveLog, report);
}

std::string SavedPath(const std::string& relative) {
    return std::string(location) + R"(\Data\)" + relative;
}

/// Targets that the location's journal names as being copied straight to their place.
std::set<std::string> NamedByJournal(InMemoryMachine& machine) {
    std::set<std::string> named;
    const std::string path = Location(location).Below(workingfile::JournalOf(machine.system.ComputerName()));
    if (machine.Exists(path)) {
        for (const JournalGroup& group : ParseJournal(machine.Read(path)).groups) {
            for (const JournalEntry& entry : group.entries) {
                if (!entry.replaces) {
                    named.insert(text::Fold(entry.target));
                }
            }
        }
    }
    return named;
}

/// Every saved file is wholly one of the two versions, or the journal knows that it may be torn.
void ExpectWholeFiles(InMemoryMachine& machine, const Tree& before, const Tree& sources, const std::string& when) {
    const std::set<std::string> named = NamedByJournal(machine);
    const Tree saved = machine.Tree(location);
    for (const auto& [path, content] : before) {
        ASSERT_TRUE(saved.contains(path) || !sources.contains(path)) << path << " has no saved copy any more " << when;
    }
    for (const auto& [path, content] : saved) {
        const std::string_view file = std::string_view(path).substr(path.rfind('\\') + 1);
        if (path.ends_with('\\') || workingfile::IsWorkingFile(file)) {
            continue;
        }
        const auto old = before.find(path);
        const auto source = sources.find(path);
        const bool isOld = old != before.end() && content == old->second;
        const bool isNew = source != sources.end() && content == source->second;
        const bool mayBeTorn = named.contains(text::Fold(path));
        ASSERT_TRUE(isOld || isNew || mayBeTorn) << path << " is torn " << when;
    }
}

Tree SourcesAsSaved(InMemoryMachine& machine) {
    Tree tree{{"Data\\", ""}};
    for (const auto& [path, content] : machine.Tree(R"(C:\Data)")) {
        tree["Data\\" + path] = content;
    }
    return tree;
}

std::uint64_t TimeStepOf(InMemoryMachine& machine) {
    Volume volume;
    EXPECT_EQ(machine.files.GetVolume("E:\\", volume), error::success);
    return volume.TimeStep();
}

/// A run that nothing disturbs makes good whatever the disturbed one has left.
void ExpectRepair(InMemoryMachine& machine, const Tree& sources, const std::string& when) {
    machine.faults.Reset();
    ASSERT_EQ(RunUnattended(machine, "C"), exitcode::allDone)
        << when << ": " << testing::PrintToString(ErrorLog(machine));
    ASSERT_TRUE(machine.Tree(location) == sources) << "not repaired " << when;
    ASSERT_THAT(WorkingFilesLeft(machine), testing::IsEmpty()) << when;
    const Lines listed = OriginalList(machine, name);
    for (const auto& [path, content] : sources) {
        if (!path.ends_with('\\')) {
            ASSERT_THAT(listed, testing::Contains("C:\\" + path)) << when;
        }
    }
    for (const auto& [path, content] : sources) {
        if (!path.ends_with('\\')) {
            const std::string saved = std::string(location) + "\\" + path;
            const FileTime source = machine.EntryOf("C:\\" + path).lastWriteTime;
            const FileTime copy = machine.EntryOf(saved).lastWriteTime;
            ASSERT_LT(copy > source ? copy - source : source - copy, TimeStepOf(machine)) << path << when;
        }
    }
}

/// How far one step is from the next that is tried: every step where the environment asks for it, which takes minutes;
/// else every `otherwise`-th.
std::size_t StepsApart(std::size_t otherwise) {
    return std::getenv("MARLOK_EVERY_STEP") != nullptr ? 1 : otherwise;
}

class SweepTest : public testing::TestWithParam<Scene> {
 protected:
    /// Of sweeps over one failure or death: the scenes of other file systems take fewer steps.
    [[nodiscard]] static std::size_t Stride() {
        return StepsApart(std::string_view(GetParam().fileSystem) == "NTFS" ? 1 : 5);
    }
};

TEST_P(SweepTest, OneFailureAtAnyStepLosesNothing) {
    for (std::size_t k = 1;; k += Stride()) {
        InMemoryMachine machine;
        Prepare(machine, GetParam());
        const Tree before = machine.Tree(location);
        const Tree sources = SourcesAsSaved(machine);
        const std::string when = "when step " + std::to_string(k) + " failed";
        machine.faults.FailAt(k, k % 2 == 0 ? error::accessDenied : error::diskFull);
        const int code = RunScene(machine, GetParam());
        const bool fired = machine.faults.Fired();
        ASSERT_TRUE(code >= exitcode::allDone && code <= exitcode::nothingRan) << when;
        ExpectWholeFiles(machine, before, sources, when);
        ASSERT_TRUE(SourcesAsSaved(machine) == sources) << "a source has changed " << when;
        // What a run calls done is done. (A setting that cannot be read looks like one that is not there.)
        if (code == exitcode::allDone && machine.Exists(SavedPath("added.txt"))) {
            ASSERT_TRUE(machine.Tree(location) == sources) << "not all done " << when;
        }
        ExpectRepair(machine, sources, when);
        if (HasFatalFailure() || !fired) {
            EXPECT_GT(k, 60U);
            return;
        }
    }
}

TEST_P(SweepTest, DeathAtAnyStepLosesNothing) {
    for (std::size_t k = 1;; k += Stride()) {
        InMemoryMachine machine;
        Prepare(machine, GetParam());
        const Tree before = machine.Tree(location);
        const Tree sources = SourcesAsSaved(machine);
        const std::string list = std::string(programFolder) + "\\" + name + ".txt";
        const std::string listBefore = machine.Exists(list) ? machine.Read(list) : "";
        const std::string when = "when the process died at step " + std::to_string(k);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            static_cast<void>(RunScene(machine, GetParam()));
        } catch (const ProcessDied&) {
            died = true;
        }
        machine.Restart();
        ExpectWholeFiles(machine, before, sources, when);
        ASSERT_TRUE(SourcesAsSaved(machine) == sources) << "a source has changed " << when;
        if (machine.Exists(list)) {
            ASSERT_TRUE(machine.Read(list).starts_with(listBefore)) << "the list is torn " << when;
            ASSERT_TRUE(machine.Read(list).empty() || machine.Read(list).ends_with("\r\n")) << when;
        } else {
            ASSERT_EQ(listBefore, "") << "the list is gone " << when;
        }
        ExpectRepair(machine, sources, when);
        if (HasFatalFailure() || !died) {
            EXPECT_GT(k, 60U);
            return;
        }
    }
}

TEST_P(SweepTest, TwoFailuresInOneRunLoseNothing) {
    // Every step fails once as the first of two; the second comes after ever another number of steps.
    for (std::size_t k = 1;; k += StepsApart(7)) {
        InMemoryMachine machine;
        Prepare(machine, GetParam());
        const Tree before = machine.Tree(location);
        const Tree sources = SourcesAsSaved(machine);
        const std::size_t second = k + 1 + k * 7 % 23;
        const std::string when = "when steps " + std::to_string(k) + " and " + std::to_string(second) + " failed";
        std::size_t step = 0;
        machine.faults.FailWhen([&step, k, second](const Step&) {
            ++step;
            return step == k || step == second ? error::accessDenied : error::success;
        });
        static_cast<void>(RunScene(machine, GetParam()));
        ExpectWholeFiles(machine, before, sources, when);
        ASSERT_TRUE(SourcesAsSaved(machine) == sources) << "a source has changed " << when;
        ExpectRepair(machine, sources, when);
        if (HasFatalFailure() || step < k) {
            EXPECT_GT(k, 60U);
            return;
        }
    }
}

TEST_P(SweepTest, AFailureInTheRunAfterADeathLosesNothing) {
    for (std::size_t k = 1;; k += StepsApart(7)) {
        InMemoryMachine machine;
        Prepare(machine, GetParam());
        const Tree before = machine.Tree(location);
        const Tree sources = SourcesAsSaved(machine);
        machine.faults.DieAt(k);
        bool died = false;
        try {
            static_cast<void>(RunScene(machine, GetParam()));
        } catch (const ProcessDied&) {
            died = true;
        }
        machine.Restart();
        machine.faults.Reset();
        const std::size_t failing = 1 + k * 11 % 97;
        const std::string when =
            "when step " + std::to_string(failing) + " failed after a death at step " + std::to_string(k);
        machine.faults.FailAt(failing, k % 2 == 0 ? error::sharingViolation : error::ioDevice);
        static_cast<void>(RunScene(machine, GetParam()));
        ExpectWholeFiles(machine, before, sources, when);
        ExpectRepair(machine, sources, when);
        if (HasFatalFailure() || !died) {
            EXPECT_GT(k, 60U);
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Runs, SweepTest,
                         testing::Values(Scene{"FirstCopy", "C", false}, Scene{"ChangedFiles", "C", true},
                                         Scene{"CopyAll", "A", true}, Scene{"FirstCopyWatched", "", false},
                                         Scene{"ChangedFilesWatched", "", true},
                                         Scene{"FirstCopyOnFat", "C", false, "FAT32"},
                                         Scene{"ChangedFilesOnFat", "C", true, "FAT32"},
                                         Scene{"CopyAllOnFat", "A", true, "FAT32"}),
                         [](const auto& scene) { return scene.param.what; });

}  // namespace
}  // namespace marlok::test
