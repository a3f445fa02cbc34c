// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/PrayerPage.h"

#include "engine/Prayers.h"
#include "forms/Areas.h"
#include "forms/Boxes.h"
#include "forms/Form.h"
#include "forms/LinkLabel.h"
#include "platform/Platform.h"
#include "platform/Process.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/Placement.h"
#include "support/RuntimeError.h"

namespace {

void PlaceLine(QWidget* parent, const char* name, const QRect& place)
{
    auto* const line = new QFrame(parent);
    line->setObjectName(QLatin1String(name));
    line->setGeometry(place);
    line->setFrameShape(place.width() > place.height() ? QFrame::HLine : QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    // A drawn line; the mouse is over what lies behind it.
    line->setAttribute(Qt::WA_TransparentForMouseEvents);
}

} // namespace

PrayerPage::PrayerPage(DialogContext& context, const QRect& place)
    : FrmPrayer(PlacePlainFrame(&context.Dialog(), "FrmPrayer", place))
    , m_context(context)
{
    BuildLines();
    BuildBoxes();
    FrmPrayer->hide();
    new HoverArea(FrmPrayer, context.ArmedHandler([&context] { context.Dialog().SetDefaultPointer(); }));
}

void PrayerPage::BuildBoxes()
{
    LblPrayerName = PlaceText(FrmPrayer, "LblPrayerName", QString(), {16, 12, 300, 20});
    MakeBold(LblPrayerName);
    ChkAlertMain =
        Place(new CheckBox(QStringLiteral("Alert on"), FrmPrayer), "ChkAlertMain", {16, 40, 200, 22});
    ChkSilAlert = Place(new CheckBox(QStringLiteral("Silent alert (Pop up message)"), FrmPrayer),
                        "ChkSilAlert", {44, 76, 300, 22});
    ChkAudioAlert =
        Place(new CheckBox(QStringLiteral("Audio alert"), FrmPrayer), "ChkAudioAlert", {44, 110, 200, 22});
    BuildFileSelect();
    ChkIndMobAlert =
        Place(new CheckBox(QStringLiteral("Mobile Alert"), FrmPrayer), "ChkIndMobAlert", {44, 208, 200, 22});
    for (CheckBox* const box : {ChkSilAlert, ChkAudioAlert, ChkIndMobAlert}) {
        box->setEnabled(false);
    }
    ChkAlertMain->OnClick(m_context.ArmedHandler([this] { OnAlertMainClick(); }));
    StoreOnClick(ChkSilAlert, QStringLiteral("popup"));
    StoreOnClick(ChkAudioAlert, QStringLiteral("play"));
    StoreOnClick(ChkIndMobAlert, QStringLiteral("mobil"));
}

void PrayerPage::BuildFileSelect()
{
    FrmFileSelect = PlaceFrame(FrmPrayer, "FrmFileSelect", QStringLiteral("File to play at prayer time:"),
                               {64, 138, 420, 56});
    TxtPath = Place(new TextBox(FrmFileSelect), "TxtPath", {10, 25, 336, 23});
    TxtPath->setAccessibleName(QStringLiteral("File to play at prayer time"));
    TxtPath->OnChange(
        m_context.ArmedHandler([this] { Store(QStringLiteral("audioFile"), TxtPath->Text()); }));
    LblBrowseLink = new LinkLabel(QStringLiteral("Browse"), FrmFileSelect);
    LblBrowseLink->setObjectName(QStringLiteral("LblBrowseLink"));
    LblBrowseLink->setGeometry(360, 27, 50, 19);
    Form& dialog = m_context.Dialog();
    LblBrowseLink->OnMouseMove(m_context.ArmedHandler([&dialog] { dialog.SetHandPointer(); }));
    LblBrowseLink->OnClick(m_context.ArmedHandler([this] { OnBrowseClick(); }));
    FrmFileSelect->setEnabled(false);
    new HoverArea(FrmFileSelect, m_context.ArmedHandler([&dialog] { dialog.SetDefaultPointer(); }));
}

void PrayerPage::BuildLines()
{
    PlaceLine(FrmPrayer, "Line1", {23, 62, 1, 158});
    PlaceLine(FrmPrayer, "Line2", {23, 87, 18, 1});
    PlaceLine(FrmPrayer, "Line3", {23, 121, 18, 1});
    PlaceLine(FrmPrayer, "Line4", {23, 219, 18, 1});
}

bool PrayerPage::IsOnPrayer() const
{
    return PrayerOfTab(m_context.currentTab) != nullptr;
}

QString PrayerPage::ElementPath() const
{
    const Prayer* const prayer = PrayerOfTab(m_context.currentTab);
    return prayer == nullptr ? QString() : kAlertsPath + QStringLiteral("//") + prayer->element;
}

void PrayerPage::LoadPrayerPage()
{
    m_context.loading = true;
    FrmPrayer->show();
    if (const Prayer* const prayer = PrayerOfTab(m_context.currentTab); prayer != nullptr) {
        LblPrayerName->setText(prayer->caption);
    }
    const QString path = ElementPath();
    const auto isSet = [this, &path](const char16_t* attribute) {
        return IsTrue(m_context.Read(QString::fromUtf16(attribute), path)) ? 1 : 0;
    };
    // Raises Click, and with it the greying of the sub-options, only if the value differs from that of the
    // prayer before; otherwise the grey state stays as that one left it.
    ChkAlertMain->SetValue(isSet(u"enabled"));
    ChkSilAlert->SetValue(isSet(u"popup"));
    ChkAudioAlert->SetValue(isSet(u"play"));
    TxtPath->SetText(m_context.Read(QStringLiteral("audioFile"), path));
    // Doesn't look at ChkAlertMain: a prayer whose alert is off still offers the mobile alert, and must.
    ChkIndMobAlert->setEnabled(m_context.IsMobileConfirmed());
    ChkIndMobAlert->SetValue(isSet(u"mobil"));
    m_context.loading = false;
}

void PrayerPage::OnAlertMainClick()
{
    m_context.Load();
    const bool isTicked = ChkAlertMain->Value() == 1;
    ChkSilAlert->setEnabled(isTicked);
    ChkAudioAlert->setEnabled(isTicked);
    FrmFileSelect->setEnabled(isTicked);
    ChkIndMobAlert->setEnabled(isTicked && m_context.IsMobileConfirmed());
    if (!m_context.loading && IsOnPrayer()) {
        m_context.Write(QStringLiteral("enabled"), TrueOrFalse(ChkAlertMain->Value() != 0), ElementPath());
        m_context.Save();
    }
}

void PrayerPage::StoreOnClick(CheckBox* box, const QString& attribute)
{
    box->OnClick(
        m_context.ArmedHandler([this, box, attribute] { Store(attribute, TrueOrFalse(box->Value() != 0)); }));
}

void PrayerPage::Store(const QString& attribute, const QString& value)
{
    if (IsOnPrayer()) {
        m_context.Store({{attribute, value}}, ElementPath());
    }
}

void PrayerPage::OnBrowseClick()
{
    LblBrowseLink->setEnabled(false);
    const QString folder = m_context.Outside().process.ApplicationFolder() + QStringLiteral("\\sound");
    // Nothing ever supplies a file dialog to start in that folder, so this closes the settings dialog, and
    // has to: typing the path is the one way to choose a file.
    throw RuntimeError(ErrorNumber::kObjectNotSet,
                       QStringLiteral("There is no file dialog to open in ") + folder);
}
