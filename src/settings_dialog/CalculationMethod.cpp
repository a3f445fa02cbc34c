// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/CalculationMethod.h"

#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "platform/Platform.h"
#include "settings_dialog/AngleBox.h"
#include "settings_dialog/AngleText.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/Placement.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"

namespace {

constexpr int kLowestAngle = -30;
constexpr int kHighestAngle = 30;

const QString kMethod = QStringLiteral("method");
const QString kAngle1 = QStringLiteral("angle1");
const QString kAngle2 = QStringLiteral("angle2");

const QString kIsna = QStringLiteral("ISNA");
const QString kUniversity = QStringLiteral("University Of Islamic Sciences");
const QString kWorldLeague = QStringLiteral("Muslim World League");
const QString kEgyptian = QStringLiteral("Egyptian General Authority of Survey");
const QString kUserDefined = QStringLiteral("User Defined");

OptionButton* PlaceMethod(QWidget* parent, const char* name, const QString& caption, int top)
{
    auto* const option = Place(new OptionButton(caption, parent), name, {8, top, parent->width() - 16, 18});
    MakeBold(option);
    return option;
}

void PlaceNote(QWidget* parent, const char* name, const QString& caption, int top)
{
    QLabel* const note = PlaceText(parent, name, caption, {25, top, parent->width() - 27, 15});
    QFont small = note->font();
    small.setPixelSize(11);
    note->setFont(small);
    QPalette colours = note->palette();
    colours.setColor(QPalette::WindowText, QColor(0x58, 0x58, 0x58));
    note->setPalette(colours);
}

} // namespace

CalculationMethod::CalculationMethod(DialogContext& context, QWidget* FrmGeneral)
    : m_context(context)
{
    QWidget* const Frame2 = PlaceFrame(FrmGeneral, "Frame2",
                                       QStringLiteral("Fajr and Isha Calculation Method"), {6, 4, 328, 224});
    BuildPresets(Frame2);
    BuildUserAngles(Frame2);
}

void CalculationMethod::BuildPresets(QWidget* Frame2)
{
    const struct
    {
        OptionButton** option;
        const char* name;
        QString method;
        QString angle1;
        QString angle2;
        const char* note;
    } presets[] = {
        {&OptISNA, "OptISNA", kIsna, QStringLiteral("-15"), QStringLiteral("-15"), "Label3"},
        {&OptUOIS, "OptUOIS", kUniversity, QStringLiteral("-18"), QStringLiteral("-18"), "Label4"},
        {&OptMWL, "OptMWL", kWorldLeague, QStringLiteral("-18"), QStringLiteral("-17"), "Label5"},
        {&OptEGAS, "OptEGAS", kEgyptian, QStringLiteral("-19.5"), QStringLiteral("-17.5"), "Label6"},
    };
    int top = 20;
    for (const auto& preset : presets) {
        OptionButton* const option = PlaceMethod(Frame2, preset.name, preset.method + u':', top);
        *preset.option = option;
        PlaceNote(Frame2, preset.note,
                  QStringLiteral("(Fajr Twilight = %1 Degrees, Isha Twilight = %2 Degrees)")
                      .arg(preset.angle1, preset.angle2),
                  top + 18);
        top += 37;
    }
    OptISNA->Select();
    for (const auto& preset : presets) {
        OptionButton* const option = *preset.option;
        option->OnClick(m_context.ArmedHandler(
            [this, option, method = preset.method, angle1 = preset.angle1, angle2 = preset.angle2] {
                OnPresetClick(*option, method, angle1, angle2);
            }));
    }
}

