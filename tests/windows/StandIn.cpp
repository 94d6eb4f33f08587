#include "tests/windows/StandIn.h"

#include <windows.h>

#include "tests/windows/Waiting.h"
#include "text/Text.h"
#include "win32/Win32Machine.h"
#include "win32/machine/ModulePath.h"

namespace marlok::test {

bool IsStandIn() {
    return win32::ModulePath().ends_with(L"\\Marlok Backup.exe");
}

int RunStandIn() {
    win32::Win32Machine real;
    Machine& machine = real.machine();
    const std::string folder = machine.process.ProgramFolder();
    std::unique_ptr<File> starts;
    if (machine.files.Open(folder + "\\starts.txt", OpenMode::append, starts) != error::success ||
        starts->Write(machine.process.CurrentFolder() + "\r\n") != error::success ||
        starts->Close() != error::success) {
        return 1;
    }
    DirectoryEntry entry;
    return WaitUntil([&] { return machine.files.GetEntry(folder + "\\stop.txt", entry) == error::success; },
                     std::chrono::minutes(1))
               ? 0
               : 1;
}

}  // namespace marlok::test
