// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/GeneralPage.h"

#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "forms/Form.h"
#include "platform/Platform.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/Placement.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"

#include <QPushButton>

namespace {

constexpr int kLeastMinutes = 1;
constexpr int kMostMinutes = 30;
constexpr int kRightColumn = 340;
constexpr int kRightWidth = 156;

const QString kAsr = QStringLiteral("asrMethode");
const QString kHourMode = QStringLiteral("hourmode");
const QString kUseAdvWarn = QStringLiteral("useAdvWarn");
const QString kAdvWarn = QStringLiteral("advWarn");
const QString kUseDls = QStringLiteral("useDLS");

} // namespace

GeneralPage::GeneralPage(DialogContext& context, const QRect& place)
    : FrmGeneral(PlacePlainFrame(&context.Dialog(), "FrmGeneral", place))
    , m_context(context)
    , m_method(context, FrmGeneral)
{
    BuildAsr();
    BuildFormat();
    BuildGeneral();
    ConnectGeneral();
    BuildFoot();
}

void GeneralPage::BuildAsr()
{
    QWidget* const Frame3 = PlaceFrame(FrmGeneral, "Frame3", QStringLiteral("Asr Calculation Method"),
                                       {kRightColumn, 4, kRightWidth, 48});
    OptShafi = Place(new OptionButton(QStringLiteral("Shafi"), Frame3), "OptShafi", {6, 22, 70, 20});
    OptHanafi = Place(new OptionButton(QStringLiteral("Hanafi"), Frame3), "OptHanafi", {80, 22, 72, 20});
    OptShafi->Select();
    StoreOnClick(OptShafi, kAsr, QStringLiteral("shafi"));
    StoreOnClick(OptHanafi, kAsr, QStringLiteral("hanafi"));
}

void GeneralPage::BuildFormat()
{
    QWidget* const FrmFormat = PlaceFrame(FrmGeneral, "FrmFormat", QStringLiteral("Clock Format"),
                                          {kRightColumn, 60, kRightWidth, 48});
    Opt12Hour = Place(new OptionButton(QStringLiteral("12 Hour"), FrmFormat), "Opt12Hour", {6, 22, 70, 20});
    Opt24Hour = Place(new OptionButton(QStringLiteral("24 Hour"), FrmFormat), "Opt24Hour", {80, 22, 72, 20});
    StoreOnClick(Opt12Hour, kHourMode, QStringLiteral("12"));
    StoreOnClick(Opt24Hour, kHourMode, QStringLiteral("24"));
}

void GeneralPage::BuildGeneral()
{
    QWidget* const Frame4 =
        PlaceFrame(FrmGeneral, "Frame4", QStringLiteral("General"), {kRightColumn, 116, kRightWidth, 112});
    ChkDLS = Place(new CheckBox(QStringLiteral("Use Day Light Savings"), Frame4), "ChkDLS",
                   {5, 24, kRightWidth - 6, 20});
    ChkAdvWarn = Place(new CheckBox(QStringLiteral("Give Advanced Alert"), Frame4), "ChkAdvWarn",
                       {5, 50, kRightWidth - 6, 20});
    TxtAdvWarn = Place(new TextBox(Frame4), "TxtAdvWarn", {24, 78, 34, 22});
    TxtAdvWarn->setReadOnly(true);
    TxtAdvWarn->setEnabled(false);
    TxtAdvWarn->setAccessibleName(QStringLiteral("Minutes of advanced alert"));
    VScroll1 =
        Place(new SpinBar(kLeastMinutes, kMostMinutes, kMostMinutes, Frame4), "VScroll1", {59, 78, 17, 22});
    VScroll1->setEnabled(false);
    VScroll1->setAccessibleName(QStringLiteral("Minutes of advanced alert"));
    PlaceText(Frame4, "Label2", QStringLiteral("Minutes"), {84, 78, 58, 22});
}

