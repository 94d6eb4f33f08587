#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/SystemError.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// What became of the files of a run, and what could not be done. Every file that a run lists ends in exactly one of
/// the three counts.
class RunReport {
 public:
    std::uint64_t copied = 0;
    std::uint64_t unchanged = 0;
    std::uint64_t failed = 0;

    /// Full paths of the files that were written, in their order: saved copies, or originals put back.
    std::vector<std::string> written;

    /// Something that could not be done: a path and the reason. Files are counted apart from this.
    struct Line {
        std::string path;
        SystemError code;
        std::string reason;  ///< for what no system error tells; "" otherwise
    };

    void Add(const std::string& path, SystemError code) { lines_.push_back({path, code, ""}); }
    void Add(const std::string& path, const std::string& reason) { lines_.push_back({path, error::success, reason}); }

    [[nodiscard]] const std::vector<Line>& Lines() const { return lines_; }

 private:
    std::vector<Line> lines_;
};

/// The reason of a line, as a sentence for the user.
[[nodiscard]] std::string ReasonOf(SystemInfo& system, const RunReport::Line& line);

}  // namespace marlok
