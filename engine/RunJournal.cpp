#include "engine/RunJournal.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "fileops/Deleting.h"
#include "fileops/FolderListing.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

// A group:  group <number of entries> \n (or: unsettled <number> \n), the entries, end <number of entries> \n
// An entry: <size> \t <time> \t n or r \t <target> \t <source> \n, with %, tab and line breaks in names as %XX.
constexpr std::string_view groupWord = "group ";
constexpr std::string_view unsettledWord = "unsettled ";
constexpr std::string_view endWord = "end ";
constexpr std::string_view escaped = "%\t\r\n";
constexpr std::size_t fieldCount = 5;

std::string Escape(std::string_view name) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char c : name) {
        if (escaped.find(c) == std::string_view::npos) {
            result += c;
        } else {
            const auto code = static_cast<unsigned char>(c);
            result += {'%', digits[code >> 4U], digits[code & 0xFU]};
        }
    }
    return result;
}

template <class Number>
std::optional<Number> ParseNumber(std::string_view text, int base = 10) {
    Number number = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (code != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::string> Unescape(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            name += text[i];
            continue;
        }
        const auto code = ParseNumber<unsigned>(text.substr(i + 1, 2), 16);
        if (!code || i + 2 >= text.size()) {
            return std::nullopt;
        }
        name += static_cast<char>(static_cast<unsigned char>(*code));
        i += 2;
    }
    return name;
}

std::optional<JournalEntry> ParseEntry(std::string_view line) {
    const std::vector<std::string_view> fields = text::Split(line, "\t");
    if (fields.size() != fieldCount || (fields[2] != "n" && fields[2] != "r")) {
        return std::nullopt;
    }
    const auto size = ParseNumber<std::uint64_t>(fields[0]);
    const auto time = ParseNumber<FileTime>(fields[1]);
    const auto target = Unescape(fields[3]);
    const auto source = Unescape(fields[4]);
    if (!size || !time || !target || !source) {
        return std::nullopt;
    }
    return JournalEntry{*size, *time, fields[2] == "r", *target, *source};
}

/// The number behind `word` in a line; empty when the line is another one.
std::optional<std::size_t> CountIn(std::string_view line, std::string_view word) {
    return line.starts_with(word) ? ParseNumber<std::size_t>(line.substr(word.size())) : std::nullopt;
}

/// Reads one group from the front of `lines`; empty when it is damaged or incomplete.
std::optional<JournalGroup> TakeGroup(std::span<const std::string_view>& lines) {
    if (lines.empty()) {
        return std::nullopt;
    }
    JournalGroup group;
    group.unsettled = lines.front().starts_with(unsettledWord);
    const auto count = CountIn(lines.front(), group.unsettled ? unsettledWord : groupWord);
    if (!count || lines.size() < 2 || *count > lines.size() - 2) {
        return std::nullopt;
    }
    for (const std::string_view line : lines.subspan(1, *count)) {
        auto entry = ParseEntry(line);
        if (!entry) {
            return std::nullopt;
        }
        group.entries.push_back(std::move(*entry));
    }
    if (CountIn(lines[*count + 1], endWord) != count) {
        return std::nullopt;
    }
    lines = lines.subspan(*count + 2);
    return group;
}

/// True when what is left of a journal is the beginning of one group whose writing was cut short: no copy of it has
/// begun.
bool IsCutShort(std::span<const std::string_view> lines, std::string_view unfinished) {
    if (lines.empty()) {
        // The line itself is incomplete: it must be the beginning of a first line.
        return unfinished.starts_with(groupWord) || unfinished.starts_with(unsettledWord) ||
               groupWord.starts_with(unfinished) || unsettledWord.starts_with(unfinished);
    }
    const bool unsettled = lines.front().starts_with(unsettledWord);
    const auto count = CountIn(lines.front(), unsettled ? unsettledWord : groupWord);
    return count && lines.size() <= *count + 1 &&
           std::ranges::all_of(lines.subspan(1), [](std::string_view line) { return ParseEntry(line).has_value(); });
}

/// True when the way from the location down to the file's folder is made of plain folders: what is removed then lies in
/// the location itself.
bool LiesInside(FileSystem& files, const Location& location, const std::string& target) {
    std::string path = location.Below("");
    const std::vector<std::string_view> components = text::Split(target, "\\");
    for (std::size_t i = 0; i + 1 < components.size(); ++i) {
        path += components[i];
        DirectoryEntry entry;
        if (files.GetEntry(path, entry) != error::success || !entry.IsFolder() || entry.IsLink()) {
            return false;
        }
        path += '\\';
    }
    return true;
}

