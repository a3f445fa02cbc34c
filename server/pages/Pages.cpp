// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pages/Pages.h"

#include "store/Store.h"
#include "support/Xml.h"

#include <string>

namespace beacond {

namespace {

// Form controls follow the colour scheme only if the page declares both.
constexpr std::string_view kStyle =
    R"(:root{color-scheme:light dark}
body{font:16px/1.5 sans-serif;color:#222;background:#fff;max-width:66ch;margin:2em auto;padding:0 1em}
h1,h2{color:#123a5c;line-height:1.2}a{color:#0b5394}
input,button{font:inherit;padding:.4em .6em;margin:.25em 0;max-width:100%;box-sizing:border-box}
footer{margin-top:3em;border-top:1px solid #ccc;color:#555;font-size:.875em}
@media(prefers-color-scheme:dark){body{color:#ddd;background:#14181c}h1,h2{color:#9cc4e8}
a{color:#8ab8e6}footer{border-color:#444;color:#aaa}})";

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>)";

constexpr std::string_view kSignupTitle = "Dusk Beacon: sign-up";

constexpr std::string_view kFooter = R"(<footer><p><a href="/">Home</a> &middot;
<a href="/dbeacon/help.html">Help</a> &middot;
<a href="/downloads/">Downloads</a></p>
<p>Places: <a href="https://www.geonames.org/">GeoNames</a>, CC BY 4.0, changed.</p></footer>
</body>
</html>
)";

std::string Escaped(std::string_view text)
{
    std::string escaped;
    AppendEscaped(escaped, text);
    return escaped;
}

Response Page(unsigned status, std::string_view title, std::string_view content, bool mayBeCached)
{
    std::string html(kHead);
    html += title;
    html += "</title>\n<style>";
    html += kStyle;
    html += "</style>\n</head>\n<body>\n";
    html += content;
    html += kFooter;
    Response response{status, "text/html; charset=utf-8", std::move(html), {}};
    response.headers = {
        {"Cache-Control", mayBeCached ? "max-age=300" : "no-store"},
        {"Content-Security-Policy",
         "default-src 'none'; style-src 'unsafe-inline'; form-action 'self'; base-uri 'none'; "
         "frame-ancestors 'none'"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Content-Type-Options", "nosniff"},
    };
    return response;
}

constexpr std::string_view kIntroduction = R"(<h1>Dusk Beacon</h1>
<p>Dusk Beacon keeps the daily Islamic prayer times for one place on your desktop and announces each one when it
comes.</p>
<h2>Messages at prayer time</h2>
)";

constexpr std::string_view kSignup =
    "<p>Sign up for messages at the prayers that you choose in the program. An ID and a personal code come "
    "to you, which you enter in the program under <em>Alerts</em>, <em>Mobile Alert</em>.</p>\n";

constexpr std::string_view kAfterConsent =
    " Unless you enter the code, it is deleted after half an hour.</p></form>\n";

std::string SignupForm(const SignupOffer& offer)
{
    // The browser checks a mail address if nothing else can be entered.
    const std::string_view label = !offer.ntfy  ? "Mail address"
                                   : offer.mail ? "Mail address or ntfy topic (https://...)"
                                                : "Ntfy topic (https://...)";
    const std::string_view type = offer.ntfy ? "type=\"text\"" : "type=\"email\" autocomplete=\"email\"";
    std::string form = "<form method=\"post\" action=\"/signup\"><p><label for=\"address\">";
    form += label;
    form += "</label><br>\n<input id=\"address\" name=\"address\" ";
    form += type;
    form += " maxlength=\"330\" required size=\"30\">\n";
    if (offer.needsInvite) {
        form += "<br><label for=\"invite\">Invite word</label><br>\n<input id=\"invite\" name=\"invite\" "
                "type=\"text\" maxlength=\"100\" required size=\"30\">\n";
    }
    form += "<button>Send me an ID and a code</button></p>\n<p>";
    form += kConsentWords;
    form += kAfterConsent;
    return form;
}

// The words for the address that the program shows too.
std::string SignupByText(const SignupOffer& offer)
{
    std::string text =
        "<p>Send a mail or a text message to " + Escaped(offer.signupAddress) + " with the word \"test\"";
    text += offer.needsInvite ? " and your invite word. " : ". ";
    text += "An ID and a personal code come back. ";
    text += kTestConsentWords;
    return text + " The word STOP ends the messages at any time.</p>\n";
}

constexpr std::string_view kHelp = R"(<h1>Help</h1>
<h2>The main window</h2>
<p>It shows the place and how its times are calculated, today's date in both calendars, the six times from Fajr to
Isha, the time left to the next one, the direction of the Qibla, and the sun and the moon in the sky. Minimised, the
program stays in the notification area: a right click on its icon opens it again, or ends it.</p>
<h2>Choosing a place</h2>
<p><em>Locations</em> lists the places that the program knows. <em>Get New Location</em> finds more: by zip code, or
by country and the first letters of the city. <em>Add</em> takes one into the list, <em>Set Current</em> makes it the
place whose times are shown.</p>
<h2>Calculation</h2>
<p><em>Alerts</em>, page <em>General</em>: the method, or twilight angles of your own; the Asr method; the clock;
daylight saving, which is yours to tick in summer; and a warning some minutes ahead.</p>
<h2>Alerts</h2>
<p>A click on a prayer's name opens its page: whether it is announced at all, with a window, with a sound of your
choice, with a message to your mobile device. <em>Stop</em> in the main window ends the sound.</p>
<h2>Messages</h2>
<p>An ID and a personal code come to you after a sign-up on the <a href="/">home page</a>; enter both on the page
<em>Mobile Alert</em> and click <em>Register</em>. The computer has to be on and the program running at prayer time:
it asks for each message.</p>
)";

constexpr std::string_view kTroubles = R"(<h2>Something is wrong</h2>
<p>Times an hour off: look at <em>Use Day Light Savings</em>. A window that says "Error - 5" or "Error - 6": the file
settings.xml is damaged or holds a value that can't be used. It is in ~/.local/share/dusk-beacon, on Windows in
%LOCALAPPDATA%\dusk-beacon, and in a portable copy beside the program.</p>
<h2>Windows</h2>
<p>The program runs on Linux and on Windows 10 and 11; on Windows it is tested under Wine only. Its installer is not signed:
compare its SHA-256 with the one that is published with it. The uninstaller keeps your places and options unless you tick
them.</p>
)";

constexpr std::string_view kSounds = R"(<h1>Sounds</h1>
<p>This service offers no sounds yet. The program plays any WAV or MP3 file that lies on your computer, on Linux also
OGG: choose it on the page of a prayer, under <em>Alerts</em>.</p>
)";

} // namespace

Response HomePage(const SignupOffer& offer)
{
    std::string content(kIntroduction);
    const bool hasForm = offer.mail || offer.ntfy;
    if (!hasForm && offer.signupAddress.empty()) {
        content += "<p>This service sends no messages.</p>\n";
        return Page(200, "Dusk Beacon", content, true);
    }
    content += kSignup;
    if (hasForm) {
        content += SignupForm(offer);
    }
    if (!offer.signupAddress.empty()) {
        content += SignupByText(offer);
    }
    return Page(200, "Dusk Beacon", content, true);
}

Response HelpPage(const SignupOffer& offer)
{
    std::string content(kHelp);
    if (!offer.signupAddress.empty()) {
        content += SignupByText(offer);
    }
    content += kTroubles;
    return Page(200, "Dusk Beacon: help", content, true);
}

Response SoundPage()
{
    return Page(200, "Dusk Beacon: sounds", kSounds, true);
}

Response DownloadsPage(const std::vector<Release>& releases)
{
    std::string content = "<h1>Downloads</h1>\n";
    content += releases.empty() ? "<p>There is no release yet.</p>\n" : "<ul>\n";
    for (auto release = releases.rbegin(); release != releases.rend(); ++release) {
        content += "<li><a href=\"" + Escaped(release->url) + "\">Dusk Beacon " + Escaped(release->name) +
                   "." + Escaped(release->sequence) + "</a></li>\n";
    }
    content += releases.empty() ? "" : "</ul>\n";
    return Page(200, "Dusk Beacon: downloads", content, true);
}

Response SignupPage(Signups::Outcome outcome)
{
    switch (outcome) {
    case Signups::Outcome::Sent:
        return Page(200, kSignupTitle,
                    "<h1>The message is on its way</h1>\n<p>It brings your mobile device ID and your "
                    "personal code, which is good for 30 minutes.</p>\n",
                    false);
    case Signups::Outcome::Uncertain:
        return Page(
            200, kSignupTitle,
            "<h1>The message may be on its way</h1>\n<p>The provider has not confirmed it. If it does not "
            "come within some minutes, please sign up again, three times a day at most.</p>\n",
            false);
    case Signups::Outcome::NotOffered:
        return Page(404, kSignupTitle,
                    "<h1>No messages</h1>\n<p>This service sends no messages to such an address.</p>\n",
                    false);
    case Signups::Outcome::NoAddress:
    case Signups::Outcome::Refused:
        return Page(
            400, kSignupTitle,
            "<h1>This address can't be used</h1>\n<p>Please <a href=\"/\">go back</a> and check it.</p>\n",
            false);
    case Signups::Outcome::PhoneNumber:
        return Page(400, kSignupTitle,
                    "<h1>A phone signs up by itself</h1>\n<p>Please send a text message with the word "
                    "\"test\" from that phone.</p>\n",
                    false);
    case Signups::Outcome::NotInvited:
        return Page(403, kSignupTitle,
                    "<h1>The invite word is not right</h1>\n<p>Please <a href=\"/\">go back</a> and check "
                    "it. Your mosque gives it to you.</p>\n",
                    false);
    case Signups::Outcome::TooMany:
        return Page(
            429, kSignupTitle,
            "<h1>Too many sign-ups</h1>\n<p>No message was sent. A personal code that has come already is "
            "good for its 30 minutes. Without one, please try again in an hour or tomorrow.</p>\n",
            false);
    case Signups::Outcome::Full:
        return Page(503, kSignupTitle,
                    "<h1>The service is full</h1>\n<p>It could not send to more devices in time. If this "
                    "address is registered already, its message is on its way. Otherwise please ask the "
                    "operator.</p>\n",
                    false);
    case Signups::Outcome::Unaffordable:
        return Page(503, kSignupTitle,
                    "<h1>No more messages today</h1>\n<p>The messages of today have cost as much as they "
                    "may cost in a day. Please try again tomorrow.</p>\n",
                    false);
    case Signups::Outcome::Stopped:
    case Signups::Outcome::Nothing:
    case Signups::Outcome::Failed:
    case Signups::Outcome::Busy:
        break;
    }
    return Page(503, kSignupTitle,
                "<h1>That did not work</h1>\n<p>The service can't send anything just now. Please try again "
                "later.</p>\n",
                false);
}

Response NotFoundPage()
{
    return Page(404, "Dusk Beacon", "<h1>There is no such page</h1>\n", false);
}

} // namespace beacond
