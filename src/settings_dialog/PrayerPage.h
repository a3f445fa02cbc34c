// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>
#include <utility>
#include <vector>

class CheckBox;
class DialogContext;
class QFrame;
class QWidget;
namespace Ui {
class PrayerPage;
}

/// The page of the alerts of a prayer. One page serves the six prayers; the dialog's currentTab selects the
/// prayer.
class PrayerPage final
{
public:
    /// @param frame the frame in which the page is created
    PrayerPage(DialogContext& context, QFrame& frame);
    ~PrayerPage();

    /// Shows the frame and fills the controls from the dialog's document in memory, which each caller has
    /// just loaded or saved. Stores nothing.
    void LoadPrayerPage();
    /// Corrects the reason why "Mobile Alert" is grey, after a sign-up.
    void RefreshMobileReason();

private:
    void Connect();
    /// Shows the prayer in the title of the page and in the accessible names of its controls.
    void ShowPrayerName(const QString& caption);
    void StoreOnClick(CheckBox* box, const QString& attribute);
    void Store(const QString& attribute, const QString& value);

    /// Enables "Mobile Alert", or disables it and gives the reason in its tooltip and its description.
    /// @param isAllowed false disables the box even if the device is confirmed
    void EnableMobileAlert(bool isAllowed);
    /// Sets the tooltip and the description of "Mobile Alert".
    void GiveMobileReason(const QString& reason);
    void OnAlertMainClick();
    void OnBrowseClick();
    [[nodiscard]] bool IsOnPrayer() const;
    /// The path of the prayer's element; empty on another page.
    [[nodiscard]] QString ElementPath() const;

    DialogContext& m_context;
    QFrame& m_frame;
    std::unique_ptr<Ui::PrayerPage> m_ui;
    /// The controls whose accessible name contains the prayer, with that name; "%1" stands for the prayer.
    std::vector<std::pair<QWidget*, QString>> m_accessibleNames;
};