bool IsSafeTarget(const std::string& target) {
    return !target.empty() && target.front() != '\\' && target.back() != '\\' && IsPlainRelativePath(target);
}

}  // namespace

std::string FormatJournalGroup(std::span<const JournalEntry> entries, bool unsettled) {
    const std::string count = std::to_string(entries.size()) + "\n";
    std::string text = std::string(unsettled ? unsettledWord : groupWord) + count;
    for (const JournalEntry& entry : entries) {
        text += std::to_string(entry.size) + "\t" + std::to_string(entry.time) + (entry.replaces ? "\tr\t" : "\tn\t");
        text += Escape(entry.target) + "\t" + Escape(entry.source) + "\n";
    }
    return text + std::string(endWord) + count;
}

JournalText ParseJournal(std::string_view text) {
    const std::vector<std::string_view> lines = text::Split(text, "\n");
    // The piece behind the last line break is no whole line.
    std::span<const std::string_view> rest(lines.data(), lines.size() - 1);
    JournalText journal;
    while (auto group = TakeGroup(rest)) {
        journal.groups.push_back(std::move(*group));
    }
    journal.damaged = !(rest.empty() && lines.back().empty()) && !IsCutShort(rest, lines.back());
    return journal;
}

RunJournal::RunJournal(Machine& machine, const Location& location)
    : machine_(machine),
      files_(machine.files),
      location_(location),
      name_(workingfile::JournalOf(machine.system.ComputerName())),
      partName_(workingfile::PartOf(machine.system.ComputerName())),
      path_(location.Below(name_)),
      formerPath_(location.Below(workingfile::journal)) {}

bool RunJournal::IsInUse(const std::string& path) const {
    std::unique_ptr<File> file;
    const SystemError code = files_.Open(path, OpenMode::append, file);
    return code == error::sharingViolation || code == error::lockViolation;
}

RunJournal::State RunJournal::Load() {
    std::vector<std::string> journals;
    // A location that does not exist yet, or cannot be listed, holds no journal that could be dealt with.
    static_cast<void>(ListFolder(files_, location_.Path(), [&journals](DirectoryEntry& entry) {
        if (!entry.IsFolder() && workingfile::IsWorkingFile(entry.name) && entry.name.ends_with(".run")) {
            journals.push_back(entry.name);
        }
        return true;
    }));
    for (const std::string& journal : journals) {
        if (IsInUse(location_.Below(journal))) {
            return State::inUse;
        }
        const bool own = text::EqualIgnoringCase(journal, name_);
        formerLeft_ = formerLeft_ || text::EqualIgnoringCase(journal, workingfile::journal);
        foreignLeft_ = foreignLeft_ || (!own && !text::EqualIgnoringCase(journal, workingfile::journal));
    }
    ClearUnfinishedSave(files_, path_);
    for (const std::string& path : {formerPath_, path_}) {
        code_ = ReadOwn(path);
        if (code_ != error::success || damaged_) {
            broken_ = true;
            return State::unreadable;
        }
    }
    return State::ready;
}

SystemError RunJournal::ReadOwn(const std::string& path) {
    std::string text;
    const SystemError code = ReadWholeFile(files_, path, text);
    if (code != error::success) {
        return IsMissing(code) ? error::success : code;
    }
    const JournalText journal = ParseJournal(text);
    damaged_ = damaged_ || journal.damaged;
    TakeGroups(journal);
    return error::success;
}

void RunJournal::TakeGroups(const JournalText& text) {
    const auto isRun = [](const JournalGroup& group) { return !group.unsettled; };
    const auto last = std::ranges::find_if(text.groups.rbegin(), text.groups.rend(), isRun);
    for (const JournalGroup& group : text.groups) {
        // Each group is written when all copies before it are done: only those of the last one can be torn. Where the
        // journal is damaged, any of them may be.
        const bool mayBeTorn = group.unsettled || text.damaged || (last != text.groups.rend() && &group == &*last);
        for (const JournalEntry& entry : group.entries) {
            if (!IsSafeTarget(entry.target)) {
                continue;
            }
            if (!mayBeTorn) {
                TakeOriginal(entry);
            } else if (entry.replaces) {
                RemoveNeighbour(entry);
            } else {
                Suspect(entry);
            }
        }
    }
}

/// A copy of a group that was finished: its source is listed when the copy is there, and the source is one that is
/// saved in this place.
void RunJournal::TakeOriginal(const JournalEntry& entry) {
    const std::string target = location_.Below(entry.target);
    if (location_.SavedPathOf(entry.source) != target) {
        return;
    }
    DirectoryEntry saved;
    const SystemError looked = files_.GetEntry(target, saved);
    if (looked == error::success && !saved.IsFolder() && saved.size == entry.size) {
        originals_.push_back(entry.source);
    } else if (looked != error::success && !IsMissing(looked)) {
        // Not forgotten: copied anew, and listed then.
        JournalEntry unknown = entry;
        unknown.replaces = false;
        Suspect(unknown);
    }
}

