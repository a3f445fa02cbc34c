// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstStart.h"
#include "forms/Boxes.h"
#include "fuzz/FuzzWorld.h"
#include "fuzz/InputParts.h"
#include "service/AdPanel.h"
#include "service/VersionCheck.h"
#include "service/WebAd.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

#include <QPushButton>

#include <cmath>

namespace {

const QString kApp = QStringLiteral("//root//app");
const QString kVersion = QStringLiteral("//root//app//version");
const QString kAlerts = QStringLiteral("//root//alerts");
constexpr std::int16_t kMobileTab = 2;

/// An attribute of the reply's root as an independent reading finds it.
struct Reply
{
    Reply(const FuzzWorld& world, const QString& script)
        : document(world.platform.interfaces)
        , isLoaded(document.Load(QStringLiteral("http://service.example/") + script))
    {
    }
    [[nodiscard]] QString Read(const char* name) const
    {
        const std::unique_ptr<SimpleXML> root = document.GetElement(QStringLiteral("root"));
        return root ? root->GetAttribute(QLatin1String(name), QStringLiteral("//root")) : QString();
    }

    SimpleXML document;
    bool isLoaded = false;
};

void CheckVersion(FuzzWorld& world, bool wants)
{
    const Reply reply(world, QStringLiteral("version.pl"));
    const QByteArray before = world.Settings();
    world.platform.boxes.answers = {wants};
    VersionCheck(*world.main).CheckNewVersion(true);
    const bool isAsked = !world.platform.boxes.boxes.empty();
    Demand(world.platform.boxes.boxes.size() <= 1, "the question comes once");
    Demand(!isAsked || !reply.Read("version_name").isEmpty(), "nothing is offered without a version");
    Demand(world.platform.process.ended == (isAsked && wants ? 1 : 0), "only Yes ends the program");
    Demand(world.platform.browser.opened ==
               (isAsked && wants ? QStringList(reply.Read("download_url")) : QStringList()),
           "only Yes opens the download, at the address that was sent");
    if (isAsked && !wants) {
        // Day 79 of the fake clock's year, and fourteen.
        Demand(world.Setting(QStringLiteral("remind"), kVersion) == u"93", "No is silence for 14 days");
    } else {
        Demand(world.Settings() == before, "only No writes something");
    }
    world.platform.process.ended = 0;
}

void CheckAd(FuzzWorld& world)
{
    const Reply reply(world, QStringLiteral("getAd.pl"));
    const QByteArray before = world.Settings();
    AdPanel panel(*world.main);
    panel.RefreshAd(true);
    Demand(world.main->Variables().Connected == reply.isLoaded, "Connected tells whether the reply came");
    Demand(std::isfinite(world.main->Variables().AdTimer), "the time to the next ad is a number");
    Demand(!reply.isLoaded || !reply.Read("wait_time").isEmpty() || world.main->Variables().AdTimer == 600.0F,
           "without a time it is ten minutes");
    const QByteArray page = world.files.Read(QStringLiteral("/temp.html"), 1 << 20).value_or(QByteArray());
    Demand(page.isEmpty() || (page.startsWith("<html>") && page.endsWith("</html>")), "a page is whole");
    const QString ad = reply.Read("ad_url");
    Demand(!ad.isEmpty() || page.isEmpty() || page == "<html><b>Dusk Beacon</b></html>",
           "without an ad there is the usual one");
    Demand(world.Settings() == before, "an ad writes nothing into the settings");
    Demand(world.platform.boxes.boxes.empty(), "an ad says nothing");
}

void CheckSignUp(FuzzWorld& world)
{
    const Reply reply(world, QStringLiteral("confirmSignup.pl"));
    MobileSignup signup(world.forms);
    world.forms.Register(FrmAlerts::kName,
                         [&world, &signup] { return std::make_unique<FrmAlerts>(world.forms, signup); });
    auto& dialog = world.forms.Touch<FrmAlerts>();
    dialog.Show();
    dialog.SelectTab(kMobileTab);
    FuzzWorld::Find<TextBox>(dialog, "TxtMDID").SetText(QStringLiteral("12345"));
    FuzzWorld::Find<TextBox>(dialog, "TxtPC").SetText(QStringLiteral("secret"));
    auto& button = FuzzWorld::Find<QPushButton>(dialog, "CmdMobilReg");
    button.click();
    Demand(dialog.IsLoaded() && world.platform.boxes.boxes.size() == 1, "a sign-up ends in one message");
    const QString confirmed = world.Setting(QStringLiteral("mobileConfirm"), kAlerts);
    Demand(confirmed == (reply.isLoaded ? reply.Read("result") : QStringLiteral("0")),
           "the result is stored as it was sent");
    Demand(button.isEnabled() == (confirmed != u"1"), "who is confirmed need not register");
    const QString message = reply.Read("message");
    Demand(message.isEmpty() || world.platform.boxes.boxes.front().text == message,
           "the message is shown as it was sent");
    world.forms.Unload(FrmAlerts::kName);
}

void CheckIdentifier(FuzzWorld& world)
{
    const Reply reply(world, QStringLiteral("requestProdID.pl"));
    SimpleXML settings(world.platform.interfaces);
    Demand(settings.Load(kSettingsFile), "the settings load");
    const QByteArray before = world.Settings();
    RequestIdentifier(world.platform.interfaces, settings, world.main->Variables().Settings);
    if (!reply.isLoaded) {
        Demand(world.Settings() == before, "without a reply nothing changes");
        return;
    }
    Demand(world.Setting(QStringLiteral("FirstRun"), kApp) == u"false", "the first start is over");
    Demand(world.Setting(QStringLiteral("pid"), kApp) ==
               reply.document.GetAttribute(QStringLiteral("prod_string"), QStringLiteral("//root")),
           "the identifier is stored as it was sent");
}

} // namespace

// The kind of the reply and the user's answers, as the letters below; then the reply.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    FuzzWorld world;
    Choices choices(parts.Next());
    if (const QByteArray reply = QByteArray::fromStdString(parts.Next()); !reply.isEmpty()) {
        world.platform.http.replies[QString()] = reply;
    }
    switch (choices.Next()) {
    case 'a':
        CheckAd(world);
        break;
    case 's':
        CheckSignUp(world);
        break;
    case 'i':
        CheckIdentifier(world);
        break;
    case 'y':
        CheckVersion(world, true);
        break;
    default:
        CheckVersion(world, false);
        break;
    }
    Demand(world.IsSettingsWhole(), "the service leaves a whole file");
    world.DemandAlive();
    return 0;
}
