// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings_dialog/DialogContext.h"

#include "forms/Form.h"

void StoreAtOnce(SimpleXML& settings, const Attributes& attributes, const QString& path)
{
    settings.Load(kSettingsFile);
    for (const auto& [attribute, value] : attributes) {
        settings.AddAttributeByName(attribute, value, path);
    }
    settings.Save(kSettingsFile);
}

DialogContext::DialogContext(Form& dialog)
    : m_dialog(dialog)
{
}

SimpleXML& DialogContext::settingsDoc()
{
    if (!m_settingsDoc) {
        m_settingsDoc.emplace(GetPlatform());
    }
    return *m_settingsDoc;
}

void DialogContext::Load()
{
    settingsDoc().Load(kSettingsFile);
}

void DialogContext::Save()
{
    settingsDoc().Save(kSettingsFile);
}

QString DialogContext::Read(const QString& attribute, const QString& path)
{
    return settingsDoc().GetAttribute(attribute, path);
}

void DialogContext::Write(const QString& attribute, const QString& value, const QString& path)
{
    settingsDoc().AddAttributeByName(attribute, value, path);
}

void DialogContext::Store(const Attributes& attributes, const QString& path)
{
    if (!loading) {
        StoreAtOnce(settingsDoc(), attributes, path);
    }
}

void DialogContext::RunOrUnload(const std::function<void()>& routine)
{
    m_dialog.Handle([&] {
        try {
            routine();
        } catch (const std::exception&) {
            m_dialog.Unload();
        }
    });
}

std::function<void()> DialogContext::RunOrUnloadHandler(std::function<void()> routine)
{
    return [this, routine = std::move(routine)] { RunOrUnload(routine); };
}

QString DialogContext::MissingStepForMobile()
{
    if (!IsTrue(Read(QStringLiteral("mobileEnabled"), kAlertsPath))) {
        return QStringLiteral("Tick \"Enable Mobile Alerts\" on the Mobile Alert page first.");
    }
    if (Read(QStringLiteral("mobileConfirm"), kAlertsPath) != u"1") {
        return QStringLiteral("Register your mobile device on the Mobile Alert page first.");
    }
    return {};
}

const Platform& DialogContext::GetPlatform() const
{
    return m_dialog.GetPlatform();
}
