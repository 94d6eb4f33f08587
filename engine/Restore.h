#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "paths/Location.h"
#include "platform/Machine.h"

namespace marlok {

/// Copies a saved file back to where it came from; missing folders on the way are made. What is there stays whole until
/// its replacement is complete: the copy is written beside it and takes its name at the end. Returns "" for success,
/// else why the original was not replaced, as a sentence for the user.
[[nodiscard]] std::string RestoreFile(Machine& machine, const std::string& saved, const std::string& original);

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

    /// Now windows can be painted.
    virtual void Breathe() {}
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
/// paths. Fails with why that list could not be read; nothing has been replaced then.
/// @throws RuntimeError 6 when more than 32,767 files are not listed, or not located.
[[nodiscard]] SystemError RestoreFiles(Machine& machine, const Location& location,
                                       const std::vector<std::string>& saved, RestoreSink& sink, RestoreResult& result);

}  // namespace marlok
