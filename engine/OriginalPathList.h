#pragma once

#include <optional>
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

    /// The original paths of saved files, looked up all at once by their names below the location; nothing for a name
    /// that is not in the list, and "" for one without a full path (see FindOriginalPath).
    [[nodiscard]] std::vector<std::optional<std::string>> FindAll(const std::vector<std::string>& names) const;

    /// Reads the list, adds at its end those of `originals` that do not occur in it yet, and saves it; makes the file,
    /// and the folder it lies in, when missing. Returns `error::success` or why it is unchanged.
    [[nodiscard]] SystemError Add(const std::vector<std::string>& originals);

    /// For each name in turn, takes out the first line left that contains it, letter case ignored: at most one line for
    /// each.
    void RemoveFirstContaining(const std::vector<std::string>& names);

    /// Takes out every line that contains one of `paths`, letter case ignored.
    void RemoveContaining(const std::vector<std::string>& paths);

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
