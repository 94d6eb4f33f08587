#include "fileops/FileSearch.h"

#include <memory>
#include <utility>
#include <vector>

#include "fileops/SystemFolders.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// True when `name` matches `pattern`: "*" stands for any characters, "?" for one; letter case does not matter.
bool Matches(std::u16string_view name, std::u16string_view pattern) {
    std::size_t at = 0;
    std::size_t star = std::u16string_view::npos;  // the last "*" met in the pattern
    std::size_t resume = 0;                        // where in the name it is tried next
    std::size_t p = 0;
    while (at < name.size()) {
        if (p < pattern.size() && (pattern[p] == u'?' || text::FoldUnit(pattern[p]) == text::FoldUnit(name[at])) &&
            pattern[p] != u'*') {
            ++p;
            ++at;
        } else if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            resume = at;
        } else if (star != std::u16string_view::npos) {
            p = star + 1;
            at = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == std::u16string_view::npos;
}

class Searcher {
 public:
    Searcher(FileSystem& files, SearchSpec& spec, const SearchSink& sink)
        : files_(files),
          spec_(spec),
          sink_(sink),
          everything_(spec.pattern == "*.*" || spec.pattern == "*"),
          pattern_(text::ToUtf16(spec.pattern)) {}

    /// An explicit stack: folders may be nested deeper than calls can be.
    FoundFolders Run() {
        Enter(AddBackslash(spec_.folder), none);
        while (!open_.empty() && (!sink_.goOn || sink_.goOn())) {
            Level& level = open_.back();
            if (level.code != error::success) {
                if (level.code != error::noMoreFiles) {
                    MarkHolding(level.number);
                    folders_.broken.push_back({WithoutBackslash(level.folder), level.code});
                }
                open_.pop_back();
                continue;
            }
            const DirectoryEntry entry = std::move(level.next);
            const std::string path = level.folder + entry.name;
            const bool isSystems = IsSystemFolderOfRoot(entry, level.folder);
            level.code = level.search->Next(level.next);
            if (!isSystems) {
                Take(entry, path, level.number);
            }
        }
        return std::move(folders_);
    }

 private:
    struct Level {
        std::string folder;  ///< with "\" at its end
        std::unique_ptr<FolderSearch> search;
        DirectoryEntry next;
        SystemError code = error::success;  ///< whether `next` holds an entry
        std::size_t number = 0;             ///< of the folder among those found; `none` for the one searched
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    void Enter(std::string folder, std::size_t number) {
        Level level;
        level.folder = std::move(folder);
        level.number = number;
        level.code = files_.FindFirst(level.folder + "*", level.search, level.next);
        if (level.code == error::fileNotFound) {
            level.code = error::noMoreFiles;  // a drive's root without any entry
        }
        open_.push_back(std::move(level));
    }

    /// Marks the folder and those it lies in. What is marked has been passed upwards already.
    void MarkHolding(std::size_t number) {
        if (!spec_.listFolders) {
            return;
        }
        for (std::size_t i = open_.size(); i > 0; --i) {
            const std::size_t at = open_[i - 1].number;
            if (at == none || (at != number && folders_.holdsFiles[at])) {
                return;
            }
            folders_.holdsFiles[at] = true;
        }
    }

    void Take(const DirectoryEntry& entry, const std::string& path, std::size_t in) {
        if (entry.name == "." || entry.name == "..") {
            return;
        }
        if (entry.IsFolder()) {
            if (entry.IsLink()) {
                MarkHolding(in);
                return;
            }
            ++spec_.folderCount;
            std::size_t number = none;
            if (spec_.listFolders) {
                number = folders_.paths.size();
                folders_.paths.push_back(path);
                folders_.holdsFiles.push_back(false);
            }
            Enter(path + "\\", number);
            return;
        }
        MarkHolding(in);
        if (workingfile::IsWorkingFile(entry.name) || (!everything_ && !Matches(text::ToUtf16(entry.name), pattern_))) {
            return;
        }
        ++spec_.fileCount;
        if (sink_.found) {
            sink_.found(path);
        }
    }

    FileSystem& files_;
    SearchSpec& spec_;
    const SearchSink& sink_;
    bool everything_;
    std::u16string pattern_;
    std::vector<Level> open_;
    FoundFolders folders_;
};

}  // namespace

FoundFolders SearchFiles(FileSystem& files, SearchSpec& spec, const SearchSink& sink) {
    return Searcher(files, spec, sink).Run();
}

}  // namespace marlok
