// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class AngleBox;
class DialogContext;
class OptionButton;
class SpinBar;
namespace Ui {
class GeneralPage;
}

/// The choice of the twilight angles on the General page: four presets, or two angles that the user sets.
class CalculationMethod final
{
public:
    CalculationMethod(DialogContext& context, const Ui::GeneralPage& controls);

    /// Selects the option of the stored @p method, the first one if it is none of the five.
    void Select(const QString& method);

private:
    /// A text box with its spin bar, and the attribute that both set.
    struct Angle
    {
        AngleBox* box = nullptr;
        SpinBar* bar = nullptr;
        QString attribute;
    };

    void ConnectPresets();
    void ConnectAngle(const Angle& angle);

    void RefreshAngleControls();
    void EnableAngles(bool enabled);
    void ShowStoredAngle(const Angle& angle, const QString& decimalSign);
    void OnPresetClick(const OptionButton& option, const QString& method, const QString& angle1,
                       const QString& angle2);
    void OnAngleChange(const Angle& angle);
    [[nodiscard]] double Degrees(const Angle& angle) const;

    DialogContext& m_context;
    const Ui::GeneralPage& m_ui;
    Angle m_fajr;
    Angle m_isha;
};
