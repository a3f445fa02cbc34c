// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

class CheckBox;
class DialogContext;
class QFrame;
namespace Ui {
class PrayerPage;
}

/// Whether a prayer is announced and how. One page serves the six prayers; which one it writes to is told by
/// the dialog's currentTab.
class PrayerPage final
{
public:
    /// @param frame that the page is made in
    PrayerPage(DialogContext& context, QFrame& frame);
    ~PrayerPage();

    /// Shows the frame and fills the controls from the dialog's document as it stands: every way here goes
    /// through a handler that has just loaded or saved it. Writes nothing.
    void LoadPrayerPage();

private:
    void Connect();
    void StoreOnClick(CheckBox* box, const QString& attribute);
    void Store(const QString& attribute, const QString& value);

    void OnAlertMainClick();
    void OnBrowseClick();
    [[nodiscard]] bool IsOnPrayer() const;
    /// The path of the prayer's element; empty on another page.
    [[nodiscard]] QString ElementPath() const;

    DialogContext& m_context;
    QFrame& m_frame;
    std::unique_ptr<Ui::PrayerPage> m_ui;
};
