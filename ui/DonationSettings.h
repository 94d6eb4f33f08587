#pragma once

/// Where donations go. Set by whoever publishes the program, with the build settings MARLOK_DONATION_ADDRESS and
/// MARLOK_DONATION_ACCOUNT; the defaults lead nowhere.
namespace marlok::ui::donation {

#ifndef MARLOK_DONATION_ADDRESS
#define MARLOK_DONATION_ADDRESS "https://www.example.com/donate"
#endif
#ifndef MARLOK_DONATION_ACCOUNT
#define MARLOK_DONATION_ACCOUNT "donations@example.com"
#endif

/// The payment service's page.
inline constexpr const char* address = MARLOK_DONATION_ADDRESS;

/// The account there, an e-mail address.
inline constexpr const char* account = MARLOK_DONATION_ACCOUNT;

}  // namespace marlok::ui::donation
