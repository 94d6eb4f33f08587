#include "app/CommandLine.h"

#include "fileops/Errors.h"
#include "fileops/WholeFiles.h"
#include "text/Lines.h"
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

bool GetCommandLine(Session& session, int maxArgs) {
    const std::vector<std::string> arguments = SplitCommandLine(session.machine.process.Arguments(), maxArgs);
    if (arguments.empty()) {
        return false;
    }
    session.gCommandFile = session.gAppFolder.PathOf(programfile::command);
    const SystemError code = SaveWholeFile(session.machine.files, session.gCommandFile, text::JoinLines(arguments));
    if (code != error::success) {
        Raise(code);
    }
    return true;
}

void TakeRunFlags(Session& session) {
    std::string bytes;
    const SystemError code = ReadWholeFile(session.machine.files, session.gCommandFile, bytes);
    if (code != error::success) {
        Raise(code);
    }
    for (const std::string_view line : text::Split(bytes, "\r\n")) {
        if (line == "A" || line == "a") {
            session.gAllFiles = true;
        } else if (line == "C" || line == "c") {
            session.gAllFiles = false;
        } else if (line == "S" || line == "s") {
            session.gShowMessage = true;
        }
    }
}

}  // namespace marlok::app
