#pragma once

#include <array>
#include <string>
#include <string_view>

namespace marlok {

/// Names of the program's own files. They lie beside the program.
namespace programfile {
inline constexpr const char* program = "Marlok Backup.exe";
inline constexpr const char* command = "Command.txt";
inline constexpr const char* deleteFolder = "DeleteFolder.txt";
inline constexpr const char* runLog = "Backup Log File.txt";
inline constexpr const char* errorLog = "Backup Error Log.txt";
inline constexpr const char* report = "Backup Report.txt";
inline constexpr const char* history = "Backup History.txt";
inline constexpr const char* replacedLog = "Replaced File Log.txt";
inline constexpr const char* restartSource = "Restart.sec";
inline constexpr const char* restartProgram = "Restart.exe";
inline constexpr const char* animation = "pc21.gif";
inline constexpr const char* help = "Backup.hlp";
inline constexpr const char* helpPage = "Help.html";

/// All of them: what no list of original paths and no saved copy may take the place of.
inline constexpr std::array all{program,     command,       deleteFolder,   runLog,    errorLog, report,  history,
                                replacedLog, restartSource, restartProgram, animation, help,     helpPage};

/// True for the name of one of the program's files, in any letter case.
[[nodiscard]] bool IsProgramFile(std::string_view name);
}  // namespace programfile

/// The folder that the program lies in.
class ProgramFolder {
 public:
    explicit ProgramFolder(std::string_view path);

    /// With a "\" at its end.
    [[nodiscard]] const std::string& WithBackslash() const { return path_; }

    /// Full path of a file beside the program, or in a folder there.
    [[nodiscard]] std::string PathOf(std::string_view name) const { return path_ + std::string(name); }

 private:
    std::string path_;
};

}  // namespace marlok
