#include "app/Form2.h"

#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"

namespace marlok::app {

Form2::Form2(forms::Windows& windows, Program& program) : Form(windows, "Form2", ""), program_(program) {
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void Form2::Timer1_Timer() {
    Timer1.Stop();
    const std::string restarter = program_.BesideProgram(programfile::restartProgram);
    if (FileExists(program_.machine.files, restarter)) {
        // While the restart program has not ended yet it cannot be deleted; the next start does it.
        static_cast<void>(DeleteThisFile(program_.machine.files, program_.machine.shell, restarter));
    }
    Unload();
}

}  // namespace marlok::app
