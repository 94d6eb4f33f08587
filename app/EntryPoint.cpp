#include <cstdio>
#include <exception>

#include "app/Main.h"
#include "engine/RunLog.h"
#include "win32/Win32Machine.h"
#include "win32/machine/SystemLibraries.h"

/// The one place that names the real machine.
int main() {
    marlok::win32::LoadLibrariesFromSystemFolderOnly();
    try {
        marlok::win32::Win32Machine machine;
        return marlok::app::RunProgram(machine.machine(), &machine.views());
    } catch (const std::exception& error) {
        // Without a machine there is nothing else to say it with.
        static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
        return marlok::exitcode::nothingRan;
    }
}
