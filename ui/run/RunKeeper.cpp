#include "ui/run/RunKeeper.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/ErrorLog.h"
#include "engine/RestoreJournal.h"

namespace marlok {

namespace {

constexpr const char* stoppedHere =
    "the backup was stopped here because Windows was about to shut down or to log off: run it again";

}  // namespace

void RunKeeper::Begin() {
    place_ = "The backup";
    report_ = RunReport();
    stopped_ = false;
    toBeRecorded_ = false;
    exitCode_ = exitcode::allDone;
    notesBefore_ = ErrorLog(machine_).Notes().size();
    RestoreJournal(machine_).ClearKilled();  // what lies beside originals is none of theirs, and not to be saved
    hold_.emplace(machine_, "A backup is running.");
}

bool RunKeeper::GoOn() {
    stopped_ = stopped_ || (hold_ && !hold_->GoOn());
    return !stopped_;
}

void RunKeeper::Copied(RunReport report) {
    report_ = std::move(report);
    toBeRecorded_ = true;
    if (stopped_) {
        report_.Add(place_, stoppedHere);
    }
    if (hold_ && !hold_->GoOn()) {
        static_cast<void>(Finish());  // whoever asks for the exit code later gets the same
    }
}

int RunKeeper::Finish() {
    if (toBeRecorded_) {
        toBeRecorded_ = false;
        // Starts that were refused while this run went on are none of its business, and not said anywhere else.
        std::vector<std::string> notes = ErrorLog(machine_).Notes();
        notes.erase(notes.begin(), notes.begin() + static_cast<std::ptrdiff_t>(std::min(notesBefore_, notes.size())));
        exitCode_ = FinishRun(machine_, form_, report_, notes);
    }
    hold_.reset();
    return exitCode_;
}

}  // namespace marlok
