#include "fileops/PatientFiles.h"

#include <algorithm>
#include <array>

namespace marlok {

namespace {

/// Milliseconds between one attempt and the next.
constexpr std::array<std::uint32_t, 6> pauses{10, 20, 50, 100, 200, 400};

/// Milliseconds that may be spent in vain; a tenth of the time that passes is given back.
constexpr std::uint64_t mostInVain = 20'000;
constexpr std::uint64_t givenBackOf = 10;

bool IsHeld(SystemError code) {
    return code == error::sharingViolation || code == error::lockViolation;
}

bool IsHeldOrDenied(SystemError code) {
    return IsHeld(code) || code == error::accessDenied;
}

}  // namespace

std::uint64_t PatientFiles::Budget() {
    const std::uint64_t now = clock_.TickCount();
    const std::uint64_t given = (now - accountedAt_) / givenBackOf;
    if (given > 0) {
        spent_ -= std::min(spent_, given);
        accountedAt_ = now;
    }
    return mostInVain - std::min(mostInVain, spent_);
}

SystemError PatientFiles::Try(const std::function<SystemError()>& call,
                              const std::function<bool(SystemError)>& momentary) {
    SystemError code = call();
    std::uint64_t waited = 0;
    for (const std::uint32_t pause : pauses) {
        if (code == error::success || !momentary(code) || Budget() < waited + pause) {
            break;
        }
        clock_.Sleep(pause);
        waited += pause;
        code = call();
    }
    if (code != error::success) {
        spent_ += waited;
    }
    return code;
}

bool PatientFiles::IsPlainFile(const std::string& path) {
    DirectoryEntry entry;
    return files_.GetEntry(path, entry) == error::success && !entry.IsFolder() &&
           (entry.attributes & attribute::readOnly) == 0;
}

SystemError PatientFiles::RemoveFolder(const std::string& path) {
    // One that is not empty is not waited for, although what is left in it may be deleted and merely open somewhere:
    // most folders that answer so hold something for good.
    return Try([&] { return files_.RemoveFolder(path); },
               [&](SystemError code) {
                   DirectoryEntry entry;
                   return IsHeld(code) ||
                          (code == error::accessDenied && files_.GetEntry(path, entry) == error::success &&
                           (entry.attributes & attribute::readOnly) == 0);
               });
}

SystemError PatientFiles::Delete(const std::string& path) {
    return Try([&] { return files_.Delete(path); },
               [&](SystemError code) { return IsHeldOrDenied(code) && IsPlainFile(path); });
}

SystemError PatientFiles::Move(const std::string& from, const std::string& to, std::uint32_t flags) {
    return Try([&] { return files_.Move(from, to, flags); },
               [&](SystemError code) {
                   return IsHeld(code) ||
                          (code == error::accessDenied && (flags & moveflag::replace) != 0 && IsPlainFile(to));
               });
}

SystemError PatientFiles::Replace(const std::string& replaced, const std::string& replacement,
                                  const std::string& backup) {
    return Try([&] { return files_.Replace(replaced, replacement, backup); }, IsHeld);
}

SystemError PatientFiles::Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                               const CopyProgressRoutine& progress) {
    return Try([&] { return files_.Copy(from, to, flags, progress); }, IsHeld);
}

}  // namespace marlok
