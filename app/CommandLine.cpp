#include "app/CommandLine.h"

#include "engine/CommandFile.h"

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
    const CommandFile file(session.machine);
    session.gCommandFile = file.Path();
    file.Write(arguments);
    return true;
}

void TakeRunFlags(Session& session) {
    const RunLetters letters = LettersOf(CommandFile(session.machine).Read());
    session.gAllFiles = letters.allFiles;
    session.gShowMessage = session.gShowMessage || letters.showMessage;
}

}  // namespace marlok::app
