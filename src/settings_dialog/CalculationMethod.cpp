// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/CalculationMethod.h"

#include "forms/Areas.h"
#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "platform/Platform.h"
#include "settings_dialog/AngleBox.h"
#include "settings_dialog/DialogContext.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"
#include "ui_GeneralPage.h"

namespace {

const QString kMethod = QStringLiteral("method");
const QString kAngle1 = QStringLiteral("angle1");
const QString kAngle2 = QStringLiteral("angle2");

const QString kIsna = QStringLiteral("ISNA");
const QString kUniversity = QStringLiteral("University Of Islamic Sciences");
const QString kWorldLeague = QStringLiteral("Muslim World League");
const QString kEgyptian = QStringLiteral("Egyptian General Authority of Survey");
const QString kUserDefined = QStringLiteral("User Defined");

// A click on the note selects the option, and a screen reader reads the note as its description.
void AttachNote(QLabel& note, OptionButton& option)
{
    // A .ui file has font sizes in points only.
    QFont small = note.font();
    small.setPixelSize(11);
    note.setFont(small);
    option.setAccessibleDescription(note.text());
    new ClickArea(&note, [&option] {
        option.setFocus(Qt::MouseFocusReason);
        option.Select();
    });
}

} // namespace

CalculationMethod::CalculationMethod(DialogContext& context, const Ui::GeneralPage& controls)
    : m_context(context)
    , m_ui(controls)
    , m_fajr{controls.TxtSetFarjAngle, controls.VScroll2, kAngle1}
    , m_isha{controls.TxtSetIshaAngle, controls.VScroll3, kAngle2}
{
    ConnectPresets();
    m_ui.OptSetByUser->OnClick(m_context.RunOrUnloadHandler([this] { RefreshAngleControls(); }));
    ConnectAngle(m_fajr);
    ConnectAngle(m_isha);
}

void CalculationMethod::ConnectPresets()
{
    const auto connectPreset = [this](OptionButton& option, QLabel& note, const QString& method,
                                      const QString& angle1, const QString& angle2) {
        AttachNote(note, option);
        option.OnClick(m_context.RunOrUnloadHandler(
            [this, &option, method, angle1, angle2] { OnPresetClick(option, method, angle1, angle2); }));
    };
    connectPreset(*m_ui.OptISNA, *m_ui.Label3, kIsna, QStringLiteral("-15"), QStringLiteral("-15"));
    connectPreset(*m_ui.OptUOIS, *m_ui.Label4, kUniversity, QStringLiteral("-18"), QStringLiteral("-18"));
    connectPreset(*m_ui.OptMWL, *m_ui.Label5, kWorldLeague, QStringLiteral("-18"), QStringLiteral("-17"));
    connectPreset(*m_ui.OptEGAS, *m_ui.Label6, kEgyptian, QStringLiteral("-19.5"), QStringLiteral("-17.5"));
}

void CalculationMethod::ConnectAngle(const Angle& angle)
{
    angle.box->SetRegion(m_context.GetPlatform().region);
    angle.box->OnChange(m_context.RunOrUnloadHandler([this, &angle] { OnAngleChange(angle); }));
    // The bar stores nothing itself: it puts a whole number into the box, and the box's Change stores that.
    angle.bar->OnChange(m_context.RunOrUnloadHandler([this, &angle] {
        if (!m_context.loading) {
            angle.box->SetText(QString::number(angle.bar->Value()));
        }
    }));
    angle.bar->StepByKeysOf(*angle.box);
}

void CalculationMethod::Select(const QString& method)
{
    if (method == kUniversity) {
        m_ui.OptUOIS->Select();
    } else if (method == kWorldLeague) {
        m_ui.OptMWL->Select();
    } else if (method == kEgyptian) {
        m_ui.OptEGAS->Select();
    } else if (method == kUserDefined) {
        m_ui.OptSetByUser->Select();
    } else {
        m_ui.OptISNA->Select();
    }
}

void CalculationMethod::OnPresetClick(const OptionButton& option, const QString& method,
                                      const QString& angle1, const QString& angle2)
{
    RefreshAngleControls();
    if (option.Value()) {
        m_context.Store({{kMethod, method}, {kAngle1, angle1}, {kAngle2, angle2}});
    }
}

void CalculationMethod::RefreshAngleControls()
{
    m_context.RunOrUnload([this] {
        const QString decimalSign = GetDecimalSign(m_context.GetPlatform().region);
        m_context.Load();
        if (!m_ui.OptSetByUser->Value()) {
            EnableAngles(false);
            return;
        }
        ShowStoredAngle(m_fajr, decimalSign);
        ShowStoredAngle(m_isha, decimalSign);
        if (!m_context.loading) {
            // Intended: the angles stay those of the previous preset.
            m_context.Write(kMethod, kUserDefined, kAlertsPath);
            m_context.Save();
        }
    });
}

void CalculationMethod::EnableAngles(bool enabled)
{
    for (const Angle* const angle : {&m_fajr, &m_isha}) {
        angle->box->setEnabled(enabled);
        angle->bar->setEnabled(enabled);
    }
}

void CalculationMethod::ShowStoredAngle(const Angle& angle, const QString& decimalSign)
{
    angle.box->setEnabled(true);
    angle.bar->setEnabled(true);
    // Outside a load a different text raises Change here, which saves the stored angle again and moves the
    // bar while `loading` is set. The next line then does not change the bar, so that the fraction is kept.
    angle.box->SetText(AngleForBox(m_context.Read(angle.attribute, kAlertsPath), decimalSign));
    angle.bar->SetValue(ToInteger16(Int(Degrees(angle))));
}

double CalculationMethod::Degrees(const Angle& angle) const
{
    return ToDouble(angle.box->Text(), m_context.GetPlatform().region.UserLocale());
}

void CalculationMethod::OnAngleChange(const Angle& angle)
{
    if (m_context.loading) {
        return;
    }
    const RegionalSettings& region = m_context.GetPlatform().region;
    const QString decimalSign = GetDecimalSign(region);
    m_context.Load();
    if (!IsNumeric(angle.box->Text(), region.UserLocale())) {
        // Raises Change again, which saves the stored number.
        angle.box->Refuse(AngleForBox(m_context.Read(angle.attribute, kAlertsPath), decimalSign));
        return;
    }
    // Intended: the limits are compared with the floor: 30.9 passes, -30.1 becomes -30.
    if (Int(Degrees(angle)) < angle.bar->minimum()) {
        angle.box->SetText(QString::number(angle.bar->minimum()));
    }
    if (Int(Degrees(angle)) > angle.bar->maximum()) {
        angle.box->SetText(QString::number(angle.bar->maximum()));
    }
    // Otherwise the bar's Change would replace a fractional text by the whole number.
    m_context.loading = true;
    angle.bar->SetValue(ToInteger16(Int(Degrees(angle))));
    m_context.loading = false;
    m_context.Write(angle.attribute, AngleForFile(angle.box->Text(), decimalSign, region.UserLocale()),
                    kAlertsPath);
    m_context.Save();
}
