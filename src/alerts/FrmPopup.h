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

/// The small window that carries an alert. While it is up the main window takes no input and no further alert
/// comes through. Goes when its time is up or by "OK", also beside a message box.
class FrmPopup final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmPopup"};

    explicit FrmPopup(Forms& forms);
    ~FrmPopup() override;

    /// Comes up above the other windows, in the middle of the screen where the main window is or last was,
    /// there clear of a message box, and leaves the keyboard with whoever has it.
    /// @param Message two lines
    /// @param SecLifeSpan seconds after which the window goes by itself; with 1 or less at the first tick
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

/// Makes the popup known as an alert to screen readers; once, before the first window.
void InstallPopupAccessibility();
