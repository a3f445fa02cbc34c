// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstStart.h"

#include "service/ServiceRequests.h"
#include "store/Configuration.h"
#include "store/SimpleXML.h"
#include "support/RuntimeError.h"

namespace {

void Require(bool isWritten)
{
    if (!isWritten) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("settings.xml can't be written"));
    }
}

} // namespace

bool NeedsIdentifier(const SimpleXML& settings, bool isConnected)
{
    return settings.GetAttribute(QStringLiteral("FirstRun"), kAppPath) == u"true" ||
           (isConnected && settings.GetAttribute(QStringLiteral("pid"), kAppPath).isEmpty());
}

void RequestIdentifier(const Platform& platform, SimpleXML& settings, const Configuration& configuration)
{
    SimpleXML reply(platform);
    const QString dist = settings.GetAttribute(QStringLiteral("dist"), kAppPath);
    if (!reply.Load(ServiceRequests::RequestProdID(configuration, dist))) {
        return;
    }
    const QString identifier = reply.GetAttribute(QStringLiteral("prod_string"), kRootPath);
    Require(settings.AddAttributeByName(QStringLiteral("pid"), identifier, kAppPath));
    Require(settings.AddAttributeByName(QStringLiteral("FirstRun"), QStringLiteral("false"), kAppPath));
    Require(settings.Save(kSettingsFile));
}
