#include "app/Form2.h"

#include "fileops/Deleting.h"
#include "fileops/FolderFunctions.h"
#include "paths/ProgramFiles.h"

namespace marlok::app {

Form2::Form2(forms::Windows& windows, Machine& machine) : Form(windows, "Form2", ""), machine_(machine) {
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form2::Timer1_Timer() {
    Timer1.Stop();
    const std::string restarter = ProgramFolder(machine_.process.ProgramFolder()).PathOf(programfile::restartProgram);
    if (FileExists(machine_.files, restarter)) {
        // While the restart program has not ended yet it cannot be deleted; the next start does it.
        static_cast<void>(DeleteThisFile(machine_.files, restarter));
    }
    Unload();
}

}  // namespace marlok::app
