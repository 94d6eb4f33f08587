#include "engine/RunLog.h"

#include <array>
#include <cstdio>

#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"

namespace marlok {

namespace {

constexpr std::array<const char*, 7> dayNames{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                              "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 12> monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

std::string FormatLogDate(const LocalTime& time) {
    return std::string(dayNames.at(static_cast<std::size_t>(time.weekday))) + ", " +
           monthNames.at(static_cast<std::size_t>(time.month - 1)) + " " + std::to_string(time.day) + " " +
           std::to_string(time.year);
}

std::string FormatLogTime(const LocalTime& time) {
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d %s", hour, time.minute, time.hour < 12 ? "AM" : "PM");
    return text.data();
}

std::string LogText(const std::string& header, const forms::ListBox& lines) {
    std::string text = header + "\r\n";
    if (lines.ListCount() == 0) {
        return text;
    }
    text += "\r\n";
    for (const std::string& line : lines.Items()) {
        if (IsEndMark(line)) {
            break;
        }
        text += line + "\r\n";
    }
    return text;
}

SystemError WriteLog(Program& program, const std::string& path, const std::string& text) {
    return SaveWholeFile(program.machine.files, path, text);
}

SystemError MakeDesktopShortcut(Program& program, const std::string& logPath, const std::string& name,
                                const std::string& description) {
    const std::string desktop = program.machine.shell.DesktopFolder();
    if (desktop.empty()) {
        return error::pathNotFound;
    }
    Shortcut shortcut;
    shortcut.path = AddBackslash(desktop) + name + ".lnk";
    shortcut.targetPath = logPath;
    shortcut.iconLocation = program.gAppFolder + "Marlok Backup.exe, 0";
    shortcut.description = description;
    shortcut.workingDirectory = program.gAppFolder;
    return program.machine.shell.SaveShortcut(shortcut);
}

}  // namespace marlok
