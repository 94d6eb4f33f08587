#pragma once

#include <string>
#include <vector>

#include "engine/AbsentDrives.h"
#include "engine/RunReport.h"
#include "platform/Machine.h"

namespace marlok {

/// The lines of a report as the error log has them: path, colon, reason. What failed because its drive is not there
/// says so, with what to do: see AbsentDrives for `again`.
[[nodiscard]] std::vector<std::string> ErrorLogLines(Machine& machine, const RunReport& report,
                                                     const std::string& again);

/// The same; `drives` remembers which are missing, so that they are not searched for once more.
[[nodiscard]] std::vector<std::string> ErrorLogLines(SystemInfo& system, AbsentDrives& drives, const RunReport& report);

/// "Backup Error Log.txt" beside the program: what could not be done.
///
/// A run replaces it by its own report. What belongs to no run (a start that was refused, an error that ended the
/// program) is added to what is there, as a note: a line that says when it happened.
class ErrorLog {
 public:
    /// `machine` outlives this object.
    explicit ErrorLog(Machine& machine);

    [[nodiscard]] const std::string& Path() const { return path_; }

    /// Makes these the lines; removes the file when there are none. When it cannot be written, standard error receives
    /// the lines, and the file is as it was.
    SystemError Write(const std::vector<std::string>& lines) const;

    /// Adds a note; `what` is a sentence without a full stop. The line is added to the file in place: another start of
    /// the program, whose run goes on, may be about to replace it. When that fails, standard error receives the line.
    SystemError Note(const std::string& what) const;

    /// The notes that the file holds, in their order.
    [[nodiscard]] std::vector<std::string> Notes() const;

 private:
    Machine& machine_;
    std::string path_;
};

}  // namespace marlok
