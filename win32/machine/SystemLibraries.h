#pragma once

namespace marlok::win32 {

/// From now on this process finds libraries in the system folder alone, unless it is asked for one by its full path.
/// The folder that the program lies in is otherwise looked at first, and a portable program may lie among anything.
/// Libraries that Windows does not protect by itself are linked so that they are loaded when they are first used, which
/// has to be after this call.
void LoadLibrariesFromSystemFolderOnly();

}  // namespace marlok::win32
