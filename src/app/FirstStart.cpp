// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstStart.h"

#include "service/ServiceRequests.h"
#include "store/Configuration.h"
#include "store/SimpleXML.h"
#include "support/RuntimeError.h"

namespace {

const QString kApp = QStringLiteral("//root//app");

void Require(bool isWritten)
{
    if (!isWritten) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("settings.xml can't be written"));
    }
}

} // namespace

bool FirstStart::IsDue(const SimpleXML& settings, bool isConnected)
{
    return settings.GetAttribute(QStringLiteral("FirstRun"), kApp) == u"true" ||
           (isConnected && settings.GetAttribute(QStringLiteral("pid"), kApp).isEmpty());
}

void FirstStart::Run(SimpleXML& settings, const Configuration& configuration) const
{
    SimpleXML reply(m_platform);
    const QString dist = settings.GetAttribute(QStringLiteral("dist"), kApp);
    if (!reply.Load(ServiceRequests::RequestProdID(configuration, dist))) {
        return;
    }
    const QString identifier = reply.GetAttribute(QStringLiteral("prod_string"), QStringLiteral("//root"));
    Require(settings.AddAttributeByName(QStringLiteral("pid"), identifier, kApp));
    Require(settings.AddAttributeByName(QStringLiteral("FirstRun"), QStringLiteral("false"), kApp));
    Require(settings.Save(kSettingsFile));
}
