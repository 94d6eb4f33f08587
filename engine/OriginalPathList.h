#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// Which of `items` occur nowhere in `text` (letter case matters; an item inside a longer line occurs), in their order,
/// empty ones left out. An item is searched for in `text` as it stands: what is added together does not count. Takes
/// time proportional to `text` and to `items`, not to their product.
[[nodiscard]] std::vector<std::string_view> NotOccurring(std::string_view text, const std::vector<std::string>& items);

/// The original path that `name`, found at `place` (bytes) of the text of a list of original paths, is the end of. The
/// column at which the first drive root of the list stands is taken for every line: deliberate. "" when the first 200
/// characters hold no drive root, or too little stands before `place`.
[[nodiscard]] std::string OriginalPathAt(std::string_view text, std::size_t place, const std::string& name);

/// The original path of a saved file, searched for in the text of a list of original paths. `name` is the original path
/// without its drive root. The first occurrence counts, also inside a longer line; letter case matters. "" and
/// `gSearchOn` false when `name` does not occur; "" and `gSearchOn` as it was when OriginalPathAt finds none.
[[nodiscard]] std::string FindOriginalPath(std::string_view text, const std::string& name, bool& gSearchOn);

/// What a list of original paths says of a saved file. True when it names one original.
struct FoundOriginal {
    enum class Kind {
        notListed,
        one,      ///< `paths` holds it: "" when its line holds no full path (see OriginalPathAt)
        several,  ///< files of that path on several drives were saved in this one place; `paths` holds them all
    };
    Kind kind = Kind::notListed;
    std::vector<std::string> paths;

    explicit operator bool() const { return kind == Kind::one; }

    /// The one original.
    const std::string& operator*() const { return paths.front(); }
};

/// Decides about a line of a list of original paths.
using LineRule = std::function<bool(const std::string& line)>;

/// A location's list of original paths: one full path of a source a line. The file is the old list or the new one at
/// any moment. What could not be read is never written back.
class OriginalPathList {
 public:
    /// Nothing is read yet. `machine` outlives this object.
    OriginalPathList(Machine& machine, const Location& location);

    /// The list in the file at `path`.
    OriginalPathList(Machine& machine, std::string path) : machine_(machine), path_(std::move(path)) {}

    [[nodiscard]] const std::string& Path() const { return path_; }

    enum class State {
        missing,     ///< there is no such file: an empty list
        unreadable,  ///< there may be one, and what it holds is not known; see Code
        read,
    };

    /// Reads the file.
    State Load();

    /// Why the list could not be read; `error::success` when it could.
    [[nodiscard]] SystemError Code() const { return code_; }

    /// Its lines, empty ones left out.
    [[nodiscard]] std::vector<std::string> Lines() const;

    /// The original paths of saved files, looked up all at once by their names below the location. The line that is a
    /// root and the name, to the letter, is the original; without one the first occurrence counts (FindOriginalPath).
    [[nodiscard]] std::vector<FoundOriginal> FindAll(const std::vector<std::string>& names) const;

    /// Reads the list, adds at its end those of `originals` that do not occur in it yet, and saves it; makes the file,
    /// and the folder it lies in, when missing. Returns `error::success` or why it is unchanged.
    [[nodiscard]] SystemError Add(const std::vector<std::string>& originals);

    /// For each name in turn takes out one line at most: the first one left that is a root and the name, else the first
    /// one left that contains the name; letter case ignored. Lines that `mayGo` is false for stay, whatever they hold.
    void RemoveFirst(const std::vector<std::string>& names, const LineRule& mayGo);

    /// Takes out the lines of the files and folders `paths` and of what lies below them, letter case ignored, which
    /// `mayGo` is true for.
    void RemoveBelow(const std::vector<std::string>& paths, const LineRule& mayGo);

    /// Makes these the lines.
    void SetLines(const std::vector<std::string>& lines);

    /// What becomes of the file when no line is left.
    enum class NothingLeft {
        removesTheFile,   ///< the saved files are gone, or the user has taken out every line
        keepsTheOldList,  ///< sources are taken off a location: its list is never emptied that way
    };

    /// Writes the lines.
    [[nodiscard]] SystemError Save(NothingLeft nothingLeft);

 private:
    Machine& machine_;
    std::string path_;
    std::string text_;
    SystemError code_ = error::success;
};

}  // namespace marlok
