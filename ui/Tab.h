#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/RunReport.h"
#include "forms/Controls.h"
#include "paths/Location.h"
#include "platform/Desktop.h"
#include "ui/Texts.h"
#include "ui/run/Session.h"

namespace marlok::ui {

class frmSSTab;

/// What a single tab of the main window does. The window owns the controls and outlives its tabs.
class Tab {
 protected:
    Tab(frmSSTab& window, Session& session) : window_(window), session_(session) {}

    static constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;
    static constexpr std::uint32_t question = messagestyle::yesNo | messagestyle::question;

    /// Shows a message box and returns the pressed button.
    int Tell(const std::string& text, std::uint32_t style = plainInformation,
             const std::string& title = texts::infoTitle) const;

    /// Reports that the settings could not be changed, unless they could.
    void TellUnlessStored(bool stored) const;

    /// Reports that `path` could not be read, changed, ... (`what`), and why.
    void TellFailure(const std::string& path, const std::string& what, const std::string& reason) const;

    /// Reports what could not be done, in a box and in the error log. Nothing for an empty report.
    void TellAll(const RunReport& report) const;

    /// Reports which of `sources`, stored as sources of `location`, are saved where other files are saved too. Nothing
    /// when none is.
    void TellSharedPlaces(const Location& location, const std::vector<std::string>& sources) const;

    /// The backup locations into a list box, which is cleared first. False when there is none.
    bool FillLocations(forms::ListBox& list) const;

    frmSSTab& window_;
    Session& session_;
};

}  // namespace marlok::ui
