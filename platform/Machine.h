#pragma once

#include "platform/Browser.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// The machine the program runs on, one narrow interface for each of its services. Owns none of them; they outlive it.
struct Machine {
    Registry& registry;
    FileSystem& files;
    Drives& drives;
    Shell& shell;
    Desktop& desktop;
    Clock& clock;
    Process& process;
    SystemInfo& system;
    Browser& browser;
};

}  // namespace marlok
