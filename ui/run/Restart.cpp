#include "ui/run/Restart.h"

#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "forms/Windows.h"
#include "paths/ProgramFiles.h"
#include "ui/run/Form5.h"

namespace marlok {

void RequestRestart(Machine& machine, forms::Form& caller) {
    if (auto* progress = caller.Collection().Find<Form5>()) {
        progress->Unload();
    }
    const ProgramFolder folder(machine.process.ProgramFolder());
    const std::string restarter = folder.PathOf(programfile::restartProgram);
    const std::string source = folder.PathOf(programfile::restartSource);
    if (const SystemError code = CopyThisFile(machine.files, source, restarter); code != error::success) {
        Raise(machine.system, code, source);
    }
    const SystemError code = machine.process.StartHidden(restarter, machine.process.Identification());
    if (code != error::success) {
        Raise(machine.system, code, restarter);
    }
    machine.process.AllowForeground();
    caller.Unload();
}

}  // namespace marlok
