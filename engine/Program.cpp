#include "engine/Program.h"

#include "fileops/FolderFunctions.h"

namespace marlok {

Program::Program(Machine& on, forms::ViewFactory* views) : machine(on), windows(on.desktop, on.clock, views) {}

std::string Program::BesideProgram(const std::string& name) const {
    return AddBackslash(machine.process.ProgramFolder()) + name;
}

}  // namespace marlok