void GeneralPage::ConnectGeneral()
{
    ChkDLS->OnClick(m_context.ArmedHandler([this] {
        m_context.Store({{kUseDls, TrueOrFalse(ChkDLS->Value() == 1)}});
    }));
    ChkAdvWarn->OnClick(m_context.ArmedHandler([this] { OnAdvWarnClick(); }));
    TxtAdvWarn->OnChange(m_context.ArmedHandler([this] { OnAdvWarnTextChange(); }));
    VScroll1->OnChange(m_context.ArmedHandler([this] {
        if (!m_context.loading) {
            TxtAdvWarn->SetText(QString::number(VScroll1->Value()));
        }
    }));
}

void GeneralPage::BuildFoot()
{
    // A caption that nothing fills.
    PlaceText(FrmGeneral, "Label1", QStringLiteral("Current Location:"), {14, 236, 320, 24});
    auto* const CmdClose = Place(new QPushButton(QStringLiteral("Close"), FrmGeneral), "CmdClose",
                                 {kRightColumn + kRightWidth - 84, 236, 84, 25});
    CmdClose->setAutoDefault(true);
    Form& dialog = m_context.Dialog();
    QObject::connect(CmdClose, &QPushButton::clicked, &dialog,
                     [&dialog] { dialog.Handle([&dialog] { dialog.Unload(); }); });
}

void GeneralPage::StoreOnClick(OptionButton* option, const QString& attribute, const QString& value)
{
    option->OnClick(m_context.ArmedHandler([this, option, attribute, value] {
        if (option->Value()) {
            m_context.Store({{attribute, value}});
        }
    }));
}

void GeneralPage::Load()
{
    m_context.loading = true;
    m_context.Load();
    FrmGeneral->show();
    LoadAdvanceAlert();
    if (IsTrue(m_context.Read(kUseDls, kAlertsPath))) {
        ChkDLS->SetValue(1);
    }
    // Not being "shafi" reads as hanafi, although the other option is the one that starts selected.
    const bool isShafi = m_context.Read(kAsr, kAlertsPath) == u"shafi";
    (isShafi ? OptShafi : OptHanafi)->Select();
    const bool is24Hour = m_context.Read(kHourMode, kAlertsPath) == u"24";
    (is24Hour ? Opt24Hour : Opt12Hour)->Select();
    m_method.Select(m_context.Read(QStringLiteral("method"), kAlertsPath));
    m_context.loading = false;
}

void GeneralPage::LoadAdvanceAlert()
{
    if (!IsTrue(m_context.Read(kUseAdvWarn, kAlertsPath))) {
        return;
    }
    // Its Click brings the box and the bar to life.
    ChkAdvWarn->SetValue(1);
    const QString minutes = m_context.Read(kAdvWarn, kAlertsPath);
    TxtAdvWarn->SetText(minutes);
    VScroll1->SetValue(ToInteger16(Int(ToDouble(minutes, m_context.Outside().region.UserLocale()))));
}

void GeneralPage::OnAdvWarnClick()
{
    const bool isTicked = ChkAdvWarn->Value() == 1;
    TxtAdvWarn->setEnabled(isTicked);
    VScroll1->setEnabled(isTicked);
    m_context.Store({{kUseAdvWarn, TrueOrFalse(isTicked)}});
}

void GeneralPage::OnAdvWarnTextChange()
{
    if (m_context.loading) {
        return;
    }
    m_context.Load();
    const QLocale locale = m_context.Outside().region.UserLocale();
    if (IsNumeric(TxtAdvWarn->Text(), locale)) {
        // Latin digits, for the file may be read under another locale.
        const auto minutes = static_cast<qint64>(Int(ToDouble(TxtAdvWarn->Text(), locale)));
        m_context.Write(kAdvWarn, QString::number(minutes), kAlertsPath);
        m_context.Save();
    } else {
        TxtAdvWarn->SetText(m_context.Read(kAdvWarn, kAlertsPath));
    }
}
