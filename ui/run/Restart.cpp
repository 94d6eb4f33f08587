#include "ui/run/Restart.h"

#include "fileops/Errors.h"
#include "ui/run/Form5.h"

namespace marlok {

void RequestRestart(Program& program, forms::Form& caller) {
    if (auto* progress = program.windows.Find<Form5>()) {
        progress->Unload();
    }
    const std::string restarter = program.BesideProgram(programfile::restartProgram);
    SystemError code = program.machine.files.Copy(program.BesideProgram(programfile::restartSource), restarter,
                                                  copyflag::none, nullptr);
    if (code == error::success) {
        code = program.machine.process.StartHidden(restarter, program.machine.process.Identification());
    }
    if (code != error::success) {
        Raise(code);
    }
    program.machine.process.AllowForeground();
    caller.Unload();
}

}  // namespace marlok
