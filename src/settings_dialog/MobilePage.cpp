// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobilePage.h"

#include "forms/Areas.h"
#include "forms/Form.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "settings_dialog/DialogContext.h"
#include "settings_dialog/MobileSignup.h"
#include "ui_MobilePage.h"

namespace {

const QString kMobileEnabled = QStringLiteral("mobileEnabled");
const QString kMobileDid = QStringLiteral("mobileDID");
const QString kMobilePc = QStringLiteral("mobilePC");
const QString kMobileConfirm = QStringLiteral("mobileConfirm");

} // namespace

MobilePage::MobilePage(DialogContext& context, MobileSignup& signup, QFrame& frame)
    : m_context(context)
    , m_signup(signup)
    , m_frame(frame)
    , m_ui(MakeControls<Ui::MobilePage>(frame))
{
    m_ui->LblMobil1->setText(m_ui->LblMobil1->text().arg(m_signup.Address()));
    Connect();
    m_frame.hide();
}

MobilePage::~MobilePage() = default;

void MobilePage::Connect()
{
    m_ui->ChkMobilEnable->OnClick(m_context.RunOrUnloadHandler([this] { OnMobilEnableClick(); }));
    const auto storeOnChange = [this](TextBox* box, const QString& attribute) {
        box->OnChange(m_context.RunOrUnloadHandler([this, box, attribute] {
            m_context.Store({{attribute, box->Text()}});
        }));
    };
    storeOnChange(m_ui->TxtMDID, kMobileDid);
    storeOnChange(m_ui->TxtPC, kMobilePc);

    Form& dialog = m_context.Dialog();
    QObject::connect(m_ui->CmdMobilReg, &QPushButton::clicked, &dialog,
                     m_context.RunOrUnloadHandler([this] { OnMobilRegClick(); }));
    m_ui->LblReset->OnMouseMove(m_context.RunOrUnloadHandler([&dialog] { dialog.SetHandPointer(); }));
    m_ui->LblReset->OnClick(m_context.RunOrUnloadHandler([this] { OnResetClick(); }));
    new HoverArea(m_ui->FrmMobilSub, m_context.RunOrUnloadHandler([&dialog] { dialog.SetDefaultPointer(); }));
}

void MobilePage::LoadMobilePage()
{
    m_context.loading = true;
    m_frame.show();
    // Intended: a check box that is clear at first and clear in the file raises no Click. A user who has
    // never enabled mobile alerts finds the controls below enabled and can sign up there.
    m_ui->ChkMobilEnable->SetValue(IsTrue(m_context.Read(kMobileEnabled, kAlertsPath)) ? 1 : 0);
    m_ui->TxtMDID->SetText(m_context.Read(kMobileDid, kAlertsPath));
    m_ui->TxtPC->SetText(m_context.Read(kMobilePc, kAlertsPath));
    if (m_context.Read(kMobileConfirm, kAlertsPath) == u"1") {
        m_ui->CmdMobilReg->setEnabled(false);
    }
    m_context.loading = false;
}

void MobilePage::OnMobilEnableClick()
{
    const bool isTicked = m_ui->ChkMobilEnable->Value() == 1;
    m_context.Store({{kMobileEnabled, TrueOrFalse(isTicked)}});
    // Intended: the document takes the value also while loading, without a save.
    m_context.Write(kMobileEnabled, TrueOrFalse(isTicked), kAlertsPath);
    m_ui->FrmMobilSub->setEnabled(isTicked);
    m_ui->LblReset->setEnabled(isTicked);
    // A confirmed device is shown but disabled; only the reset enables it.
    const bool isOpen = isTicked && m_context.Read(kMobileConfirm, kAlertsPath) != u"1";
    m_ui->TxtMDID->setEnabled(isOpen);
    m_ui->TxtPC->setEnabled(isOpen);
    m_ui->CmdMobilReg->setEnabled(isOpen);
}

void MobilePage::OnMobilRegClick()
{
    if (m_ui->TxtMDID->Text().isEmpty() || m_ui->TxtPC->Text().isEmpty()) {
        m_context.GetPlatform().boxes.Show(
            QStringLiteral("You must first enter your Mobile Device number and personal Code"));
        return;
    }
    m_signup.Register({m_ui->TxtMDID->Text(), m_ui->TxtPC->Text()});
}

void MobilePage::ShowSignup(const MobileDevice& device, const QString& result)
{
    StoreSignup(m_context.settingsDoc(), device, result);
    // The boxes show the stored device and not an edit made while the request was pending.
    m_context.loading = true;
    m_ui->TxtMDID->SetText(device.id);
    m_ui->TxtPC->SetText(device.personalCode);
    m_context.loading = false;
    if (result == u"1") {
        m_ui->CmdMobilReg->setEnabled(false);
        m_ui->TxtMDID->setEnabled(false);
        m_ui->TxtPC->setEnabled(false);
    }
}

void MobilePage::OnResetClick()
{
    DisabledControl reset(m_context.Dialog(), *m_ui->LblReset);
    const bool isAgreed = m_context.GetPlatform().boxes.Ask(
        QStringLiteral(
            "This will clear your Mobile Device ID and Personal code?\r\nDo you want to continue?"),
        MessageBoxes::kDefaultTitle, MessageBoxes::DefaultAnswer::No);
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
    m_ui->TxtMDID->SetText(QString());
    m_ui->TxtPC->SetText(QString());
    m_ui->CmdMobilReg->setEnabled(true);
    m_ui->TxtMDID->setEnabled(true);
    m_ui->TxtPC->setEnabled(true);
    StoreSignup(m_context.settingsDoc(), {}, QStringLiteral("0"));
}
