// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePage.h"

#include "forms/Areas.h"
#include "forms/Boxes.h"
#include "forms/DisabledControl.h"
#include "forms/Form.h"
#include "forms/LinkLabel.h"
#include "platform/MessageBoxes.h"
#include "platform/Platform.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/MobileSignup.h"
#include "settings_dialog/Placement.h"

#include <QPushButton>

namespace {

const QString kMobileEnabled = QStringLiteral("mobileEnabled");
const QString kMobileDid = QStringLiteral("mobileDID");
const QString kMobilePc = QStringLiteral("mobilePC");
const QString kMobileConfirm = QStringLiteral("mobileConfirm");

} // namespace

MobilePage::MobilePage(DialogContext& context, MobileSignup& signup, const QRect& place)
    : FrmMobilAlert(PlacePlainFrame(&context.Dialog(), "FrmMobilAlert", place))
    , m_context(context)
    , m_signup(signup)
{
    BuildHead();
    BuildSteps();
    BuildEntry();
    Connect();
    FrmMobilAlert->hide();
}

void MobilePage::BuildHead()
{
    PlaceText(FrmMobilAlert, "LblMobilH1",
              QStringLiteral("Mobile Alert sends an alert to your mobile device at time of prayer."),
              {14, 8, 474, 18});
    PlaceText(FrmMobilAlert, "LblMobilH2",
              QStringLiteral("Your mobile device must be able to send / receive text messages"),
              {14, 26, 474, 18});
    ChkMobilEnable = Place(new CheckBox(QStringLiteral("Enable Mobile Alerts"), FrmMobilAlert),
                           "ChkMobilEnable", {12, 48, 300, 22});
}

void MobilePage::BuildSteps()
{
    FrmMobilSub = PlacePlainFrame(FrmMobilAlert, "FrmMobilSub", {8, 74, 486, 186});
    const auto step = [this](const char* name, const QString& caption, const QRect& place) {
        QLabel* const label = PlaceText(FrmMobilSub, name, caption, place);
        label->setWordWrap(true);
    };
    step("LblMobil1",
         QStringLiteral("1. From your mobile device, send a text message to %1 with the word \"test\".")
             .arg(m_signup.Address()),
         {10, 6, 466, 32});
    step("LblMobil2",
         QStringLiteral("2: You\u2019ll momentarily receive a text message showing your mobile device ID and "
                        "personal code."),
         {10, 40, 466, 32});
    step("LblMobil3",
         QStringLiteral("3: Enter your mobile device ID and personal code in appropriate boxes below."),
         {10, 74, 466, 18});
}

void MobilePage::BuildEntry()
{
    PlaceText(FrmMobilSub, "LblMobilDID", QStringLiteral("Mobile Device ID:"), {26, 98, 110, 23});
    TxtMDID = Place(new TextBox(FrmMobilSub), "TxtMDID", {140, 98, 200, 23});
    TxtMDID->setAccessibleName(QStringLiteral("Mobile Device ID"));
    PlaceText(FrmMobilSub, "LblMobilPC", QStringLiteral("Personal Code:"), {26, 125, 110, 23});
    TxtPC = Place(new TextBox(FrmMobilSub), "TxtPC", {140, 125, 200, 23});
    TxtPC->setAccessibleName(QStringLiteral("Personal Code"));
    PlaceText(FrmMobilSub, "LblMobil4", QStringLiteral("4. Click register."), {10, 155, 120, 22});
    CmdMobilReg =
        Place(new QPushButton(QStringLiteral("Register"), FrmMobilSub), "CmdMobilReg", {140, 153, 90, 26});
    CmdMobilReg->setAutoDefault(true);
    LblReset = new LinkLabel(QStringLiteral("Reset"), FrmMobilSub);
    LblReset->setObjectName(QStringLiteral("LblReset"));
    LblReset->setGeometry(250, 157, 40, 19);
}

