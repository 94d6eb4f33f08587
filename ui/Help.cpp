#include "ui/Help.h"

#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "paths/FileAddress.h"
#include "paths/ProgramFiles.h"
#include "ui/Texts.h"

namespace marlok::ui {

namespace {

/// Parameters, working folder and show mode as help files have always been opened here.
bool OpenHelpFile(Machine& machine, const std::string& path) {
    return FileExists(machine.files, path) && machine.shell.Open({path, "0", "0", 0}) == error::success;
}

SystemError OpenHelpPage(Machine& machine, const std::string& path, const std::string& section) {
    // Without a page the browser would open all the same, and show an error of its own.
    if (!section.empty() && FileExists(machine.files, path) &&
        machine.shell.OpenAddress(FileAddress(path) + "#" + section) == error::success) {
        return error::success;
    }
    return machine.shell.Open({path, "", "", 1});
}

}  // namespace

void OpenHelp(Machine& machine, const std::string& section) {
    const ProgramFolder folder(machine.process.ProgramFolder());
    if (OpenHelpFile(machine, folder.PathOf(programfile::help))) {
        return;
    }
    const SystemError code = OpenHelpPage(machine, folder.PathOf(programfile::helpPage), section);
    if (code != error::success) {
        machine.desktop.ShowMessage("The Help File Could Not Be Opened\r\n\r\n" + folder.PathOf(programfile::helpPage) +
                                        ": " + Describe(machine.system, code) +
                                        "\r\n\r\nOpen it in a web browser. When it is not there, install the program "
                                        "again; nothing that is saved or set is lost by that.",
                                    messagestyle::ok | messagestyle::information, texts::infoTitle);
    }
}

}  // namespace marlok::ui
