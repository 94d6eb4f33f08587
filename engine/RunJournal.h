#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "paths/Location.h"
#include "platform/FileSystem.h"

namespace marlok {

/// One copy, as the journal of a run knows it.
struct JournalEntry {
    std::uint64_t size = 0;  ///< of the source, bytes
    FileTime time = 0;       ///< last write of the source
    bool replaces = false;   ///< a saved copy exists: the new one is written to a neighbour first
    std::string target;      ///< path below the backup location
    std::string source;      ///< full path
};

/// The journal of the copies in progress, a file in the backup location while a run writes there. It lets a file that
/// has no saved copy yet be copied straight to its place, which costs half of what a neighbour and a renaming cost:
/// each group of copies is written down before the first of them begins, so after a run that was killed the next one
/// knows which files may be torn, and which whole ones are not in the list of original paths yet.
class RunJournal {
 public:
    /// Nothing is written before the first Record. `files` must outlive this object.
    RunJournal(FileSystem& files, const Location& location);

    /// Writes down a group of copies that are about to begin, all earlier ones being done. On failure none of them may
    /// be written straight to its place.
    [[nodiscard]] SystemError Record(std::span<const JournalEntry> group);

    /// A copy failed and what it left could not be removed: the entry stays in the journal for the next run.
    void KeepForNextRun(const JournalEntry& entry) { kept_.push_back(entry); }

    /// The copies are done but could not be listed: leaves the journal for the next run, which lists them.
    void Leave() { file_.reset(); }

    /// All copies are done and listed: removes the journal, unless something is kept for the next run. Returns why it
    /// could not be removed.
    [[nodiscard]] SystemError Finish();

 private:
    FileSystem& files_;
    std::string path_;
    std::unique_ptr<File> file_;
    std::vector<JournalEntry> kept_;
};

/// What a run that was killed in this location has left.
struct Leftovers {
    std::vector<std::string> originals;   ///< sources whose saved copies are whole
    std::vector<std::string> notRemoved;  ///< files that may be torn and could not be removed
};

/// Reads the journal that a killed run left in `location`, removes torn copies and neighbours, and tells what was
/// copied. A saved copy counts as whole when its size and last-write time are those that its source had. Only files
/// named in the last group can be torn; a journal whose own last group is incomplete ends with the group before.
/// Nothing is removed outside the location nor through a link in it, whatever the journal says. The journal itself
/// stays: see RemoveJournal.
[[nodiscard]] Leftovers ClearLeftovers(FileSystem& files, const Location& location);

/// Removes a journal that was dealt with; no journal is no error.
[[nodiscard]] SystemError RemoveJournal(FileSystem& files, const Location& location);

/// The journal's text for one group, and the groups of a journal's text; a damaged group and all that follow are left
/// out.
[[nodiscard]] std::string FormatJournalGroup(std::span<const JournalEntry> group);
[[nodiscard]] std::vector<std::vector<JournalEntry>> ParseJournal(std::string_view text);

}  // namespace marlok
