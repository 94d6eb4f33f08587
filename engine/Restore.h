#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/RestoreJournal.h"
#include "engine/RunReport.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// What a replacement run tells while it goes on. The defaults do nothing.
class RestoreSink {
 public:
    virtual ~RestoreSink() = default;

    /// A saved file that the list of original paths does not name.
    virtual void NotListed(const std::string& /*saved*/) {}

    /// A saved file that is not in the location any more.
    virtual void NotLocated(const std::string& /*saved*/) {}

    /// An original is about to be replaced.
    virtual void ReplaceBegins(const std::string& /*original*/) {}

    /// Something has been done that takes a while when it is done often, or a part of something long: now windows can
    /// be painted. Called more often than that needs.
    virtual void Breathe() {}

    /// False to end the run: before the next file, or in the middle of one, whose original then stays as it is.
    [[nodiscard]] virtual bool GoOn() { return true; }
};

/// Copies saved files back to where they came from. What is there stays whole until its replacement is complete: the
/// copy is written beside it and takes its place at the end. Who may read and change the original stays as it is, where
/// the file system can exchange two files and keep that.
///
/// What a process that dies leaves beside an original is put in order when the next object of this class is made.
class Restorer {
 public:
    /// Both outlive this object.
    Restorer(Machine& machine, RestoreSink& sink);
    Restorer(const Restorer&) = delete;
    Restorer& operator=(const Restorer&) = delete;
    ~Restorer() = default;

    /// Copies one file back; missing folders on the way are made. Returns "" for success, else why the original was not
    /// replaced, as a sentence for the user.
    [[nodiscard]] std::string Restore(const std::string& saved, const std::string& original);

    /// All files are copied back. Without this call the next object, or the next start, does the same.
    void Finish() { journal_.Finish(); }

 private:
    [[nodiscard]] SystemError CopyBeside(const std::string& saved, const std::string& part);
    [[nodiscard]] SystemError PutInPlace(const std::string& part, const Replacement& replacement, bool entered);
    [[nodiscard]] SystemError Exchange(const std::string& part, const Replacement& replacement);
    void RemoveOld(const Replacement& replacement);
    [[nodiscard]] std::string Failure(SystemError code, const Replacement& replacement) const;

    Machine& machine_;
    RestoreSink& sink_;
    RestoreJournal journal_;
};

/// What became of a replacement run.
struct RestoreResult {
    RunReport report;  ///< `written` holds every original that was to be replaced, failed ones too
    std::int16_t notListed = 0;
    std::int16_t notLocated = 0;
    bool lastNotLocated = false;  ///< the last of the files was not there any more

    /// True when the only file could not be copied back: there is nothing to log then.
    bool nothingToLog = false;

    /// How many files the closing message excepts. A run that ends with a missing file excepts the missing ones, every
    /// other those that are not listed: deliberate.
    [[nodiscard]] int Exceptions() const { return lastNotLocated ? notLocated : notListed; }
};

/// Copies saved files of a location back over their originals, which are looked up in the location's list of original
/// paths. Fails with why that list could not be read, or that there is none for several files; nothing has been
/// replaced then. A run that `sink` ends reports how many files were not put back.
/// @throws RuntimeError 6 when more than 32,767 files are not listed, or not located.
[[nodiscard]] SystemError RestoreFiles(Machine& machine, const Location& location,
                                       const std::vector<std::string>& saved, RestoreSink& sink, RestoreResult& result);

}  // namespace marlok
