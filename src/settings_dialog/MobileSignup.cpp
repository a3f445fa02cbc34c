// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/MobileSignup.h"

#include "forms/Forms.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "service/InternetClass.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"
#include "settings_dialog/FrmAlerts.h"

#include <QPointer>
#include <QScopeGuard>

#include <utility>

namespace {

const QString kNotConnected =
    QStringLiteral("You must be connected to the Internet to confirm Mobil Alerts Setup.  Please check your "
                   "connection.");

// Reads an attribute of the root of a reply; empty if the reply has no root.
QString ReadReply(const SimpleXML* reply, const QString& attribute)
{
    return reply == nullptr ? QString() : reply->GetAttribute(attribute, kRootPath);
}

} // namespace

void StoreSignup(SimpleXML& settings, const MobileDevice& device, const QString& result)
{
    // A rejection is stored too.
    StoreAtOnce(settings, {{QStringLiteral("mobileConfirm"), result},
                           {QStringLiteral("mobileDID"), device.id},
                           {QStringLiteral("mobilePC"), device.personalCode}});
}

MobileSignup::MobileSignup(Forms& forms)
    : m_forms(forms)
{
}

QString MobileSignup::Address() const
{
    return ServiceAddresses::Signup(m_forms.Variables().Settings);
}

void MobileSignup::Register(const MobileDevice& device)
{
    if (m_isUnderWay && !m_isReset) {
        return;
    }
    m_next = device;
    while (!m_isUnderWay && m_next && m_forms.KeepsProcess()) {
        SignUp(*std::exchange(m_next, std::nullopt));
    }
}

void MobileSignup::Reset()
{
    m_isReset = true;
    m_next.reset();
}

void MobileSignup::SignUp(const MobileDevice& device)
{
    SimpleXML document(m_forms.GetPlatform());
    if (!AskService(document, device.personalCode)) {
        Say(kNotConnected);
        return;
    }
    const std::unique_ptr<SimpleXML> reply = document.GetElement(QStringLiteral("root"));
    if (!m_isReset) {
        Store(device, ReadReply(reply.get(), QStringLiteral("result")));
    }
    // Intended: the text does not depend on the result, so that a confirmation without a message says that
    // the settings could not be verified. The message is also shown after a reset: the service does not know
    // of the reset and keeps the device.
    const QString message = ReadReply(reply.get(), QStringLiteral("message"));
    Say(message.isEmpty() ? QStringLiteral("Could not verify Mobil Alert Settings.") : message);
}

bool MobileSignup::AskService(SimpleXML& reply, const QString& personalCode)
{
    // The user may close the dialog during the request; it may also be closed already.
    const QPointer<Form> dialog = m_forms.Loaded(FrmAlerts::kName);
    const auto showWaitPointer = [&dialog](bool isShown) {
        if (dialog != nullptr) {
            dialog->ShowWaitPointer(isShown);
        }
    };
    showWaitPointer(true);
    const auto restorePointer = qScopeGuard([&showWaitPointer] { showWaitPointer(false); });
    return InternetClass(m_forms.GetPlatform(), ServiceAddresses::Probe(m_forms.Variables().Settings))
               .VerifyConnectivity() &&
           Fetch(reply, personalCode);
}

bool MobileSignup::Fetch(SimpleXML& reply, const QString& personalCode)
{
    m_isUnderWay = true;
    m_isReset = false;
    const auto end = qScopeGuard([this] { m_isUnderWay = false; });
    return reply.Load(ServiceRequests::ConfirmSignup(m_forms.Variables().Settings, personalCode));
}

void MobileSignup::Store(const MobileDevice& device, const QString& result)
{
    if (Form* const dialog = m_forms.Loaded(FrmAlerts::kName); dialog != nullptr) {
        static_cast<FrmAlerts*>(dialog)->ShowSignup(device, result);
        return;
    }
    try {
        SimpleXML settings(m_forms.GetPlatform());
        StoreSignup(settings, device, result);
    } catch (const std::exception&) {
        // No message for this failure, as in the dialog. The message of the service is still shown.
    }
}

void MobileSignup::Say(const QString& message) const
{
    // If the user closed the last window while the request was pending, the program is ending.
    if (m_forms.KeepsProcess()) {
        m_forms.GetPlatform().boxes.Show(message);
    }
}
