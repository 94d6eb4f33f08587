#include "engine/RunJournal.h"

#include <charconv>
#include <optional>

#include "fileops/Deleting.h"
#include "fileops/WholeFiles.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

// A group:  group <number of entries> \n, the entries, end <number of entries> \n
// An entry: <size> \t <time> \t n or r \t <target> \t <source> \n, with %, tab and line breaks in names as %XX.
constexpr std::string_view groupWord = "group ";
constexpr std::string_view endWord = "end ";
constexpr std::string_view escaped = "%\t\r\n";
constexpr std::size_t fieldCount = 5;

/// Disks of removable drives keep times to two seconds.
constexpr FileTime coarsestTime = 20'000'000;

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
std::optional<std::vector<JournalEntry>> TakeGroup(std::span<const std::string_view>& lines) {
    const auto count = lines.empty() ? std::nullopt : CountIn(lines.front(), groupWord);
    if (!count || lines.size() < 2 || *count > lines.size() - 2) {
        return std::nullopt;
    }
    std::vector<JournalEntry> group;
    for (const std::string_view line : lines.subspan(1, *count)) {
        auto entry = ParseEntry(line);
        if (!entry) {
            return std::nullopt;
        }
        group.push_back(std::move(*entry));
    }
    if (CountIn(lines[*count + 1], endWord) != count) {
        return std::nullopt;
    }
    lines = lines.subspan(*count + 2);
    return group;
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

bool IsFile(FileSystem& files, const std::string& path, DirectoryEntry& entry) {
    return files.GetEntry(path, entry) == error::success && !entry.IsFolder() && !entry.IsLink();
}

bool IsWhole(const DirectoryEntry& saved, const JournalEntry& entry) {
    return saved.size == entry.size && saved.lastWriteTime == entry.time;
}

/// True when a copy that does not look whole is to be kept: its source is gone, and only the disk's coarse times make
/// the difference.
bool IsLastCopy(FileSystem& files, const DirectoryEntry& saved, const JournalEntry& entry) {
    DirectoryEntry source;
    const FileTime apart =
        saved.lastWriteTime > entry.time ? saved.lastWriteTime - entry.time : entry.time - saved.lastWriteTime;
    return !IsFile(files, entry.source, source) && saved.size == entry.size && apart <= coarsestTime;
}

bool Exists(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success;
}

void RemoveFile(FileSystem& files, const std::string& path, Leftovers& leftovers) {
    if (Exists(files, path) && ForceDelete(files, path) != error::success) {
        leftovers.notRemoved.push_back(path);
    }
}

/// What one entry of the last group has left: its neighbour, or a torn copy.
void ClearEntry(FileSystem& files, const Location& location, const JournalEntry& entry, Leftovers& leftovers) {
    const std::string path = location.Below(entry.target);
    if (!LiesInside(files, location, entry.target)) {
        return;
    }
    DirectoryEntry saved;
    if (entry.replaces) {
        RemoveFile(files, Join(FolderOf(path), workingfile::part), leftovers);
    } else if (IsFile(files, path, saved) && !IsWhole(saved, entry) && !IsLastCopy(files, saved, entry)) {
        RemoveFile(files, path, leftovers);
    }
}

}  // namespace

std::string FormatJournalGroup(std::span<const JournalEntry> group) {
    const std::string count = std::to_string(group.size()) + "\n";
    std::string text = std::string(groupWord) + count;
    for (const JournalEntry& entry : group) {
        text += std::to_string(entry.size) + "\t" + std::to_string(entry.time) + (entry.replaces ? "\tr\t" : "\tn\t");
        text += Escape(entry.target) + "\t" + Escape(entry.source) + "\n";
    }
    return text + std::string(endWord) + count;
}

std::vector<std::vector<JournalEntry>> ParseJournal(std::string_view text) {
    const std::vector<std::string_view> lines = text::Split(text, "\n");
    // The piece behind the last line break is no whole line.
    std::span<const std::string_view> rest(lines.data(), lines.size() - 1);
    std::vector<std::vector<JournalEntry>> groups;
    while (auto group = TakeGroup(rest)) {
        groups.push_back(std::move(*group));
    }
    return groups;
}

RunJournal::RunJournal(FileSystem& files, const Location& location) : files_(files), path_(location.Journal()) {}

SystemError RunJournal::Record(std::span<const JournalEntry> group) {
    if (!file_) {
        // An older journal stays in front: what it tells could not be dealt with yet.
        const SystemError code = files_.Open(path_, OpenMode::append, file_);
        if (code != error::success) {
            file_.reset();
            return code;
        }
    }
    return file_->Write(FormatJournalGroup(group));
}

SystemError RunJournal::Finish() {
    if (!file_ && kept_.empty()) {
        return error::success;
    }
    const SystemError code = file_ ? file_->Close() : error::success;
    file_.reset();
    if (kept_.empty()) {
        return ForceDelete(files_, path_);
    }
    const SystemError saved = SaveWholeFile(files_, path_, FormatJournalGroup(kept_));
    return saved != error::success ? saved : code;
}

Leftovers ClearLeftovers(FileSystem& files, const Location& location) {
    Leftovers leftovers;
    RemoveFile(files, location.Below(workingfile::newText), leftovers);
    std::string text;
    if (ReadWholeFile(files, location.Journal(), text) != error::success) {
        return leftovers;
    }
    std::vector<std::vector<JournalEntry>> groups = ParseJournal(text);
    for (auto& group : groups) {
        std::erase_if(group, [](const JournalEntry& entry) { return !IsSafeTarget(entry.target); });
    }
    if (!groups.empty()) {
        for (const JournalEntry& entry : groups.back()) {
            ClearEntry(files, location, entry, leftovers);
        }
    }
    for (const auto& group : groups) {
        for (const JournalEntry& entry : group) {
            DirectoryEntry saved;
            if (IsFile(files, location.Below(entry.target), saved) && IsWhole(saved, entry)) {
                leftovers.originals.push_back(entry.source);
            }
        }
    }
    return leftovers;
}

SystemError RemoveJournal(FileSystem& files, const Location& location) {
    return Exists(files, location.Journal()) ? ForceDelete(files, location.Journal()) : error::success;
}

}  // namespace marlok
