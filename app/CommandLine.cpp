#include "app/CommandLine.h"

#include "fileops/Errors.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"

namespace marlok::app {

std::vector<std::string> SplitCommandLine(std::string_view commandLine, int maxArgs) {
    constexpr std::string_view delimiters = " ,/\t\"";
    std::vector<std::string> arguments;
    bool inArgument = false;
    for (const char c : commandLine) {
        if (delimiters.find(c) != std::string_view::npos) {
            inArgument = false;
            continue;
        }
        if (!inArgument) {
            if (static_cast<int>(arguments.size()) == maxArgs) {
                break;
            }
            arguments.emplace_back();
            inArgument = true;
        }
        arguments.back() += c;
    }
    return arguments;
}

bool GetCommandLine(Program& program, int maxArgs) {
    const std::vector<std::string> arguments = SplitCommandLine(program.machine.process.Arguments(), maxArgs);
    if (arguments.empty()) {
        return false;
    }
    std::string text;
    for (const std::string& argument : arguments) {
        text += argument + "\r\n";
    }
    program.gCommandFile = program.BesideProgram(programfile::command);
    const SystemError code = SaveWholeFile(program.machine.files, program.gCommandFile, text);
    if (code != error::success) {
        Raise(code);
    }
    return true;
}

void TakeRunFlags(Program& program) {
    std::string bytes;
    const SystemError code = ReadWholeFile(program.machine.files, program.gCommandFile, bytes);
    if (code != error::success) {
        Raise(code);
    }
    for (const std::string_view line : text::Split(bytes, "\r\n")) {
        if (line == "A" || line == "a") {
            program.gAllFiles = true;
        } else if (line == "C" || line == "c") {
            program.gAllFiles = false;
        } else if (line == "S" || line == "s") {
            program.gShowMessage = true;
        }
    }
}

}  // namespace marlok::app
