#pragma once

#include <string>
#include <vector>

#include "engine/CopyLoop.h"
#include "engine/Pruning.h"
#include "engine/RunJournal.h"
#include "engine/SourceMap.h"
#include "paths/Location.h"

namespace marlok {

/// The run of one backup location. All sources are looked through before anything is changed. Then, when all files are
/// to be copied, what no source has any more is deleted; then the sources are copied, one by one; then the originals of
/// what was copied are listed.
class LocationRun {
 public:
    /// `tools` and what it names outlive this object.
    LocationRun(const RunTools& tools, const Location& location);

    /// `sources` are those of the location, as configured. What goes wrong is reported.
    /// Returns false when the sink has ended the run before its end.
    /// @throws RuntimeError for what keeps the location from being run at all.
    [[nodiscard]] bool Run(const std::vector<std::string>& sources);

 private:
    [[nodiscard]] bool Open();
    void ListKilledRun();
    [[nodiscard]] bool PrepareFolder();
    void ScanSources(const std::vector<std::string>& sources);
    void ScanSource(const std::string& source);
    void ScanFolder(const std::string& path);
    [[nodiscard]] TimeKeeping TimesOf(const std::string& source) const;
    void Prune(const SourceMap& map);
    [[nodiscard]] std::string WhyNotPruned();
    [[nodiscard]] bool ChooseDoomed(Doomed& doomed);
    void KeepUnlisted(Doomed& doomed);
    void CopySources(const SourceMap& map);
    void ReportUnlisted();
    void Finish(bool listed);
    [[nodiscard]] bool ListOriginals(const std::vector<std::string>& originals);

    RunTools tools_;
    FileSystem& files_;
    RunReport& report_;
    Location location_;
    RunJournal journal_;
    std::vector<ScannedSource> sources_;
    std::vector<FolderScan::Unlisted> unlisted_;
    bool complete_ = true;     ///< all sources are there and were looked through to their ends
    bool listLost_ = false;    ///< there is no list of original paths
    bool existed_ = false;     ///< the location was there before the run
    bool everything_ = false;  ///< all that is saved was copied anew
    bool stopped_ = false;     ///< the sink has ended the run
};

}  // namespace marlok
