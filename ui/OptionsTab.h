#pragma once

#include <vector>

#include "forms/Area.h"
#include "paths/Location.h"
#include "ui/Tab.h"

namespace marlok::ui {

/// The tab "Options": which locations to run, how, and the two-step button that starts the run.
class OptionsTab : private Tab {
 public:
    OptionsTab(frmSSTab& window, Session& session) : Tab(window, session) {}

    /// The tab comes to the front.
    void Enter();

    /// Fills List1 and List2 anew from the settings.
    void SetTabList();

    /// Makes the lines of List1 the backup locations in the settings.
    void StoreLocations();

    /// The line that leads a newcomer from one step to the next.
    void ShowNextStep();

    /// A location was clicked in List1: shows its sources and makes the options usable.
    void ShowSources();

    /// Command8: chooses, then runs.
    void SelectOrRun();

    /// The interactive run begins.
    void StartRun();

    void LayOut(forms::Area page);

 private:
    [[nodiscard]] std::vector<std::string> SelectedLines() const;
    [[nodiscard]] std::vector<Location> SelectedLocations() const;
    void TakeOptions();
    void RunInBackground();
    void RunInteractive();
    void WriteCommandFile() const;
};

}  // namespace marlok::ui
