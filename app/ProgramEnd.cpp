#include "app/ProgramEnd.h"

#include <exception>
#include <memory>
#include <new>
#include <string>

#include "app/CommandLine.h"
#include "engine/ErrorLog.h"
#include "engine/RunLog.h"
#include "fileops/Deleting.h"
#include "fileops/Errors.h"
#include "paths/ProgramFiles.h"
#include "paths/WorkingFiles.h"
#include "platform/RuntimeError.h"
#include "ui/Texts.h"

namespace marlok::app {

namespace {

constexpr const char* programTitle = "Marlok Backup Utility";

/// Milliseconds. Long enough to be read by somebody who happens to be there.
constexpr std::uint32_t shownFor = 30'000;

/// What is said of an exception: a classic number, and a description.
struct Failure {
    int number;
    std::string description;
};

/// Of the exception that is being handled.
Failure PresentFailure() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return {error.Number(), error.what()};
    } catch (const std::bad_alloc&) {
        return {runtimeerror::outOfMemory, "Out of memory"};
    } catch (const std::exception& error) {
        return {runtimeerror::internalError, std::string("Internal error: ") + error.what()};
    } catch (...) {
        return {runtimeerror::internalError, "Internal error"};
    }
}

void ReportFailure(Machine& machine, const Failure& failure) {
    const std::string number = std::to_string(failure.number);
    const std::string text = "Run-time error '" + number + "':\r\n\r\n" + failure.description;
    if (!IsUnattended(machine)) {
        machine.desktop.ShowMessage(text, messagestyle::stop, programTitle);
        return;
    }
    machine.process.WriteError(text);
    // When it cannot be added there, standard error has it.
    static_cast<void>(
        ErrorLog(machine).Note(failure.description + " (run-time error " + number + "); the program has ended"));
}

/// Makes a file beside the program and removes it again.
SystemError TryToWrite(FileSystem& files, const std::string& path) {
    std::unique_ptr<File> file;
    SystemError code = files.Open(path, OpenMode::replace, file);
    if (code == error::accessDenied && ForceDelete(files, path) == error::success) {
        code = files.Open(path, OpenMode::replace, file);  // a hidden or read-only one that was left
    }
    if (code != error::success) {
        return code;
    }
    const SystemError closed = file->Close();
    file.reset();
    const SystemError deleted = ForceDelete(files, path);
    return closed != error::success ? closed : deleted;
}

/// Said of a moment, not of the folder.
bool MayPass(SystemError code) {
    return code == error::sharingViolation || code == error::lockViolation || code == error::diskFull ||
           code == error::handleDiskFull;
}

}  // namespace

bool IsUnattended(Machine& machine) {
    return !SplitCommandLine(machine.process.Arguments()).empty();
}

int EndByException(Machine& machine) {
    try {
        ReportFailure(machine, PresentFailure());
    } catch (const std::exception&) {
        // There is no memory even to say so; the exit code still does.
        return exitcode::nothingRan;
    }
    return exitcode::nothingRan;
}

int EndAsSecondInstance(Machine& machine) {
    constexpr const char* text = "This Program Is Already Running";
    constexpr std::uint32_t style = messagestyle::ok | messagestyle::information;
    if (!IsUnattended(machine)) {
        machine.desktop.ShowMessage(text, style, ui::texts::infoTitle);
        return exitcode::nothingRan;
    }
    // The note first: whoever started this may not wait until the message is gone.
    static_cast<void>(ErrorLog(machine).Note("not run, because the program was running already; its arguments were " +
                                             machine.process.Arguments()));
    machine.desktop.ShowMessageFor(text, style, ui::texts::infoTitle, shownFor);
    return exitcode::nothingRan;
}

bool CanWriteBeside(Machine& machine) {
    const std::string folder = machine.process.ProgramFolder();
    const SystemError code = TryToWrite(machine.files, ProgramFolder(folder).PathOf(workingfile::newText));
    if (code == error::success || MayPass(code)) {
        return true;
    }
    const std::string text = "The program cannot write in its own folder " + folder +
                             ", where it keeps its lists and "
                             "logs, because " +
                             Describe(machine.system, code) +
                             ": move the folder to a place where you may write, for example into your documents, and "
                             "start it there.";
    if (IsUnattended(machine)) {
        machine.process.WriteError(text);
    } else {
        machine.desktop.ShowMessage(text, messagestyle::ok | messagestyle::information, ui::texts::infoTitle);
    }
    return false;
}

}  // namespace marlok::app
