#include "ui/Donation.h"

#include "fileops/Errors.h"
#include "fileops/InternetConnection.h"
#include "ui/DonationSettings.h"
#include "ui/Texts.h"

namespace marlok::ui {

namespace {

constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;

/// A page that is complete, as browsers count.
constexpr int complete = 4;

/// Milliseconds that a browser gets to come to the front.
constexpr std::uint32_t pauseAtEnd = 500;

/// `text` as a value in the query of an address.
std::string UrlEncoded(const std::string& text) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
        if (plain) {
            encoded += character;
        } else {
            encoded += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
        }
    }
    return encoded;
}

/// True when the page is shown in a browser that can be driven.
bool OpenDriven(Machine& machine, const std::string& page) {
    Browser& browser = machine.browser;
    if (!browser.Start()) {
        return false;
    }
    bool shown = browser.Navigate(page);
    // Without a limit of time: the page may be slow. A browser that has been closed does not answer.
    for (int state = 0; shown && state != complete;) {
        shown = browser.ReadyState(state);
        machine.desktop.PaintPending();
    }
    shown = shown && browser.Show();
    browser.Release();
    return shown;
}

}  // namespace

std::string DonationPage() {
    return std::string(donation::address) + "?business=" + UrlEncoded(donation::account) +
           "&no_note=1&tax=0&currency_code=USD";
}

bool ConnectedForDonation(Machine& machine) {
    if (ConnectionDescription(machine.system) != "Not Connected") {
        return true;
    }
    machine.desktop.ShowMessage("You Must Be Connected To The Internet To Use This Button", plainInformation,
                                texts::infoTitle);
    return false;
}

void OpenDonationPage(Machine& machine) {
    const std::string page = DonationPage();
    if (OpenDriven(machine, page)) {
        machine.clock.Sleep(pauseAtEnd);
        return;
    }
    const SystemError code = machine.shell.Open({page, "", "", 1});
    if (code != error::success) {
        machine.desktop.ShowMessage(
            "The Page Could Not Be Opened:\r\n\r\n" + page + "\r\n\r\n" + Describe(machine.system, code),
            plainInformation, texts::infoTitle);
    }
}

}  // namespace marlok::ui
