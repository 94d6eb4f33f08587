// One thing goes wrong, or the process dies, at every step of a run; whatever the step, nothing is lost.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

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
    const char* mode;  ///< "C" or "A"
    bool savedBefore;  ///< an older run has saved everything
};

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
    for (const auto& [path, content] : machine.Tree(location)) {
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

/// A run that nothing disturbs makes good whatever the disturbed one has left.
void ExpectRepair(InMemoryMachine& machine, const Tree& sources, const std::string& when) {
    machine.faults.Reset();
    ASSERT_EQ(RunUnattended(machine, "C"), exitcode::allDone) << when;
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
            ASSERT_EQ(machine.EntryOf(saved).lastWriteTime, machine.EntryOf("C:\\" + path).lastWriteTime) << when;
        }
    }
}

class SweepTest : public testing::TestWithParam<Scene> {};

TEST_P(SweepTest, OneFailureAtAnyStepLosesNothing) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine machine;
        Prepare(machine, GetParam());
        const Tree before = machine.Tree(location);
        const Tree sources = SourcesAsSaved(machine);
        const std::string when = "when step " + std::to_string(k) + " failed";
        machine.faults.FailAt(k, k % 2 == 0 ? error::accessDenied : error::diskFull);
        const int code = RunUnattended(machine, GetParam().mode);
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
    for (std::size_t k = 1;; ++k) {
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
            static_cast<void>(RunProgram(machine, GetParam().mode));
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

INSTANTIATE_TEST_SUITE_P(Runs, SweepTest,
                         testing::Values(Scene{"FirstCopy", "C", false}, Scene{"ChangedFiles", "C", true},
                                         Scene{"CopyAll", "A", true}),
                         [](const auto& scene) { return scene.param.what; });

}  // namespace
}  // namespace marlok::test
