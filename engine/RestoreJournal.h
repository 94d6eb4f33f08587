#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Machine.h"

namespace marlok {

/// True for a full path that a file can be put back to: with a root, and no component that Windows takes for another.
[[nodiscard]] bool IsPlainOriginal(const std::string& original);

/// An original that is being replaced by a saved copy.
struct Replacement {
    std::string original;  ///< full path
    std::string oldName;   ///< what it is called while its successor takes its place, a name in the same folder
    bool done = false;     ///< the successor is in its place, and what lies under `oldName` is to go

    friend bool operator==(const Replacement&, const Replacement&) = default;
};

/// The journal's text, one replacement a line; and the replacements of a journal's text. A line that is damaged, or cut
/// short as by a process that died while it wrote, is left out.
[[nodiscard]] std::string FormatReplacements(const std::vector<Replacement>& replacements);
[[nodiscard]] std::vector<Replacement> ParseReplacements(std::string_view text);

/// Where originals are being replaced, so that nothing stays behind: "~Marlok Backup.put" beside the program. Each
/// replacement is entered before anything is written, and the file goes when all are in order.
class RestoreJournal {
 public:
    /// Nothing is read or written yet. `machine` outlives this object.
    explicit RestoreJournal(Machine& machine);
    RestoreJournal(const RestoreJournal&) = delete;
    RestoreJournal& operator=(const RestoreJournal&) = delete;
    ~RestoreJournal() = default;

    /// Puts in order what killed restores have left, and forgets it: an unfinished copy goes, and an original that is
    /// missing comes back. What cannot be reached or done now stays in the journal for the next time.
    void ClearKilled();

    /// Enters a replacement. On failure it is not entered, nothing may be moved away for it, and no other can be
    /// entered either: half a line would spoil the next one.
    [[nodiscard]] SystemError Enter(const Replacement& replacement);

    /// A replacement has left something behind that could not be removed.
    void Leave(const Replacement& replacement) { left_.push_back(replacement); }

    /// All that was entered is in order, but for what was left.
    void Finish();

 private:
    [[nodiscard]] bool ClearOne(const Replacement& replacement) const;
    [[nodiscard]] bool ClearOld(const Replacement& replacement) const;
    void Save();

    Machine& machine_;
    std::string path_;
    std::unique_ptr<File> file_;            ///< open from the first entry on
    SystemError written_ = error::success;  ///< why nothing can be entered any more
    std::vector<Replacement> left_;         ///< what is still to be put in order
    bool known_ = false;                    ///< what the file holds beside the entries of this object is in `left_`
};

}  // namespace marlok
