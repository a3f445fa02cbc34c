// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

#include <cstdint>
#include <memory>

class QTime;
class Timer;
namespace Ui {
class FrmPopup;
}

/// The small window that shows an alert. While it is open, the main window is disabled and further alerts are
/// dropped. It closes after its time or by "OK", even beside a message box.
class FrmPopup final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmPopup"};

    explicit FrmPopup(Forms& forms);
    ~FrmPopup() override;

    /// Shows the window above the others, in the middle of the screen where the main window is or was last,
    /// but clear of a message box. The keyboard focus stays where it is.
    /// @param Message two lines
    /// @param SecLifeSpan seconds until the window closes by itself; with 1 or less it closes at the first
    /// tick
    void ShowPopup(const QString& Message, std::int16_t SecLifeSpan);

protected:
    void OnLoad() override;
    void OnUnload() override;
    bool event(QEvent* event) override;

private:
    void MoveToCentre();
    void OnTick();

    std::unique_ptr<Ui::FrmPopup> m_ui;
    std::unique_ptr<Timer> Timer1;
    std::int16_t m_limit = 0;
    std::int16_t m_counter = 0;
};

/// Presents the popup to screen readers as an alert. Call once, before the first window is made.
void InstallPopupAccessibility();
