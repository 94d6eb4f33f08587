#include "win32/machine/SystemLibraries.h"

#include <windows.h>

namespace marlok::win32 {

void LoadLibrariesFromSystemFolderOnly() {
    // Present since Windows 8, and without a reason to fail; a process for which it does is no worse off than before.
    static_cast<void>(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
}

}  // namespace marlok::win32
