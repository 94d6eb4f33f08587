#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/OriginalPathList.h"
#include "fileops/FileSearch.h"
#include "forms/Area.h"
#include "paths/Location.h"
#include "ui/Tab.h"

namespace marlok::ui {

/// A number with "," between its thousands.
[[nodiscard]] std::string WithThousands(std::int64_t number);

/// The time from `start` to `end`, both in milliseconds, as seconds with two decimals: "1.50  Seconds".
[[nodiscard]] std::string ElapsedSeconds(std::uint64_t start, std::uint64_t end);

/// The tab "Review Saved": what was saved in a location, its list of original paths, copying saved files back, and
/// deleting both.
class ReviewTab : private Tab {
 public:
    ReviewTab(frmSSTab& window, Session& session) : Tab(window, session) {}

    /// The tab comes to the front.
    void Enter();

    /// Another location was picked in List5.
    void ChooseLocation();

    /// Something was clicked in List6.
    void ChooseLine();

    /// Command13: shows the saved files, or copies the selected ones back.
    void ShowOrReplace();

    /// Command16: shows the list of original paths.
    void ShowOriginals();

    /// Command17: deletes what is selected.
    void Delete();

    void LayOut(forms::Area page);

 private:
    /// What List6 shows.
    enum class ListMode { none, saved, original };

    [[nodiscard]] std::optional<Location> ReviewedLocation() const;
    [[nodiscard]] std::vector<std::string> SelectedLines() const;
    void ShowSavedFiles(const Location& location);
    FoundFolders ListSavedFiles(const Location& location);
    void AddNotices(const FoundFolders& folders, const Location& location);
    OriginalPathList::State ShowList(OriginalPathList& list);
    [[nodiscard]] std::uint64_t BeginListing();
    void EndListing(const std::string& heading);
    void ShowElapsed(std::uint64_t start);
    void ReplaceSelected();
    void DeleteSavedFiles(const Location& location);
    void DeleteListLines(const Location& location);
    void RestoreFolders();

    ListMode listMode_ = ListMode::none;
    bool originalsKnown_ = false;  ///< List6 shows what the list of original paths holds, or it is known to be missing
    SearchSpec searchSpec_;
};

}  // namespace marlok::ui
