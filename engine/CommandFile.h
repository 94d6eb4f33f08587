#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// What the letters among the lines of a command file ask for; the last one of a kind counts.
struct RunLetters {
    bool allFiles = false;     ///< "A" or "a"; "C" or "c" takes it back
    bool showMessage = false;  ///< "S" or "s"
};

/// The letters of a command file, wherever they stand, on a last line without line end too. Every other line is passed
/// over.
[[nodiscard]] RunLetters LettersOf(std::string_view text);

/// The lines of a command file that choose backup locations: those behind the first up to the last line end, letters,
/// empty lines and lone delimiters left out. "C" and "c" choose like any other text: deliberate, since a location may
/// be called so.
[[nodiscard]] std::vector<std::string> LocationLinesOf(std::string_view text);

/// What location lines choose among the configured backup locations.
struct LocationChoice {
    std::vector<Location> chosen;  ///< each whose path holds one of the lines, in any letter case; in their order
    std::vector<std::string> withoutEffect;  ///< lines that no location's path holds
};

/// Without a line every location is chosen.
[[nodiscard]] LocationChoice ChooseLocations(const std::vector<std::string>& lines,
                                             const std::vector<Location>& configured);

/// The first line of a command file when it is none of the letters: it says what is copied, so that no location is
/// chosen by it. "" otherwise.
[[nodiscard]] std::string PassedOverFirstLine(std::string_view text);

/// "Command.txt" beside the program: what an unattended or a background run is to do, one item a line. Written whole,
/// read by the run, and deleted by it.
class CommandFile {
 public:
    /// `machine` outlives this object.
    explicit CommandFile(Machine& machine);

    [[nodiscard]] const std::string& Path() const { return path_; }

    /// True when it is there and can be seen: a hidden one is not.
    [[nodiscard]] bool Exists() const;

    /// Replaces what is there.
    /// @throws RuntimeError when that fails, with a description that names the file; it is as it was then.
    void Write(const std::vector<std::string>& lines) const;

    /// Its whole text.
    /// @throws RuntimeError when it cannot be read, with a description that names the file.
    [[nodiscard]] std::string Read() const;

    /// Deletes it. One that is gone or in use is no failure: the next run writes its own.
    void Remove() const;

 private:
    Machine& machine_;
    std::string path_;
};

}  // namespace marlok
