// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtBrowser.h"

#include <QDesktopServices>
#include <QUrl>

void QtBrowser::Open(const QString& url)
{
    const QUrl address(url, QUrl::TolerantMode);
    // What a service sends must not reach the handlers of file:, smb: or any other scheme.
    if (address.isValid() && !address.host().isEmpty() &&
        (address.scheme() == u"http" || address.scheme() == u"https")) {
        QDesktopServices::openUrl(address);
    }
}
