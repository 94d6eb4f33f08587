#pragma once

/// Where donations and letters go. Set by whoever publishes the program, with the build settings
/// MARLOK_DONATION_ADDRESS, MARLOK_DONATION_ACCOUNT and MARLOK_CONTACT; the defaults lead nowhere.
namespace marlok::ui::donation {

#ifndef MARLOK_DONATION_ADDRESS
#define MARLOK_DONATION_ADDRESS "https://www.example.com/donate"
#endif
#ifndef MARLOK_DONATION_ACCOUNT
#define MARLOK_DONATION_ACCOUNT "donations@example.com"
#endif

#ifndef MARLOK_CONTACT
#define MARLOK_CONTACT "support@example.com"
#endif

/// Whom to write to about the program.
inline constexpr const char* contact = MARLOK_CONTACT;

/// The payment service's page.
inline constexpr const char* address = MARLOK_DONATION_ADDRESS;

/// The account there, an e-mail address.
inline constexpr const char* account = MARLOK_DONATION_ACCOUNT;

}  // namespace marlok::ui::donation
