// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class DomDocuments;
class Forms;
class SimpleXML;

/// A mobile device as the user has typed it in.
struct MobileDevice
{
    QString id;
    QString personalCode;
};

/// Writes the device and what the service said of it, "1" for a confirmation, to settings.xml. @p settings is
/// loaded afresh for it. A file that can't be loaded or saved loses them without a word.
void StoreSignup(SimpleXML& settings, const MobileDevice& device, const QString& result);

/// The sign-up of mobile devices at the service. It outlives the settings dialog: a reply that comes after
/// the user has closed it is stored and told all the same.
class MobileSignup final
{
public:
    MobileSignup(Forms& forms, const DomDocuments& documents);

    /// Asks the service to confirm the device and serves events until the reply has come. Then stores the
    /// result, shows it in the settings dialog if one is open, and tells the user what the service says, or
    /// that it could not be reached. Does nothing while another request is under way.
    void Register(const MobileDevice& device);
    /// The device has been cleared by the user: a reply that is still under way is told, but not stored.
    void Reset() { m_isReset = true; }

private:
    [[nodiscard]] bool Fetch(SimpleXML& reply, const QString& personalCode);
    /// In the document of the settings dialog if one is open, and on its mobile page.
    void Store(const MobileDevice& device, const QString& result);
    void Say(const QString& message) const;

    Forms& m_forms;
    const DomDocuments& m_documents;
    bool m_isUnderWay = false;
    /// Whether a reset came after the request.
    bool m_isReset = false;
};
