// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class Forms;
class SimpleXML;

/// A mobile device as the user has typed it in.
struct MobileDevice
{
    QString id;
    QString personalCode;
};

/// Writes the device and the result of the service, "1" for a confirmation, to settings.xml, which it loads
/// into @p settings before. If the file can't be loaded or saved, they are lost without a message.
void StoreSignup(SimpleXML& settings, const MobileDevice& device, const QString& result);

/// The sign-up of mobile devices at the service. The object outlives the settings dialog: a reply that comes
/// after the user has closed the dialog is still stored and shown.
class MobileSignup final
{
public:
    explicit MobileSignup(Forms& forms);

    /// The e-mail address to which the user sends the first text message.
    [[nodiscard]] QString Address() const;
    /// Asks the service to confirm the device and serves events until the reply has come. Then stores the
    /// result, shows it in the settings dialog if one is open, and shows the message of the service, or that
    /// the service could not be reached. While another request is pending this does nothing. After a reset it
    /// returns at once, and the device is signed up when the reply to the pending request has been shown.
    void Register(const MobileDevice& device);
    /// Called when the user has cleared the device: the reply to the pending request is shown, but not
    /// stored.
    void Reset();

private:
    void SignUp(const MobileDevice& device);
    /// Loads the reply of the service under the wait pointer of the dialog. False if the service could not be
    /// reached or sent no document.
    [[nodiscard]] bool AskService(SimpleXML& reply, const QString& personalCode);
    [[nodiscard]] bool Fetch(SimpleXML& reply, const QString& personalCode);
    /// Stores through the settings dialog if one is open, which then shows the result on its mobile page.
    void Store(const MobileDevice& device, const QString& result);
    void Say(const QString& message) const;

    Forms& m_forms;
    bool m_isUnderWay = false;
    /// The device to sign up as soon as no request is pending.
    std::optional<MobileDevice> m_next;
    /// Whether a reset came after the request.
    bool m_isReset = false;
};