void MobilePage::Connect()
{
    ChkMobilEnable->OnClick(m_context.ArmedHandler([this] { OnMobilEnableClick(); }));
    const auto storeOnChange = [this](TextBox* box, const QString& attribute) {
        box->OnChange(m_context.ArmedHandler([this, box, attribute] {
            m_context.Store({{attribute, box->Text()}});
        }));
    };
    storeOnChange(TxtMDID, kMobileDid);
    storeOnChange(TxtPC, kMobilePc);

    Form& dialog = m_context.Dialog();
    QObject::connect(CmdMobilReg, &QPushButton::clicked, &dialog,
                     m_context.ArmedHandler([this] { OnMobilRegClick(); }));
    LblReset->OnMouseMove(m_context.ArmedHandler([&dialog] { dialog.SetHandPointer(); }));
    LblReset->OnClick(m_context.ArmedHandler([this] { OnResetClick(); }));
    new HoverArea(FrmMobilSub, m_context.ArmedHandler([&dialog] { dialog.SetDefaultPointer(); }));
}

void MobilePage::LoadMobilePage()
{
    m_context.loading = true;
    FrmMobilAlert->show();
    // A box that is clear when built and clear in the file raises no Click: whoever has never enabled mobile
    // alerts finds the form below it live, and may sign up from there.
    ChkMobilEnable->SetValue(IsTrue(m_context.Read(kMobileEnabled, kAlertsPath)) ? 1 : 0);
    TxtMDID->SetText(m_context.Read(kMobileDid, kAlertsPath));
    TxtPC->SetText(m_context.Read(kMobilePc, kAlertsPath));
    if (m_context.Read(kMobileConfirm, kAlertsPath) == u"1") {
        CmdMobilReg->setEnabled(false);
    }
    m_context.loading = false;
}

void MobilePage::OnMobilEnableClick()
{
    const bool isTicked = ChkMobilEnable->Value() == 1;
    m_context.Store({{kMobileEnabled, TrueOrFalse(isTicked)}});
    // Intended: the document takes the value also while loading, without a save.
    m_context.Write(kMobileEnabled, TrueOrFalse(isTicked), kAlertsPath);
    FrmMobilSub->setEnabled(isTicked);
    LblReset->setEnabled(isTicked);
    // A confirmed identity is shown but locked; only the reset opens it.
    const bool isOpen = isTicked && m_context.Read(kMobileConfirm, kAlertsPath) != u"1";
    TxtMDID->setEnabled(isOpen);
    TxtPC->setEnabled(isOpen);
    CmdMobilReg->setEnabled(isOpen);
}

void MobilePage::OnMobilRegClick()
{
    if (TxtMDID->Text().isEmpty() || TxtPC->Text().isEmpty()) {
        m_context.Outside().boxes.Show(
            QStringLiteral("You must first enter your Mobile Device number and personal Code"));
        return;
    }
    m_signup.Register({TxtMDID->Text(), TxtPC->Text()});
}

void MobilePage::ShowSignup(const MobileDevice& device, const QString& result)
{
    StoreSignup(m_context.settingsDoc(), device, result);
    // The boxes show the stored device and not an edit made while the request was pending.
    m_context.loading = true;
    TxtMDID->SetText(device.id);
    TxtPC->SetText(device.personalCode);
    m_context.loading = false;
    if (result == u"1") {
        CmdMobilReg->setEnabled(false);
        TxtMDID->setEnabled(false);
        TxtPC->setEnabled(false);
    }
}

void MobilePage::OnResetClick()
{
    DisabledControl reset(m_context.Dialog(), *LblReset);
    const bool isAgreed = m_context.Outside().boxes.Ask(QStringLiteral(
        "This will clear your Mobile Device ID and Personal code?\r\nDo you want to continue?"));
    if (!m_context.Dialog().IsLoaded()) {
        return;
    }
    if (isAgreed) {
        ForgetDevice();
    }
    reset.Enable();
}

void MobilePage::ForgetDevice()
{
    m_signup.Reset();
    // Clearing a box raises its Change, which stores the empty text.
    TxtMDID->SetText(QString());
    TxtPC->SetText(QString());
    CmdMobilReg->setEnabled(true);
    TxtMDID->setEnabled(true);
    TxtPC->setEnabled(true);
    StoreSignup(m_context.settingsDoc(), {}, QStringLiteral("0"));
}
