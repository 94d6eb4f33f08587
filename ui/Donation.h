#pragma once

#include <string>

#include "platform/Machine.h"

/// The donation page in the web browser.
namespace marlok::ui {

/// Full address of the page.
[[nodiscard]] std::string DonationPage();

/// True when the machine is connected to the Internet; else the user is told that it has to be.
[[nodiscard]] bool ConnectedForDonation(Machine& machine);

/// Opens the page in the browser that can be driven and waits until it is there; without one, in the default browser.
/// Takes as long as the page does. What keeps it from opening is told to the user.
void OpenDonationPage(Machine& machine);

}  // namespace marlok::ui
