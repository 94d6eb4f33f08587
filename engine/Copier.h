#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engine/ChosenFile.h"
#include "engine/CopyLoop.h"
#include "engine/PlaceClaims.h"
#include "engine/RunJournal.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "platform/Volume.h"

namespace marlok {

/// Writes the files that a run has chosen into a backup location, and records what was written.
///
/// A saved copy is never torn: where one exists, the new copy is written beside it and takes its place when it is
/// whole; where none exists the copy goes straight to its place, under the run's journal. A copy that fails is reported
/// and not listed.
class Copier : public ChosenFiles {
 public:
    /// All outlive this object.
    Copier(const RunTools& tools, const Location& location, RunJournal& journal, PlaceClaims& claims);

    /// Sources that are found unchanged are to be listed too: the list of original paths has been lost.
    void ListUnchanged() { listsUnchanged_ = true; }

    /// The sources that were copied and are not listed yet, in their order; handed over once.
    [[nodiscard]] std::vector<std::string> TakeOriginals() { return std::exchange(originals_, {}); }

    [[nodiscard]] SystemError EnterFolder(const std::string& folder, SavedFolder& saved) override;
    void Take(const FolderWork& work, const std::vector<ChosenFile>& chosen) override;
    void IsSaved(const std::string& source) override;
    [[nodiscard]] bool MayBeTorn(const std::string& target) const override;

    /// False when another run has been found at work in the location: nothing more is written there.
    [[nodiscard]] bool GoesOn() const override { return !abandoned_; }

 private:
    [[nodiscard]] bool BeginWriting();
    void CopyAndAccount(const FolderWork& work, const ChosenFile& file, bool recorded);
    [[nodiscard]] bool RecordGroup(std::span<const ChosenFile> group);
    [[nodiscard]] SystemError CopyFile(const std::string& source, const std::string& target, std::uint32_t flags);
    [[nodiscard]] SystemError CopyBytes(const std::string& source, const std::string& target, std::uint32_t flags);
    [[nodiscard]] SystemError CopyOne(const FolderWork& work, const ChosenFile& file, bool recorded,
                                      std::string& taken);
    [[nodiscard]] SystemError CopyStraight(const ChosenFile& file);
    [[nodiscard]] SystemError CopyBeside(const ChosenFile& file);
    [[nodiscard]] JournalEntry AsJournalEntry(const ChosenFile& file) const;
    void Fail(const ChosenFile& file, SystemError code);

    Machine& machine_;
    FileSystem& files_;
    const RunPlan& plan_;
    RunSink& sink_;
    RunReport& report_;
    Location location_;
    RunJournal& journal_;
    PlaceClaims& claims_;
    Volume volume_;  ///< that the location lies on
    std::vector<std::string> originals_;
    bool listsUnchanged_ = false;
    bool abandoned_ = false;
};

}  // namespace marlok
