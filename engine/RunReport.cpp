#include "engine/RunReport.h"

#include "fileops/Errors.h"
#include "fileops/txtFunctions.h"

namespace marlok {

void WriteErrorLog(Program& program, const RunReport& report) {
    const std::string path = program.BesideProgram(programfile::errorLog);
    if (report.Lines().empty()) {
        // Usually there is none; one that cannot be removed is an old report and harms nobody.
        static_cast<void>(ForceDelete(program.machine.files, path));
        return;
    }
    std::string text;
    for (const RunReport::Line& line : report.Lines()) {
        const std::string reason = line.reason.empty() ? Describe(program.machine.system, line.code) : line.reason;
        text += line.path + ": " + reason + "\r\n";
    }
    const SystemError code = SaveWholeFile(program.machine.files, path, text);
    if (code != error::success) {
        program.machine.process.WriteError(path + ": " + Describe(program.machine.system, code));
        program.machine.process.WriteError(text);
    }
}

}  // namespace marlok
