// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/VersionCheck.h"

#include "forms/Form.h"
#include "forms/MainForm.h"
#include "platform/Browser.h"
#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "service/InternetClass.h"
#include "service/NumberWithPoint.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"
#include "store/SimpleXML.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

namespace {

// What this program is, in the numbers of the service.
constexpr double kOwnName = 1.0;
constexpr double kOwnSequence = 5.0;
constexpr int kSilentDays = 14;

const QString kVersion = kAppPath + QStringLiteral("//version");

} // namespace

VersionCheck::VersionCheck(const Form& window)
    : m_window(window)
    , m_platform(window.Outside())
    , m_configuration(window.Variables().Settings)
{
}

void VersionCheck::CheckNewVersion(bool check)
{
    try {
        if (check &&
            InternetClass(m_platform, ServiceAddresses::Probe(m_configuration)).VerifyConnectivity()) {
            Check();
        }
    } catch (const RuntimeError&) {
        // Nobody asked for the check, so nobody hears of its failure.
    }
}

void VersionCheck::Check()
{
    SimpleXML settings(m_platform);
    // "settings.XML" and "settings.xml" are one file, also where both lie in the folder. Whether it loads
    // shows when something is written to it.
    settings.Load(kSettingsFile);
    SimpleXML document(m_platform);
    document.Load(ServiceRequests::Version(m_configuration));
    const std::unique_ptr<SimpleXML> reply = document.GetElement(QStringLiteral("root"));
    if (!m_window.IsLoaded() || reply == nullptr) {
        return;
    }
    reply->SetCurrentPath(kRootPath);
    if (IsOther(*reply) && !IsSilenced(settings)) {
        Offer(settings, *reply);
    }
}

bool VersionCheck::IsOther(const SimpleXML& reply) const
{
    const QString name = reply.GetAttribute(QStringLiteral("version_name"), kRootPath);
    const QString sequence = reply.GetAttribute(QStringLiteral("version_sequence"), kRootPath);
    if (name.isEmpty()) {
        return false;
    }
    // Both are converted before either is compared: one that is no number ends the check. An older version is
    // another version too.
    const double nameNumber = NumberWithPoint(name, m_platform.region);
    const double sequenceNumber = NumberWithPoint(sequence, m_platform.region);
    return nameNumber != kOwnName || sequenceNumber != kOwnSequence;
}

bool VersionCheck::IsSilenced(const SimpleXML& settings) const
{
    // A day without a year, on purpose: one of the last two weeks' silences the question for good.
    const QString remind = settings.GetAttribute(QStringLiteral("remind"), kVersion);
    return !remind.isEmpty() &&
           m_platform.clock.Now().date().dayOfYear() < Int(NumberWithPoint(remind, m_platform.region));
}

void VersionCheck::Offer(SimpleXML& settings, const SimpleXML& reply)
{
    const bool wanted =
        m_platform.boxes.Ask(QStringLiteral("Would you like to Download\r\nthe new version of DuskBeacon?"));
    if (!m_window.IsLoaded()) {
        return;
    }
    if (!wanted) {
        const int day = m_platform.clock.Now().date().dayOfYear() + kSilentDays;
        settings.AddAttributeByName(QStringLiteral("remind"), QString::number(day), kVersion);
        settings.Save(kSettingsFile);
        return;
    }
    // As sent. The browser takes http and https with a host and passes over all else: a stranger's word must
    // not start a program. This one ends all the same.
    m_platform.browser.Open(reply.GetAttribute(QStringLiteral("download_url"), kRootPath));
    m_platform.process.End();
}
