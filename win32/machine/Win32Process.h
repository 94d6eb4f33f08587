#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Process.h"

namespace marlok::win32 {

/// Behind the program's path, quoted or not, and the blanks that follow it.
[[nodiscard]] std::wstring_view ArgumentsOf(std::wstring_view commandLine);

/// This process. The claim of the single instance ends with this object.
class Win32Process : public Process {
 public:
    Win32Process() = default;
    Win32Process(const Win32Process&) = delete;
    Win32Process& operator=(const Win32Process&) = delete;
    ~Win32Process() override;

    std::string Arguments() override;
    std::string ProgramFolder() override;
    std::string CurrentFolder() override;
    bool ClaimSingleInstance() override;
    std::uint32_t ProcessId() override;
    std::string Identification() override;
    SystemError StartHidden(const std::string& programPath, const std::string& arguments) override;
    void AllowForeground() override;
    void WriteError(const std::string& line) override;

 private:
    void* claim_ = nullptr;          ///< the mutex, owned; null while nothing is claimed
    std::uint32_t lastStarted_ = 0;  ///< the process that StartHidden started last; 0 for none
};

}  // namespace marlok::win32