void CalculationMethod::BuildUserAngles(QWidget* Frame2)
{
    OptSetByUser = PlaceMethod(Frame2, "OptSetByUser", QStringLiteral("Set Twighlight Angles:"), 168);
    OptSetByUser->OnClick(m_context.ArmedHandler([this] { RefreshAngleControls(); }));

    PlaceText(Frame2, "Label7", QStringLiteral("Fajr:"), {27, 192, 30, 22});
    m_fajr.box =
        Place(new AngleBox(m_context.Outside().region, Frame2), "TxtSetFarjAngle", {60, 192, 60, 22});
    m_fajr.box->setAccessibleName(QStringLiteral("Fajr angle in degrees"));
    // The unlike starting values are wanted; they show until the first user-defined angles are loaded.
    m_fajr.bar = Place(new SpinBar(kLowestAngle, kHighestAngle, kHighestAngle, Frame2), "VScroll2",
                       {121, 192, 17, 22});
    m_fajr.bar->setAccessibleName(QStringLiteral("Fajr angle in whole degrees"));
    m_fajr.attribute = kAngle1;

    PlaceText(Frame2, "Label8", QStringLiteral("Isha:"), {168, 192, 30, 22});
    m_isha.box =
        Place(new AngleBox(m_context.Outside().region, Frame2), "TxtSetIshaAngle", {201, 192, 60, 22});
    m_isha.box->setAccessibleName(QStringLiteral("Isha angle in degrees"));
    m_isha.bar =
        Place(new SpinBar(kLowestAngle, kHighestAngle, kLowestAngle, Frame2), "VScroll3", {262, 192, 17, 22});
    m_isha.bar->setAccessibleName(QStringLiteral("Isha angle in whole degrees"));
    m_isha.attribute = kAngle2;

    EnableAngles(false);
    ConnectAngle(m_fajr);
    ConnectAngle(m_isha);
}

void CalculationMethod::ConnectAngle(const Angle& angle)
{
    angle.box->OnChange(m_context.ArmedHandler([this, &angle] { OnAngleChange(angle); }));
    // The bar writes nothing itself: it puts a whole number into the box, and the box's Change saves that.
    angle.bar->OnChange(m_context.ArmedHandler([this, &angle] {
        if (!m_context.loading) {
            angle.box->SetText(QString::number(angle.bar->Value()));
        }
    }));
}

void CalculationMethod::Select(const QString& method)
{
    if (method == kUniversity) {
        OptUOIS->Select();
    } else if (method == kWorldLeague) {
        OptMWL->Select();
    } else if (method == kEgyptian) {
        OptEGAS->Select();
    } else if (method == kUserDefined) {
        OptSetByUser->Select();
    } else {
        OptISNA->Select();
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
    m_context.Armed([this] {
        const QString decimalSign = GetDecimalSign(m_context.Outside().region);
        m_context.Load();
        if (!OptSetByUser->Value()) {
            EnableAngles(false);
            return;
        }
        ShowStoredAngle(m_fajr, decimalSign);
        ShowStoredAngle(m_isha, decimalSign);
        if (!m_context.loading) {
            // The angles stay those of the preset that was selected before.
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
    // Outside a load a text that differs raises Change here, which saves the stored angle back and moves the
    // bar under cover of the loading flag; so the next step finds the bar in place and cuts no fraction off.
    angle.box->SetText(AngleForBox(m_context.Read(angle.attribute, kAlertsPath), decimalSign));
    angle.bar->SetValue(ToInteger16(Int(Degrees(angle))));
}

double CalculationMethod::Degrees(const Angle& angle) const
{
    return ToDouble(angle.box->Text(), m_context.Outside().region.UserLocale());
}

void CalculationMethod::OnAngleChange(const Angle& angle)
{
    if (m_context.loading) {
        return;
    }
    const RegionalSettings& region = m_context.Outside().region;
    const QString decimalSign = GetDecimalSign(region);
    m_context.Load();
    if (!IsNumeric(angle.box->Text(), region.UserLocale())) {
        // Raises this Change again, which finds a number and saves it.
        angle.box->Refuse(AngleForBox(m_context.Read(angle.attribute, kAlertsPath), decimalSign));
        return;
    }
    // The limits are tested on the floor: 30.9 passes, -30.1 is cut to -30. The uneven edge is wanted.
    if (Int(Degrees(angle)) < angle.bar->minimum()) {
        angle.box->SetText(QString::number(angle.bar->minimum()));
    }
    if (Int(Degrees(angle)) > angle.bar->maximum()) {
        angle.box->SetText(QString::number(angle.bar->maximum()));
    }
    // Keeps the bar's Change from writing the whole number over a fractional text.
    m_context.loading = true;
    angle.bar->SetValue(ToInteger16(Int(Degrees(angle))));
    m_context.loading = false;
    m_context.Write(angle.attribute, AngleForFile(angle.box->Text(), decimalSign, region.UserLocale()),
                    kAlertsPath);
    m_context.Save();
}
