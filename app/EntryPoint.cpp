#include "app/Main.h"
#include "win32/Win32Machine.h"
#include "win32/machine/SystemLibraries.h"

/// The one place that names the real machine.
int main() {
    marlok::win32::LoadLibrariesFromSystemFolderOnly();
    marlok::win32::Win32Machine machine;
    return marlok::app::RunProgram(machine.machine(), &machine.views());
}
