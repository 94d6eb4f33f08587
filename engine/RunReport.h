#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "paths/Location.h"
#include "platform/Clock.h"
#include "platform/SystemError.h"
#include "platform/SystemInfo.h"

namespace marlok {

/// What became of the files of a run, and what could not be done. Every file that a run lists ends in exactly one of
/// the four counts, except links that no program can open: a note tells of each.
class RunReport {
 public:
    std::uint64_t copied = 0;
    std::uint64_t unchanged = 0;
    std::uint64_t failed = 0;

    /// Sources that differ from their saved copies and were passed over, being older or of the same time.
    std::vector<std::string> different;

    std::uint64_t bytes = 0;         ///< of the files copied
    LocalTime start;                 ///< when the run began
    std::uint64_t milliseconds = 0;  ///< how long it took

    /// Full paths of the files that were written, in their order: saved copies, or originals put back.
    std::vector<std::string> written;

    /// A location that was run, by its path.
    struct Outcome {
        std::string location;
        bool well = true;
    };
    std::vector<Outcome> outcomes;

    /// All backup locations when the run began, run or not.
    std::vector<Location> configured;

    /// Something that could not be done: a path and the reason. Files are counted apart from this.
    struct Line {
        std::string path;
        SystemError code;
        std::string reason;  ///< for what no system error tells; "" otherwise
    };

    void Add(const std::string& path, SystemError code) { lines_.push_back({path, code, ""}); }
    void Add(const std::string& path, const std::string& reason) { lines_.push_back({path, error::success, reason}); }

    /// A file that is not saved: a line, and one more that failed.
    template <typename Reason>
    void AddFailed(const std::string& path, const Reason& reason) {
        Add(path, reason);
        ++failed;
    }

    [[nodiscard]] const std::vector<Line>& Lines() const { return lines_; }

    /// Something that the user should know and that is no failure.
    void Note(const std::string& path, const std::string& what) { notes_.push_back({path, error::success, what}); }

    [[nodiscard]] const std::vector<Line>& Notes() const { return notes_; }

 private:
    std::vector<Line> lines_;
    std::vector<Line> notes_;
};

/// Another run is at work in a location, which is passed over.
inline constexpr const char* anotherRunAtWork =
    "not backed up: another run is saving into this location; run the backup again when that has ended";

/// The reason of a line, as a sentence for the user.
[[nodiscard]] std::string ReasonOf(SystemInfo& system, const RunReport::Line& line);

}  // namespace marlok
