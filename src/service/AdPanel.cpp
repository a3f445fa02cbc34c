// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/AdPanel.h"

#include "forms/Form.h"
#include "forms/MainForm.h"
#include "platform/Desktop.h"
#include "platform/FileStore.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "service/InternetClass.h"
#include "service/NumberWithPoint.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"
#include "service/WebAd.h"
#include "store/SimpleXML.h"
#include "support/Base64Class.h"
#include "support/CodePage.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kSecondsPerMinute = 60.0;

// The codec throws for the empty text; an empty ad gives an empty page.
QString Decoded(const QString& ad)
{
    return ad.isEmpty() ? QString() : Base64Class().DecodeToString(ad);
}

} // namespace

AdPanel::AdPanel(Form& window)
    : m_window(window)
    , m_platform(window.GetPlatform())
    , m_variables(window.Variables())
    , m_webAd(new WebAd(m_platform.http, &window))
{
    m_webAd->setGeometry(128, 272, 468, 60);
    m_webAd->OnLink(
        [this](const QString& address) { m_window.Handle([&] { m_platform.browser.Open(address); }); });
}

void AdPanel::RefreshAd(bool fetch)
{
    try {
        Refresh(fetch);
    } catch (const RuntimeError& error) {
        if (m_variables.DebugMode) {
            m_platform.boxes.Show(
                QStringLiteral("%1 %2 on %3")
                    .arg(error.Description(), QString::number(error.Number()), m_variables.ActiveForm));
        }
    }
}

void AdPanel::Refresh(bool fetch)
{
    // Intended: the probe is sent even if no ad is to be fetched.
    const bool isReached =
        InternetClass(m_platform, ServiceAddresses::Probe(m_variables.Settings)).VerifyConnectivity();
    QString ad = fetch && isReached ? FetchedAd() : QString();
    if (!m_window.IsLoaded()) {
        return;
    }
    if (ad.isEmpty()) {
        ad = m_variables.Settings.DefaultAdText;
    }
    const QString html = QStringLiteral("<html>") + Decoded(ad) + QStringLiteral("</html>");
    m_webAd->Navigate(m_platform.files, WritePage(html));
}

QString AdPanel::FetchedAd()
{
    SimpleXML document(m_platform);
    m_variables.Connected = document.Load(ServiceRequests::GetAd(m_variables.Settings));
    if (!m_variables.Connected) {
        return {};
    }
    const std::unique_ptr<SimpleXML> reply = document.GetElement(QStringLiteral("root"));
    if (reply == nullptr) {
        throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("The reply has no root"));
    }
    QString base64Html = reply->GetAttribute(QStringLiteral("ad_url"), kRootPath);
    m_variables.AdTimer = SecondsOf(reply->GetAttribute(QStringLiteral("wait_time"), kRootPath));
    return base64Html;
}

float AdPanel::SecondsOf(const QString& minutes) const
{
    if (minutes.isEmpty()) {
        return kDefaultAdTimer;
    }
    const double seconds = Int(NumberWithPoint(minutes, m_platform.region)) * kSecondsPerMinute;
    if (!(std::abs(seconds) <= static_cast<double>(std::numeric_limits<float>::max()))) {
        throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow"));
    }
    return static_cast<float>(seconds);
}

QString AdPanel::WritePage(const QString& html) const
{
    // The page has the bytes from which the ad was encoded.
    const QByteArray bytes = ToCodePage(html);
    for (const QString& folder :
         {m_platform.process.ApplicationFolder(), m_platform.process.UserDataFolder()}) {
        QString path = folder + QStringLiteral("/temp.html");
        if (m_platform.files.Write(path, bytes)) {
            return path;
        }
    }
    throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("temp.html can't be written"));
}
