// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/VersionCheck.h"

#include "forms/Form.h"
#include "forms/MainForm.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
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

// The version of this program in the numbers of the service.
constexpr double kOwnName = 1.0;
constexpr double kOwnSequence = 5.0;
constexpr int kSilentDays = 14;

const QString kVersion = kAppPath + QStringLiteral("//version");

} // namespace

VersionCheck::VersionCheck(const Form& window)
    : m_window(window)
    , m_platform(window.GetPlatform())
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
        // The user did not ask for the check, so a failure is not reported.
    }
}

void VersionCheck::Check()
{
    SimpleXML settings(m_platform);
    // Always "settings.xml", even if there is also a file "settings.XML". The result is not checked: without
    // a document the question is asked and the answer is not stored.
    settings.Load(kSettingsFile);
    SimpleXML document(m_platform);
    document.Load(ServiceRequests::Version(m_configuration));
    const std::unique_ptr<SimpleXML> reply = document.GetElement(QStringLiteral("root"));
    if (!m_window.IsLoaded() || reply == nullptr) {
        return;
    }
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
    // Both are converted before either is compared, since an invalid number ends the check. Intended: an
    // older version is offered too.
    const double nameNumber = NumberWithPoint(name, m_platform.region);
    const double sequenceNumber = NumberWithPoint(sequence, m_platform.region);
    return nameNumber != kOwnName || sequenceNumber != kOwnSequence;
}

bool VersionCheck::IsSilenced(const SimpleXML& settings) const
{
    // Intended: a day without a year, so that a No in the last two weeks of a year silences the question for
    // good.
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
    // The address as sent: Browser ignores all but http and https with a host, so that a reply can't start a
    // program. The program ends in any case.
    m_platform.browser.Open(reply.GetAttribute(QStringLiteral("download_url"), kRootPath));
    m_platform.process.End();
}
