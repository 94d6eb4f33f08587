#pragma once

#include <string>

namespace marlok {

/// A web browser that the program drives.
class Browser {
 public:
    virtual ~Browser() = default;

    /// Starts one, hidden. False when the system has none that can be driven.
    [[nodiscard]] virtual bool Start() = 0;

    /// Begins to load a page. False when the browser does not answer any more; so do the others.
    [[nodiscard]] virtual bool Navigate(const std::string& address) = 0;

    /// How far the page is: 0 to 4; 4 is complete.
    [[nodiscard]] virtual bool ReadyState(int& state) = 0;

    [[nodiscard]] virtual bool Show() = 0;

    /// Lets go of it; a browser that is shown stays open.
    virtual void Release() = 0;
};

}  // namespace marlok
