#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace marlok::test {

/// What is asked for is not there, or not yet. The text says what is missing.
class NotYet : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
    explicit NotYet(const std::wstring& what);
};

/// A moment by which something has to have happened.
class Deadline {
 public:
    /// So many seconds from now.
    /// @throws std::logic_error when it is no number.
    explicit Deadline(const std::wstring& seconds);
    [[nodiscard]] bool IsOver() const { return GetTickCount64() >= end_; }

 private:
    ULONGLONG end_;
};

/// Calls `attempt` until it does not say NotYet any more; gives back what it gave.
/// @throws NotYet the last one, when the time is over.
template <typename Attempt>
auto Within(const Deadline& deadline, const Attempt& attempt) {
    for (;;) {
        try {
            return attempt();
        } catch (const NotYet&) {
            if (deadline.IsOver()) {
                throw;
            }
        }
        Sleep(20);
    }
}

}  // namespace marlok::test
