#include "win32/Win32Machine.h"

#include <windows.h>

#include "win32/machine/Com.h"
#include "win32/machine/Win32Browser.h"
#include "win32/machine/Win32Clock.h"
#include "win32/machine/Win32Drives.h"
#include "win32/machine/Win32FileSystem.h"
#include "win32/machine/Win32Process.h"
#include "win32/machine/Win32Registry.h"
#include "win32/machine/Win32Shell.h"
#include "win32/machine/Win32SystemInfo.h"
#include "win32/views/NativeLoop.h"
#include "win32/views/NativeViews.h"
#include "win32/views/Win32Desktop.h"

namespace marlok::win32 {

struct Win32Machine::Services {
    Apartment apartment;  ///< first in, last out
    NativeLoop loop;
    NativeViews views{loop};
    Win32Registry registry;
    Win32FileSystem files;
    Win32Drives drives;
    Win32Shell shell{[this] { return loop.ActiveWindow(); }};
    Win32Desktop desktop{loop};
    Win32Clock clock;
    Win32Process process;
    Win32SystemInfo system;
    Win32Browser browser;
    Machine machine{registry, files, drives, shell, desktop, clock, process, system, browser};
};

Win32Machine::Win32Machine() : services_(std::make_unique<Services>()) {
    // A drive without a medium gives its error code, not a box that waits for somebody to insert one.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    // A long copy repaints its windows but takes no input; Windows is not to grey them out for that.
    DisableProcessWindowsGhosting();
}

Win32Machine::~Win32Machine() = default;

Machine& Win32Machine::machine() {
    return services_->machine;
}

forms::ViewFactory& Win32Machine::views() {
    return services_->views;
}

}  // namespace marlok::win32
