// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/GeneralPage.h"

#include "forms/Areas.h"
#include "forms/Form.h"
#include "platform/Platform.h"
#include "settings_dialog/DialogContext.h"
#include "support/Conversions.h"
#include "support/ModRegion.h"
#include "ui_GeneralPage.h"

namespace {

const QString kAsr = QStringLiteral("asrMethode");
const QString kHourMode = QStringLiteral("hourmode");
const QString kUseAdvWarn = QStringLiteral("useAdvWarn");
const QString kAdvWarn = QStringLiteral("advWarn");
const QString kUseDls = QStringLiteral("useDLS");

} // namespace

GeneralPage::GeneralPage(DialogContext& context, QFrame& frame)
    : m_context(context)
    , m_frame(frame)
    , m_ui(MakeControls<Ui::GeneralPage>(frame))
    , m_method(context, *m_ui)
{
    ConnectOptions();
    ConnectGeneral();
    Form& dialog = context.Dialog();
    QObject::connect(m_ui->CmdClose, &QPushButton::clicked, &dialog,
                     [&dialog] { dialog.Handle([&dialog] { dialog.Unload(); }); });
}

GeneralPage::~GeneralPage() = default;

void GeneralPage::ConnectOptions()
{
    StoreOnClick(m_ui->OptShafi, kAsr, QStringLiteral("shafi"));
    StoreOnClick(m_ui->OptHanafi, kAsr, QStringLiteral("hanafi"));
    StoreOnClick(m_ui->Opt12Hour, kHourMode, QStringLiteral("12"));
    StoreOnClick(m_ui->Opt24Hour, kHourMode, QStringLiteral("24"));
}

void GeneralPage::ConnectGeneral()
{
    m_ui->ChkDLS->OnClick(m_context.RunOrUnloadHandler([this] {
        m_context.Store({{kUseDls, TrueOrFalse(m_ui->ChkDLS->Value() == 1)}});
    }));
    m_ui->ChkAdvWarn->OnClick(m_context.RunOrUnloadHandler([this] { OnAdvWarnClick(); }));
    m_ui->TxtAdvWarn->OnChange(m_context.RunOrUnloadHandler([this] { OnAdvWarnTextChange(); }));
    m_ui->VScroll1->OnChange(m_context.RunOrUnloadHandler([this] {
        if (!m_context.loading) {
            m_ui->TxtAdvWarn->SetText(QString::number(m_ui->VScroll1->Value()));
        }
    }));
    m_ui->VScroll1->StepByKeysOf(*m_ui->TxtAdvWarn);
}

void GeneralPage::StoreOnClick(OptionButton* option, const QString& attribute, const QString& value)
{
    option->OnClick(m_context.RunOrUnloadHandler([this, option, attribute, value] {
        if (option->Value()) {
            m_context.Store({{attribute, value}});
        }
    }));
}

void GeneralPage::Load()
{
    m_context.loading = true;
    m_context.Load();
    m_frame.show();
    LoadAdvanceAlert();
    if (IsTrue(m_context.Read(kUseDls, kAlertsPath))) {
        m_ui->ChkDLS->SetValue(1);
    }
    // Intended: any value but "shafi" selects hanafi, although shafi is the option that is selected at first.
    const bool isShafi = m_context.Read(kAsr, kAlertsPath) == u"shafi";
    (isShafi ? m_ui->OptShafi : m_ui->OptHanafi)->Select();
    const bool is24Hour = m_context.Read(kHourMode, kAlertsPath) == u"24";
    (is24Hour ? m_ui->Opt24Hour : m_ui->Opt12Hour)->Select();
    m_method.Select(m_context.Read(QStringLiteral("method"), kAlertsPath));
    m_context.loading = false;
}

void GeneralPage::LoadAdvanceAlert()
{
    if (!IsTrue(m_context.Read(kUseAdvWarn, kAlertsPath))) {
        return;
    }
    // Click enables the box and the bar.
    m_ui->ChkAdvWarn->SetValue(1);
    const QString minutes = m_context.Read(kAdvWarn, kAlertsPath);
    m_ui->TxtAdvWarn->SetText(minutes);
    m_ui->VScroll1->SetValue(
        ToInteger16(Int(ToDouble(minutes, m_context.GetPlatform().region.UserLocale()))));
}

void GeneralPage::OnAdvWarnClick()
{
    const bool isTicked = m_ui->ChkAdvWarn->Value() == 1;
    m_ui->TxtAdvWarn->setEnabled(isTicked);
    m_ui->VScroll1->setEnabled(isTicked);
    m_context.Store({{kUseAdvWarn, TrueOrFalse(isTicked)}});
}

void GeneralPage::OnAdvWarnTextChange()
{
    if (m_context.loading) {
        return;
    }
    m_context.Load();
    const QLocale locale = m_context.GetPlatform().region.UserLocale();
    if (IsNumeric(m_ui->TxtAdvWarn->Text(), locale)) {
        // Latin digits, since the file may be read under another locale.
        const auto minutes = static_cast<qint64>(Int(ToDouble(m_ui->TxtAdvWarn->Text(), locale)));
        m_context.Write(kAdvWarn, QString::number(minutes), kAlertsPath);
        m_context.Save();
    } else {
        m_ui->TxtAdvWarn->SetText(m_context.Read(kAdvWarn, kAlertsPath));
    }
}