void RunJournal::Suspect(const JournalEntry& entry) {
    suspects_.insert_or_assign(text::Fold(entry.target), entry);
}

/// The neighbour that a killed run has left where it was replacing a saved copy. One that cannot be removed stays in
/// the journal; it is never taken for a saved file.
void RunJournal::RemoveNeighbour(const JournalEntry& entry) {
    if (!LiesInside(files_, location_, entry.target)) {
        return;
    }
    const std::string folder = FolderOf(location_.Below(entry.target));
    for (const std::string& name : {partName_, std::string(workingfile::part)}) {
        DirectoryEntry found;
        const std::string part = Join(folder, name);
        const SystemError looked = files_.GetEntry(part, found);
        const bool stays = looked == error::success ? !found.IsFolder() && ForceDelete(files_, part) != error::success
                                                    : !IsMissing(looked);
        if (stays) {
            neighbours_.push_back(entry);
        }
    }
}

bool RunJournal::MayBeTorn(const std::string& target) const {
    return !suspects_.empty() && suspects_.contains(text::Fold(target));
}

std::vector<JournalEntry> RunJournal::Unsettled() const {
    std::vector<JournalEntry> suspects = neighbours_;
    for (const auto& [folded, entry] : suspects_) {
        suspects.push_back(entry);
    }
    return suspects;
}

RunJournal::Begun RunJournal::Begin() {
    if (begun_) {
        return Begun::yes;
    }
    begun_ = true;
    if (broken_) {
        return Begun::yes;
    }
    // What is not settled stands in front, so that it outlives whatever becomes of this run.
    const std::vector<JournalEntry> unsettled = Unsettled();
    const std::string text = unsettled.empty() ? "" : FormatJournalGroup(unsettled, true);
    SystemError code = SaveWholeFile(files_, path_, text);
    if (code == error::success) {
        code = files_.Open(path_, OpenMode::append, file_);
    }
    if (code == error::sharingViolation) {
        return Begun::inUse;
    }
    broken_ = code != error::success;
    if (!broken_ && formerLeft_ && ForceDelete(files_, formerPath_) == error::success) {
        formerLeft_ = false;
    }
    return Begun::yes;
}

bool RunJournal::Write(const std::string& text) {
    if (broken_ || !file_) {
        return false;
    }
    broken_ = file_->Write(text) != error::success || file_->Flush() != error::success;
    return !broken_;
}

bool RunJournal::Record(std::span<const JournalEntry> group) {
    return Write(FormatJournalGroup(group));
}

void RunJournal::Settle(const std::string& target) {
    if (!suspects_.empty()) {
        suspects_.erase(text::Fold(target));
    }
}

void RunJournal::MarkUnsettled(const JournalEntry& entry) {
    if (entry.replaces) {
        neighbours_.push_back(entry);
    } else {
        Suspect(entry);
    }
    // Should it not be written now, it is written at the end of the run; and a run that is killed before has the entry
    // in its last group.
    static_cast<void>(Write(FormatJournalGroup(std::span(&entry, 1), true)));
}

SystemError RunJournal::Finish(bool everything, std::vector<std::string>& incomplete) {
    std::erase_if(suspects_, [this](const auto& suspect) {
        DirectoryEntry entry;
        return IsMissing(files_.GetEntry(location_.Below(suspect.second.target), entry));
    });
    for (const auto& [folded, entry] : suspects_) {
        incomplete.push_back(location_.Below(entry.target));
    }
    const SystemError closed = file_ ? file_->Close() : error::success;
    file_.reset();
    if (kept_ || ((damaged_ || code_ != error::success) && !everything)) {
        return error::success;  // reported where it was read
    }
    const std::vector<JournalEntry> unsettled = Unsettled();
    const SystemError code =
        unsettled.empty() ? RemoveIfThere(path_) : SaveWholeFile(files_, path_, FormatJournalGroup(unsettled, true));
    if (code != error::success) {
        return code;
    }
    // What stood in it is in the other one now, or settled.
    const SystemError former = RemoveIfThere(formerPath_);
    return former != error::success || unsettled.empty() ? former : closed;
}

SystemError RunJournal::RemoveIfThere(const std::string& path) {
    DirectoryEntry entry;
    return IsMissing(files_.GetEntry(path, entry)) ? error::success : ForceDelete(files_, path);
}

}  // namespace marlok
