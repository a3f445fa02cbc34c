// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class Form;
class WebAd;
struct MainVariables;
struct Platform;

/// The strip at the bottom of the main window: asks the service for an ad, writes it as a page and shows the
/// page.
class AdPanel final
{
public:
    /// Seconds between two refreshes before the first reply of the service and after one without a wait_time.
    static constexpr float kDefaultAdTimer = 600.0F;

    /// Puts the strip into @p window, which is the main window.
    explicit AdPanel(Form& window);

    /// Shows an ad of the service if @p fetch is true and the probe is reached, otherwise the default ad.
    /// Sets Connected and AdTimer of the main window from the reply; both stay as they are if nothing is
    /// fetched, as after a failed probe. A failure is reported in debug mode only, and the strip keeps its
    /// page. Reentrant: events are processed while the reply is loading.
    void RefreshAd(bool fetch);

private:
    void Refresh(bool fetch);
    /// The HTML of the ad in Base64; empty if the service has none.
    [[nodiscard]] QString FetchedAd();
    [[nodiscard]] float SecondsOf(const QString& minutes) const;
    /// The path of the file that was written.
    [[nodiscard]] QString WritePage(const QString& html) const;

    Form& m_window;
    const Platform& m_platform;
    MainVariables& m_variables;
    WebAd* m_webAd = nullptr;
};
