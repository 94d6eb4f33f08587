#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// One copy, as the journal of a run knows it.
struct JournalEntry {
    std::uint64_t size = 0;  ///< of the source, bytes
    FileTime time = 0;       ///< last write of the source
    bool replaces = false;   ///< a saved copy exists: the new one is written to a neighbour first
    std::string target;      ///< path below the backup location
    std::string source;      ///< full path
};

/// A run of entries in a journal's text.
struct JournalGroup {
    /// True for copies that an earlier run could not settle; false for copies that the run was about to make.
    bool unsettled = false;
    std::vector<JournalEntry> entries;
};

/// What a journal's text holds.
struct JournalText {
    std::vector<JournalGroup> groups;

    /// True when something stands behind the groups that a writing which was cut short does not explain.
    bool damaged = false;
};

/// The journal's text for one group, and the groups of a journal's text; an incomplete group at the end is left out.
[[nodiscard]] std::string FormatJournalGroup(std::span<const JournalEntry> entries, bool unsettled = false);
[[nodiscard]] JournalText ParseJournal(std::string_view text);

/// The journal of the copies in progress, a file in the backup location while a run writes there. It lets a file that
/// has no saved copy yet be copied straight to its place, which costs half of what a neighbour and a renaming cost:
/// each group of copies is on the device before the first of them begins, so after a run that was killed the next one
/// knows which files may be torn, and which whole ones are not in the list of original paths yet.
///
/// No file that may be torn is deleted. It is copied anew beside and replaced by that, whatever its time; one whose
/// source is gone stays where it is, and the journal keeps its name until it is settled.
///
/// The file bears the computer's name: two computers may write to one location, one after the other. While one has its
/// journal open the other passes the location over.
class RunJournal {
 public:
    /// Nothing is read or written yet. `machine` outlives this object.
    RunJournal(Machine& machine, const Location& location);

    enum class State {
        ready,       ///< with or without something that an earlier run has left
        unreadable,  ///< its own journal cannot be read, or is damaged: see Code; it is kept, and nothing is recorded
        inUse,       ///< another run is writing in this location
    };

    /// Reads what earlier runs have left. Removes neighbours of theirs.
    State Load();

    /// Why the journal could not be read; `error::success` for a damaged one.
    [[nodiscard]] SystemError Code() const { return code_; }
    [[nodiscard]] const std::string& Path() const { return path_; }

    /// Name of the neighbour that copies are written to before they replace a saved copy.
    [[nodiscard]] const std::string& PartName() const { return partName_; }

    /// True when a journal of another computer lies here.
    [[nodiscard]] bool ForeignLeft() const { return foreignLeft_; }

    /// Sources whose saved copies were made whole by a run that was killed before it could list them. Not those of the
    /// last group: they are copied anew.
    [[nodiscard]] const std::vector<std::string>& Originals() const { return originals_; }

    /// True when the saved file at this path below the location may be torn.
    [[nodiscard]] bool MayBeTorn(const std::string& target) const;

    /// `inUse`: another run is at work in the location, and nothing may be written there.
    enum class Begun { yes, inUse };

    /// Begins to write: from now on other runs see that this one is at work. Call it before the first change in the
    /// location. `yes` also when nothing can be recorded: Record answers false then.
    [[nodiscard]] Begun Begin();

    /// Writes down a group of copies that are about to begin, all earlier ones being done. False when it could not be
    /// written: none of them may be written straight to its place then, and nothing more is recorded.
    [[nodiscard]] bool Record(std::span<const JournalEntry> group);

    /// What earlier runs have left could not be listed: the file stays as it is, and nothing is recorded.
    void KeepAsItIs() { broken_ = kept_ = true; }

    /// A copy is whole now.
    void Settle(const std::string& target);

    /// A copy failed and what it left could not be removed, or may not be ours.
    void MarkUnsettled(const JournalEntry& entry);

    /// The copies are done but could not be listed: leaves the journal for the next run, which lists them.
    void Leave() { file_.reset(); }

    /// All copies are done and listed: removes the journal, or keeps what is not settled yet. `everything` says that
    /// all that is saved here was copied anew, which settles a damaged journal too. Returns why the journal could not
    /// be brought up to date; and in `incomplete` the saved files that may be torn and have no source any more.
    [[nodiscard]] SystemError Finish(bool everything, std::vector<std::string>& incomplete);

 private:
    [[nodiscard]] SystemError ReadOwn(const std::string& path);
    [[nodiscard]] bool IsInUse(const std::string& path) const;
    void TakeGroups(const JournalText& text);
    void TakeOriginal(const JournalEntry& entry);
    void Suspect(const JournalEntry& entry);
    void RemoveNeighbour(const JournalEntry& entry);
    [[nodiscard]] std::vector<JournalEntry> Unsettled() const;
    [[nodiscard]] bool Write(const std::string& text);
    [[nodiscard]] SystemError RemoveIfThere(const std::string& path);

    Machine& machine_;
    FileSystem& files_;
    Location location_;
    std::string name_;
    std::string partName_;
    std::string path_;
    std::string formerPath_;  ///< of a journal that bears no computer's name
    std::unique_ptr<File> file_;
    bool begun_ = false;
    bool broken_ = false;  ///< nothing can be recorded: writing failed, or what is there must be kept
    bool damaged_ = false;
    bool kept_ = false;
    bool foreignLeft_ = false;
    bool formerLeft_ = false;
    SystemError code_ = error::success;
    std::vector<std::string> originals_;
    std::map<std::string, JournalEntry> suspects_;  ///< by folded target
    std::vector<JournalEntry> neighbours_;          ///< copies whose neighbours could not be removed
};

}  // namespace marlok
