#pragma once

#include <string>

#include "forms/Area.h"
#include "forms/FolderControls.h"
#include "ui/Tab.h"

namespace marlok::ui {

/// The tab "Backup Folder": the list of backup locations.
class BackupFolderTab : private Tab {
 public:
    BackupFolderTab(frmSSTab& window, Session& session) : Tab(window, session) {}

    /// The tab comes to the front.
    void Enter();

    /// Dir1 shows another folder.
    void FollowFolder();

    /// A folder was clicked in Dir1.
    void ChooseFolder();

    /// Command1: adds the chosen folder to the locations.
    void AddLocation();

    /// Command12: makes a folder in the open one.
    void CreateFolder();

    /// List3: takes the clicked location off the list.
    void RemoveLocation();

    void LayOut(forms::Area page);

 private:
    void StoreLocations();
    void MakeFolder(const std::string& folder, const std::string& name);
};

}  // namespace marlok::ui
