#pragma once

#include <string>

#include "forms/Area.h"
#include "ui/Tab.h"

namespace marlok::ui {

/// The tab "Files To Backup": the sources of each backup location.
class FilesTab : private Tab {
 public:
    FilesTab(frmSSTab& window, Session& session) : Tab(window, session) {}

    /// The tab comes to the front.
    void Enter();

    /// Another drive was chosen: what can be added are folders again.
    void OfferFolders();

    /// Dir2 shows another folder.
    void FollowFolder();

    /// A folder was clicked in Dir2, or files in File2.
    void ChooseFolder();
    void ChooseFiles();

    /// A location was clicked in List9: shows its sources.
    void ShowSources();

    /// Command4: adds the chosen folder or files to the sources.
    void AddSources();

    /// Command18: takes the selected sources off the list, after asking whether what is saved of them goes too.
    void RemoveSources();

    /// Takes the sources selected in List4 off the location picked in List9, deletes their saved copies, and takes
    /// their lines out of its list of original paths. Where the location cannot be reached nothing changes.
    void DeleteSourceCopies();

    void LayOut(forms::Area page);

 private:
    [[nodiscard]] bool AddFiles();
    [[nodiscard]] bool AddFolder();
    [[nodiscard]] bool AddSource(const std::string& path);
    void StoreAdded(const Location& location);
    void MakeFolderFor(const Location& location, const std::string& file);
    void RemoveEntriesOnly();
    [[nodiscard]] bool DeleteCopies(const Location& location);
    void TellEach(const RunReport& report, const std::string& what) const;
    void StoreAndShow(const Location& location, const std::vector<std::string>& sources);
};

}  // namespace marlok::ui
